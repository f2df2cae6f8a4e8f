#include "scanner/scanner.h"
#include "support/manualTime.h"
#include "support/memorySettings.h"
#include "support/scriptedAdapter.h"
#include "support/scriptedPrompts.h"
#include "support/textBox.h"

namespace zint {
namespace {

using namespace std::chrono_literals;

/// A scanner on com2 whose adapter follows a script.
struct ScannerTest : testing::Test {
    ScriptedAdapter adapter;
    ManualTimer timer, silence;
    ManualClock clock;
    ScriptedPrompts prompts;
    TextBox box;
    std::string steps; ///< the status at each change, once
    int beeps = 0;
    int replies = 0;
    Scanner scanner{{.port = adapter,
                     .timer = timer,
                     .silence = silence,
                     .clock = clock,
                     .prompts = prompts,
                     .outBox = box,
                     .dateText = [](auto) { return std::string("today"); },
                     .beep = [this] { ++beeps; }},
                    {.port = PortNumber{2}}};

    ScannerTest()
    {
        EXPECT_EQ(takeShown(), "today\r\n");
        scanner.onReply = [this] { ++replies; };
        scanner.onChanged = [this] {
            if (!steps.ends_with(status() + "|"))
                steps += status() + "|";
        };
    }

    /// Fills all boxes but the header's.
    void type(const std::string& modes, const std::string& firstPid, const std::string& lastPid,
              const std::string& suffix = {})
    {
        scanner.type(&ScanParameters::modeStart, modes.substr(0, 1));
        scanner.type(&ScanParameters::modeStop, modes.substr(1));
        scanner.type(&ScanParameters::pidStart, firstPid);
        scanner.type(&ScanParameters::pidStop, lastPid);
        scanner.type(&ScanParameters::cmdSuffix, suffix);
        steps.clear();
    }

    void answer(const std::string& request, const std::string& reply)
    {
        adapter.expect(request + "\r").answer(reply + "\r\r>");
    }

    /// Begins a scan whose adapter sends the opening's answers and those that the test has told. What it is
    /// sent last has no answer.
    void scan(const std::vector<std::pair<const char*, const char*>>& exchange, const char* last)
    {
        adapter.expectOpening();
        for (const auto& [request, reply] : exchange)
            answer(request, reply);
        adapter.expect(last + std::string("\r"));
        scanner.pressScan();
        adapter.play();
    }

    /// @param counts events, those without data, invalid ones, those of value 0; a digit each
    static std::string summary(const std::string& end, const std::string& counts)
    {
        return end + "\r\n  Events(s):" + counts[0] + "\r\n    No Data:" + counts[1] +
               "\r\n    Invalid:" + counts[2] + "\r\n       Zero:" + counts[3] + "\r\n\r\n\r\n";
    }

    /// Status, counters, caption, what is enabled, progress.
    std::string face() const
    {
        const ScanPanel& p = scanner.panel();
        return p.statusBox + "|" + p.labelStats + "|" + p.comScan.caption + (p.mnuOpenCom ? " start" : "") +
               (p.mnuCloseCom ? " stop" : "") + (timer.running ? " timer" : "") + "|" +
               std::to_string(static_cast<int>(p.ProgressBar1.value)) + "% " + p.ProgressBar1.text;
    }

