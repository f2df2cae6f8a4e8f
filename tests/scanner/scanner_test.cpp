#include "scanner/scanner.h"
#include "support/manualTime.h"
#include "support/scriptedAdapter.h"
#include "support/scriptedPrompts.h"
#include "support/textBox.h"

namespace zint {
namespace {

using namespace std::chrono_literals;

/// A scanner on com2 whose adapter follows a script.
struct ScannerTest : testing::Test {
    ScriptedAdapter adapter;
    ManualTimer timer;
    ManualClock clock;
    ScriptedPrompts prompts;
    TextBox box;
    int beeps = 0;
    Scanner scanner{{.port = adapter,
                     .timer = timer,
                     .clock = clock,
                     .prompts = prompts,
                     .outBox = box,
                     .dateText = [](auto) { return std::string("today"); },
                     .beep = [this] { ++beeps; }},
                    {2, "com2", "9600"}};

    ScannerTest() { EXPECT_EQ(takeShown(), "today\r\n"); }

    void type(const std::string& modes, const std::string& firstPid, const std::string& lastPid)
    {
        scanner.type(&ScanParameters::modeStart, modes.substr(0, 1));
        scanner.type(&ScanParameters::modeStop, modes.substr(1));
        scanner.type(&ScanParameters::pidStart, firstPid);
        scanner.type(&ScanParameters::pidStop, lastPid);
    }

    void answer(const std::string& request, const std::string& reply)
    {
        adapter.expect(request + "\r").answer(reply + "\r\r>");
    }

    /// Begins a scan and lets the adapter answer as far as it has been told.
    void scan()
    {
        adapter.history.clear();
        scanner.pressScan();
        adapter.play();
    }

