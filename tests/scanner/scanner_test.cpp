#include "scanner/scanner.h"
#include "support/manualTime.h"
#include "support/memorySettings.h"
#include "support/scriptedAdapter.h"
#include "support/scriptedPrompts.h"
#include "support/textBox.h"

namespace zint {
namespace {

/// A scanner on com2 whose adapter follows a script.
struct ScannerTest : testing::Test {
    ScriptedAdapter adapter;
    ManualTimer timer, silence;
    ManualClock clock;
    ScriptedPrompts prompts;
    TextBox box;
    std::string steps; ///< the status at each change, once
    int beeps = 0;
    Scanner scanner{{{adapter, {.port = PortNumber{2}}, timer, &silence},
                     clock,
                     prompts,
                     box,
                     [](auto) { return std::string("today"); },
                     [this] { ++beeps; }}};

    ScannerTest()
    {
        EXPECT_EQ(takeShown(), "today\r\n");
        scanner.onChanged = [this] { steps += steps.ends_with(status() + "|") ? "" : status() + "|"; };
    }

    /// Fills the boxes of the range.
    void type(const std::string& modes, const std::string& firstPid, const std::string& lastPid)
    {
        scanner.type(&ScanParameters::modeStart, modes.substr(0, 1));
        scanner.type(&ScanParameters::modeStop, modes.substr(1));
        scanner.type(&ScanParameters::pidStart, firstPid);
        scanner.type(&ScanParameters::pidStop, lastPid);
    }

    /// Presses the button; the adapter gets a command by that, and does not answer.
    void press(const char* command)
    {
        adapter.expect(command + std::string("\r"));
        scanner.pressScan();
    }

    /// Begins a scan whose adapter sends the opening's answers and those that the test has told. What it is
    /// sent last has no answer.
    void scan(const std::vector<std::pair<std::string, std::string>>& exchange, const std::string& last)
    {
        adapter.expectOpening();
        for (const auto& [request, reply] : exchange)
            adapter.expect(request + "\r").answer(reply + "\r\r>");
        adapter.expect(last + "\r");
        scanner.pressScan();
        adapter.play();
    }

    /// Status, counters, caption, what is enabled, progress.
    std::string face() const
    {
        const ScanPanel& p = scanner.panel();
        return p.statusBox + "|" + p.labelStats + "|" + p.comScan.caption + (p.mnuOpenCom ? " start" : "") +
               (p.mnuCloseCom ? " stop" : "") + (p.canChangeHeader ? " header" : "") +
               (timer.running ? " timer" : "") + "|" +
               std::to_string(static_cast<int>(p.ProgressBar1.value)) + "% " + p.ProgressBar1.text;
    }