    std::string takeShown() { return std::exchange(box.shown, {}); }
    const std::string& status() const { return scanner.panel().statusBox; }
};

TEST_F(ScannerTest, ScansARangeAndSumsItUp)
{
    type("12", "0C", "0D");
    scan({{"010C", "41 0C 1A F8 "}, {"010D", "41 0D 00 "}, {"020C", "NO DATA"}}, "020D");
    EXPECT_EQ(steps, "com2 Opening...|com2 Init|com2 Scanning|Scanning 010C    1 Event(s)|"
                     "Scanning 010D    2 Event(s)|Scanning 020C    3 Event(s)|");
    EXPECT_EQ(replies, 5) << "with those to the opening";
    EXPECT_EQ(takeShown(), "Header: 686AF1 Mode:1-2 Pid:0C-0D Suffix:\r\n"
                           "V 010C  1A F8 \r\nV 010D  00 \r\nN 020C NO DATA\r\n");
    adapter.receive("42 0D ");
    EXPECT_EQ(face(), "Scanning 020C    3 Event(s)|Bytes In: 73 Out: 29 Errors: 0|Stop Scan stop|75% 3 of 4");
    adapter.expect("ATD\r");
    adapter.receive("\xE9 01 \r\r>");
    EXPECT_EQ(takeShown(), "V 020D  \xC3\xA9 01 \r\n" + summary("Scan Completed", "4101"));
    EXPECT_EQ(face(),
              "com2 Scan Completed 4 Events(s)|Bytes In: 81 Out: 33 Errors: 0|Begin Scan start|100% ");
    EXPECT_EQ(adapter.history.back(), "close");
    scanner.showStatistics();
    EXPECT_EQ(prompts.takeMessage(),
              "Bytes In: 81 Out: 33 Errors: 0\r\n\r\n  Events(s):4\r\n    No Data:1\r\n    Invalid:0\r\n"
              "       Zero:1");

    adapter.openError = CommError(8005, "Port already open");
    scanner.pressScan();
    const std::string why = "com2 - Comm init error: 8005: Port already open";
    EXPECT_EQ(face(), why + "|Bytes In: 81 Out: 33 Errors: 0|Begin Scan start|0% ");
    EXPECT_EQ(scanner.failure() + takeShown(), why);
    adapter.workAgain();
    type("11", "5", "0"); // all counters but those of the bytes begin anew
    scan({{"0105", "?"}}, "ATD");
    EXPECT_EQ(takeShown(),
              "Header: 686AF1 Mode:1-1 Pid:5-0 Suffix:\r\nX 0105 ?\r\n" + summary("Scan Completed", "1010"));
    EXPECT_EQ(scanner.failure(), "");
}

TEST_F(ScannerTest, AsksBeforeItErasesAndSkipsModeFourWithTheFunctionalHeader)
{
    type("44", "", "");
    scan({}, "ATD");
    EXPECT_TRUE(takeShown().ends_with("Suffix:\r\nSkipping mode 4 functional scans..." +
                                      summary("Scan Completed", "0000")));
    EXPECT_EQ(scanner.panel().warning, "");
    scanner.type(&ScanParameters::cmdHead, "6810F1");
    EXPECT_EQ(scanner.panel().warning, erasesDataText);
    prompts.answer = false;
    scanner.pressScan();
    EXPECT_NE(prompts.question.find(erasesDataText), std::string::npos);
    EXPECT_FALSE(scanner.isScanning());
    prompts.answer = true;
    scan({}, "ATSH6810F1");
    EXPECT_EQ(status(), "com2 Changing Header");
    answer("04", "44 ");
    adapter.expect("ATD\r");
    adapter.receive("OK\r\r>");
    adapter.play();
    EXPECT_NE(takeShown().find("V 04  \r\nScan Completed"), std::string::npos);

    type("55", "", ""); // erases nothing: no question
    scan({{"ATSH6810F1", "?"}}, "ATD");
    EXPECT_EQ(takeShown(), "Header: 6810F1 Mode:5-5 Pid:- Suffix:\r\nError setting header\r\n" +
                               summary("Scan Completed", "0000"));
    EXPECT_EQ(beeps, 1);
    EXPECT_EQ(scanner.failure(), "com2 Error on set header");
}

TEST_F(ScannerTest, CanBeStoppedAtAnyTime)
{
    const auto begin = [this] {
        EXPECT_TRUE(takeShown().ends_with(summary("Scan Halted", "0000")));
        adapter.expect("ATZ\r");
        scanner.pressScan();
        EXPECT_TRUE(timer.running && timer.interval == 45s);
    };
    scan({}, "0100");
    EXPECT_FALSE(timer.running) << "requests have no time-out";
    adapter.expect("ATD\r");
    scanner.pressScan(); // no reply has come
    EXPECT_EQ(face(),
              "com2 Scan Halted after 0 Events(s)|Bytes In: 30 Out: 18 Errors: 0|Begin Scan start|0% ");
    EXPECT_EQ(scanner.failure(), "") << "the user wanted it";
    begin();
    adapter.expect("ATD\r");
    timer.tick();
    EXPECT_EQ(prompts.takeMessage(), AdapterLink::notRespondingText);
    EXPECT_EQ(face(),
              "com2 Scan Halted after 0 Events(s)|Bytes In: 30 Out: 26 Errors: 1|Begin Scan start|0% ");
    begin();
    silence.tick();
    EXPECT_EQ(status(), "com2 Opening... - nothing received for 10 s");
    adapter.receive("ATZ\r");
    EXPECT_EQ(status(), "com2 Opening...");
    adapter.sendNotice(PortNotice::unexplained);
    adapter.sendNotice(PortNotice{1});
    EXPECT_EQ(status(), "com2 Opening... - unhandled comm Event: 0");
    adapter.sendNotice(PortNotice::deviceGone);
    EXPECT_EQ(face(), "com2 - adapter disconnected|Bytes In: 34 Out: 30 Errors: 3|Begin Scan start|0% ");
    EXPECT_EQ(scanner.failure(), status());

    type("12", "0000", "FFFF");
    EXPECT_TRUE(scanner.panel().canChangeHeader);
    scan({}, "010000");
    EXPECT_FALSE(scanner.panel().canChangeHeader) << "another one might erase without a question";
    clock.now += 10s;
    adapter.expect("010001\r");
    adapter.receive("?\r\r>");
    EXPECT_TRUE(face().ends_with("|0% 1 of 131072, 364:05:10 left")) << face();
    adapter.expect("ATD\r");
    scanner.unload();
    EXPECT_NE(takeShown().find("Scan Halted"), std::string::npos);
}

TEST_F(ScannerTest, DoesNotBeginWithWhatTookTheRefusedTextsPlace)
{
    const auto leave = [this](Scanner::Box typed, const char* text, bool towardsScan) {
        scanner.type(typed, text);
        scanner.leave(typed, towardsScan);
    };
    leave(&ScanParameters::modeStart, "3g", true);
    scanner.pressScan();
    EXPECT_EQ(status() + scanner.boxes().modeStart, "Mode must be 1 or 2 hex digits01");
    leave(&ScanParameters::pidStop, "xyz", false); // towards another box: its user sees what became of it
    EXPECT_EQ(status() + scanner.boxes().pidStop, "Pid must be 0 to 4 hex digits");
    for (const bool towardsScan : {false, true}) {
        leave(&ScanParameters::pidStop, "", towardsScan); // stays as it was left
        adapter.expect("ATZ\r");
        scanner.pressScan();
        EXPECT_TRUE(scanner.isScanning());
        adapter.expect("ATD\r");
        scanner.pressScan();
    }
    leave(&ScanParameters::modeStop, "a", false);
    EXPECT_EQ(scanner.boxes().modeStop, "A");
    EXPECT_EQ(beeps, 4);
}

TEST_F(ScannerTest, RemembersAllButTheHeader)
{
    const auto shown = [this] {
        const ScanParameters& b = scanner.boxes();
        const Scanner::Display& d = scanner.display();
        return b.cmdHead + " " + b.modeStart + "-" + b.modeStop + " " + b.pidStart + "-" + b.pidStop + " " +
               b.cmdSuffix + " " + std::to_string(static_cast<int>(d.filter)) + (d.dspDecimal ? "d" : "") +
               (d.dspAscii ? "a" : "") + (d.dspNames ? "n" : "");
    };
    MemorySettings settings;
    scanner.restore(settings);
    EXPECT_EQ(shown(), "686AF1 01-01 00-1F  0") << "the first time";
    type("29", "", "1A", "00");
    scanner.type(&ScanParameters::cmdHead, "6810F1");
    scanner.setDisplay({.filter = ScanFilter::exceptNoData, .dspDecimal = false, .dspAscii = true});
    scanner.remember(settings);
    type("11", "5", "5");
    scanner.type(&ScanParameters::cmdHead, "686AF1");
    scanner.setDisplay({});
    settings.save("Scanner", "pidStop", "damaged");
    scanner.restore(settings);
    EXPECT_EQ(shown(), "686AF1 2-9 -5 00 3a");
}

} // namespace
} // namespace zint