    std::string takeShown() { return std::exchange(box.shown, {}); }
    const ScanPanel& panel() const { return scanner.panel(); }
    const std::string& status() const { return scanner.panel().statusBox; }
};

TEST_F(ScannerTest, ScansARangeAndSumsItUp)
{
    type("12", "0C", "0D");
    adapter.expectOpening();
    answer("010C", "41 0C 1A F8 ");
    answer("010D", "41 0D 00 ");
    answer("020C", "NO DATA");
    adapter.expect("020D\r");
    scan();
    EXPECT_EQ(panel().comScan.caption, "Stop Scan");
    EXPECT_FALSE(panel().mnuOpenCom);
    EXPECT_TRUE(panel().mnuCloseCom);
    EXPECT_FALSE(timer.running) << "requests have no time-out";
    EXPECT_EQ(status(), "Scanning 020C    3 Event(s)");
    EXPECT_EQ(takeShown(), "Header: 686AF1 Mode:1-2 Pid:0C-0D Suffix:\r\n"
                           "V 010C  1A F8 \r\nV 010D  00 \r\nN 020C NO DATA\r\n");
    EXPECT_EQ(panel().ProgressBar1.value, 75);
    EXPECT_EQ(panel().ProgressBar1.text, "3 of 4");

    adapter.expect("ATD\r");
    adapter.receive("BUS INIT: OK\r\n42 0D "); // the notice goes with its line feed
    adapter.receive("01 \r\r>");
    EXPECT_EQ(takeShown(), "V 020D  01 \r\nScan Completed\r\n"
                           "  Events(s):4\r\n    No Data:1\r\n    Invalid:0\r\n       Zero:1\r\n\r\n\r\n");
    EXPECT_EQ(status(), "com2 Scan Completed 4 Events(s)");
    EXPECT_EQ(panel().comScan.caption, "Begin Scan");
    EXPECT_TRUE(panel().mnuOpenCom);
    EXPECT_FALSE(panel().mnuCloseCom);
    EXPECT_EQ(panel().ProgressBar1.value, 100);
    EXPECT_EQ(panel().labelStats, "Bytes In: 93 Out: 33 Errors: 0");
    EXPECT_EQ(adapter.history.back(), "close");

    type("11", "5", "0"); // all counters but those of the bytes begin anew
    adapter.expectOpening();
    answer("0105", "BUS INIT: OK\r41 05 10 ");
    adapter.expect("ATD\r");
    scan();
    EXPECT_EQ(takeShown(),
              "Header: 686AF1 Mode:1-1 Pid:5-0 Suffix:\r\nV 0105  10 \r\nScan Completed\r\n"
              "  Events(s):1\r\n    No Data:0\r\n    Invalid:0\r\n       Zero:0\r\n\r\n\r\n");
}

TEST_F(ScannerTest, ShowsTheFormatsAndTheRepliesThatItsUserChose)
{
    type("91", "1", "2");
    scanner.type(&ScanParameters::modeStop, "9");
    scanner.type(&ScanParameters::cmdSuffix, "01");
    scanner.setDisplay({.filter = ScanFilter::validNonZero, .dspDecimal = true, .dspAscii = true});
    adapter.expectOpening();
    answer("090101", "49 01 31 47");
    adapter.expect("090201\r");
    scan();
    EXPECT_EQ(takeShown(), "Header: 686AF1 Mode:9-9 Pid:1-2 Suffix:01\r\nV 090101  31 47   [1G] 12615\r\n");

    scanner.setDisplay({.filter = ScanFilter::all, .dspDecimal = true, .dspAscii = true});
    adapter.expect("ATD\r");
    adapter.receive("7F 09 12\r\r>");
    EXPECT_TRUE(takeShown().starts_with("X 090201 7F 09 12\r\nScan Completed"));
}

TEST_F(ScannerTest, SkipsTheErasingModeWithTheFunctionalHeader)
{
    type("44", "", "");
    adapter.expectOpening();
    adapter.expect("ATD\r");
    scan();
    EXPECT_TRUE(takeShown().ends_with("Suffix:\r\nSkipping mode 4 functional scans...Scan Completed\r\n"
                                      "  Events(s):0\r\n    No Data:0\r\n    Invalid:0\r\n       Zero:0\r\n"
                                      "\r\n\r\n"));
    EXPECT_EQ(status(), "com2 Scan Completed 0 Events(s)");
    EXPECT_EQ(panel().warning, "");
}

TEST_F(ScannerTest, ChangesTheHeaderAndWarnsOfWhatAScanErases)
{
    type("44", "", "");
    scanner.type(&ScanParameters::cmdHead, "6810F1");
    EXPECT_NE(panel().warning.find("mode 04"), std::string::npos);
    adapter.expectOpening();
    adapter.expect("ATSH6810F1\r");
    scan();
    EXPECT_EQ(status(), "com2 Changing Header");
    answer("04", "44 ");
    adapter.expect("ATD\r");
    adapter.receive("OK\r\r>");
    adapter.play();
    EXPECT_TRUE(takeShown().find("V 04  \r\nScan Completed") != std::string::npos);

    adapter.expectOpening();
    answer("ATSH6810F1", "?");
    adapter.expect("ATD\r");
    scan();
    EXPECT_EQ(takeShown(),
              "Header: 6810F1 Mode:4-4 Pid:- Suffix:\r\nError setting header\r\nScan Completed\r\n"
              "  Events(s):0\r\n    No Data:0\r\n    Invalid:0\r\n       Zero:0\r\n\r\n\r\n");
    EXPECT_EQ(beeps, 1);
    EXPECT_EQ(scanner.failure(), "com2 Error on set header");
    scanner.type(&ScanParameters::cmdHead, "686AF1");
    EXPECT_EQ(panel().warning, "");
}

TEST_F(ScannerTest, CanBeStoppedAtAnyTime)
{
    const std::string halted = "Scan Halted\r\n"
                               "  Events(s):0\r\n    No Data:0\r\n    Invalid:0\r\n       Zero:0\r\n\r\n\r\n";
    adapter.expectOpening();
    adapter.expect("0100\r");
    scan();
    adapter.expect("ATD\r");
    scanner.pressScan(); // no reply has come
    EXPECT_EQ(status(), "com2 Scan Halted after 0 Events(s)");
    EXPECT_EQ(scanner.failure(), "") << "the user wanted it";
    EXPECT_TRUE(takeShown().ends_with(halted));

    adapter.expect("ATZ\r");
    scan();
    EXPECT_EQ(status(), "com2 Opening...");
    EXPECT_EQ(timer.interval, 45s);
    adapter.expect("ATD\r");
    timer.tick();
    EXPECT_EQ(prompts.takeMessage(), AdapterLink::notRespondingText);
    EXPECT_TRUE(takeShown().ends_with(halted));
    EXPECT_EQ(panel().labelStats, "Bytes In: 30 Out: 26 Errors: 1");

    adapter.expect("ATZ\r");
    scan();
    adapter.sendEvent(commEvent::unknown);
    adapter.sendEvent(1);
    EXPECT_EQ(status(), "com2 Opening... - unhandled comm Event: 0");
    EXPECT_EQ(panel().labelStats, "Bytes In: 30 Out: 30 Errors: 1") << "a reply or the end refreshes it";
    adapter.sendEvent(commEvent::deviceGone);
    EXPECT_EQ(status(), "com2 - adapter disconnected");
    EXPECT_EQ(panel().labelStats, "Bytes In: 30 Out: 30 Errors: 3");
    EXPECT_TRUE(takeShown().ends_with(halted));
    EXPECT_FALSE(scanner.isScanning());

    adapter.openError = CommError(8005, "Port already open");
    scan();
    EXPECT_EQ(status(), "com2 - Comm init error: 8005: Port already open");
    EXPECT_EQ(takeShown(), "");
    EXPECT_EQ(panel().comScan.caption, "Begin Scan");
}

TEST_F(ScannerTest, LetsTheAdapterWorkWhileAReplyIsListed)
{
    struct WatchedBox final : OutputBox {
        ScriptedAdapter& adapter;
        std::string sentWhenListed;

        explicit WatchedBox(ScriptedAdapter& sender) : adapter(sender) {}
        void append(const std::string& text) override
        {
            if (text.starts_with("X 0100"))
                sentWhenListed = adapter.history.back();
        }
        void replace(const std::string&) override {}
        std::string text() const override { return {}; }
    } watched(adapter);
    Scanner other{{adapter, timer, clock, prompts, watched, [](auto) { return std::string(); }, [] {}},
                  {2, "com2", "9600"}};
    adapter.expectOpening();
    answer("0100", "?");
    adapter.expect("0101\r");
    other.pressScan();
    adapter.play();
    EXPECT_EQ(watched.sentWhenListed, "0101\r");
    adapter.expect("ATD\r");
    other.unload();
}

TEST_F(ScannerTest, TellsHowLongAScanIsGoingToTake)
{
    type("12", "0000", "FFFF");
    adapter.expectOpening();
    adapter.expect("010000\r");
    scan();
    EXPECT_EQ(panel().ProgressBar1.text, "0 of 131072");
    clock.now += 10s;
    adapter.expect("010001\r");
    adapter.receive("?\r\r>");
    EXPECT_EQ(panel().ProgressBar1.text, "1 of 131072, 364:05:10 left");
    adapter.expect("ATD\r");
    scanner.unload();
    EXPECT_TRUE(takeShown().find("Scan Halted") != std::string::npos);
}

TEST_F(ScannerTest, RefusesABoxWithABeep)
{
    scanner.type(&ScanParameters::pidStop, "xyz");
    EXPECT_EQ(beeps, 0);
    scanner.leave(&ScanParameters::pidStop);
    scanner.leave(&ScanParameters::pidStop); // now it is empty
    EXPECT_EQ(beeps, 2);
    EXPECT_EQ(scanner.boxes().pidStop, "");
    EXPECT_EQ(status(), "Pid must be 0 to 4 hex digits");
    scanner.type(&ScanParameters::modeStop, "a");
    scanner.leave(&ScanParameters::modeStop);
    EXPECT_EQ(scanner.boxes().modeStop, "A");
    EXPECT_EQ(beeps, 2);
    EXPECT_EQ(status(), "Pid must be 0 to 4 hex digits") << "an accepted box says nothing";
}

} // namespace
} // namespace zint