    std::string takeShown() { return std::exchange(box.shown, {}); }
    const std::string& status() const { return scanner.panel().statusBox; }
};

TEST_F(ScannerTest, ScansARangeAndSumsItUp)
{
    int replies = 0;
    scanner.onReply = [&] { ++replies; };
    type("12", "0C", "0D");
    scan({{"010C", "41 0C 1A F8 "}, {"010D", "41 0D 00 "}, {"020C", "NO DATA"}}, "020D");
    EXPECT_EQ(steps, "Ready|com2 Opening...|com2 Init|com2 Scanning|Scanning 010C    1 Event(s)|"
                     "Scanning 010D    2 Event(s)|Scanning 020C    3 Event(s)|");
    EXPECT_EQ(replies, 5) << "with those to the opening";
    adapter.receive("42 0D ");
    EXPECT_EQ(face(), "Scanning 020C    3 Event(s)|Bytes In: 73 Out: 29 Errors: 0|Stop Scan stop|75% 3 of 4");
    adapter.expect("ATD\r");
    adapter.receive("\xE9 01 \r\r>");
    const std::string counts = "  Events(s):4\r\n    No Data:1\r\n    Invalid:0\r\n       Zero:1";
    EXPECT_EQ(takeShown(), "Header: 686AF1 Mode:1-2 Pid:0C-0D Suffix:\r\n"
                           "V 010C  1A F8 \r\nV 010D  00 \r\nN 020C NO DATA\r\nV 020D  \xC3\xA9 01 \r\n"
                           "Scan Completed\r\n" +
                               counts + "\r\n\r\n\r\n");
    const std::string line = "Bytes In: 81 Out: 33 Errors: 0";
    EXPECT_EQ(face(), "com2 Scan Completed 4 Events(s)|" + line + "|Begin Scan start header|100% ");
    scanner.showStatistics();
    EXPECT_EQ(prompts.takeMessage(), line + "\r\n\r\n" + counts);

    adapter.openError = CommError(8005, "Port already open");
    scanner.pressScan();
    const std::string why = "com2 - Comm init error: 8005: Port already open";
    EXPECT_EQ(face(), why + "|" + line + "|Begin Scan start header|0% ");
    EXPECT_EQ(scanner.failure() + takeShown(), why);
    adapter.workAgain();
    type("11", "5", "0"); // all counters but those of the bytes begin anew
    scan({{"0105", "BUS INIT: ...ERROR"}}, "ATD");
    EXPECT_TRUE(
        takeShown().starts_with("Header: 686AF1 Mode:1-1 Pid:5-0 Suffix:\r\nX 0105 BUS INIT: ...ERROR\r\n"));
    scanner.showStatistics();
    EXPECT_TRUE(prompts.takeMessage().ends_with("):1\r\n    No Data:0\r\n    Invalid:1\r\n       Zero:0"));
    EXPECT_EQ(scanner.failure(), "");
}

TEST_F(ScannerTest, AsksBeforeItErasesAndSkipsModeFourWithTheFunctionalHeader)
{
    type("44", "", "");
    scan({}, "ATD");
    EXPECT_NE(takeShown().find("\r\nSkipping mode 4 functional scans...Scan Completed\r\n  Events(s):0\r\n"),
              std::string::npos);
    EXPECT_EQ(scanner.panel().warning, "");
    scanner.type(&ScanParameters::cmdHead, "6810F1");
    EXPECT_EQ(scanner.panel().warning, erasesDataText);
    prompts.answer = false;
    scanner.pressScan();
    EXPECT_NE(prompts.question.find(erasesDataText), std::string::npos);
    prompts.answer = true;
    steps.clear();
    scan({{"ATSH6810F1", "OK"}, {"04", "44 "}}, "ATD");
    EXPECT_TRUE(steps.ends_with("|com2 Changing Header|com2 Scanning|com2 Scan Completed 1 Events(s)|"));
    EXPECT_NE(takeShown().find("V 04  \r\nScan Completed"), std::string::npos);

    type("55", "", ""); // erases nothing: no question
    scan({{"ATSH6810F1", "?"}}, "ATD");
    EXPECT_TRUE(
        takeShown().starts_with("Header: 6810F1 Mode:5-5 Pid:- Suffix:\r\nError setting header\r\nScan C"));
    EXPECT_EQ(beeps, 1);
    EXPECT_EQ(scanner.failure(), "com2 Error on set header");
}

TEST_F(ScannerTest, CanBeStoppedAtAnyTime)
{
    const std::string halted = "com2 Scan Halted after 0 Events(s)|";
    scan({}, "0100");
    EXPECT_FALSE(timer.running) << "requests have no time-out";
    press("ATD"); // no reply has come
    EXPECT_EQ(face(), halted + "Bytes In: 30 Out: 18 Errors: 0|Begin Scan start header|0% ");
    EXPECT_EQ(scanner.failure(), "") << "the user wanted it";
    EXPECT_NE(takeShown().find("Suffix:\r\nScan Halted\r\n  Events(s):0\r\n"), std::string::npos);
    press("ATZ");
    adapter.expect("ATD\r");
    timer.tick();
    EXPECT_EQ(prompts.takeMessage(), AdapterLink::notRespondingText);
    EXPECT_EQ(face(), halted + "Bytes In: 30 Out: 26 Errors: 1|Begin Scan start header|0% ");
    press("ATZ");
    silence.tick();
    EXPECT_EQ(status(), "com2 Opening... - nothing received for 10 s");
    adapter.receive("ATZ\r");
    EXPECT_EQ(status(), "com2 Opening...");
    adapter.sendNotice(PortNotice::unexplained);
    EXPECT_EQ(status(), "com2 Opening... - unhandled comm Event: 0");
    adapter.sendNotice(PortNotice::deviceGone);
    EXPECT_EQ(face(),
              "com2 - adapter disconnected|Bytes In: 34 Out: 30 Errors: 3|Begin Scan start header|0% ");
    EXPECT_EQ(scanner.failure(), status());

    type("12", "0000", "FFFF");
    scan({}, "010000");
    clock.now += std::chrono::seconds(10);
    adapter.expect("010001\r");
    adapter.receive("?\r\r>");
    EXPECT_TRUE(face().ends_with("|Stop Scan stop|0% 1 of 131072, 364:05:10 left")) << face();
    takeShown();
    adapter.expect("ATD\r");
    scanner.unload();
    EXPECT_TRUE(takeShown().starts_with("Scan Halted"));
}

TEST_F(ScannerTest, DoesNotBeginWithWhatTookTheRefusedTextsPlace)
{
    const auto leave = [this](Scanner::Box typed, const char* text, bool towardsScan) {
        scanner.type(typed, text);
        scanner.leave(typed, towardsScan);
        return status() + "|" + scanner.boxes().*typed;
    };
    EXPECT_EQ(leave(&ScanParameters::modeStart, "3g", true), "Mode must be 1 or 2 hex digits|01");
    scanner.pressScan();
    press("ATZ"); // pressed again, it begins with it
    press("ATD");
    leave(&ScanParameters::pidStop, "xyz", false); // towards another box: its user sees what became of it
    press("ATZ");
    press("ATD");
    leave(&ScanParameters::pidStop, "", true); // stays as it was left
    press("ATZ");
    press("ATD");
    EXPECT_TRUE(leave(&ScanParameters::modeStop, "a", false).ends_with("|A"));
    EXPECT_EQ(beeps, 3);
}

TEST_F(ScannerTest, RemembersAllButTheHeader)
{
    const ScanParameters& boxes = scanner.boxes();
    MemorySettings settings;
    scanner.restore(settings);
    EXPECT_EQ(boxes.modeStart + boxes.pidStop, "011F") << "the first time";
    type("29", "", "1A");
    scanner.type(&ScanParameters::cmdHead, "6810F1");
    scanner.remember(settings);
    type("11", "5", "5");
    scanner.type(&ScanParameters::cmdHead, "686AF1");
    settings.save("Scanner", "pidStop", "damaged");
    scanner.restore(settings);
    EXPECT_EQ(boxes.cmdHead + boxes.modeStart + boxes.modeStop + boxes.pidStart + boxes.pidStop, "686AF1295");
}

} // namespace
} // namespace zint
