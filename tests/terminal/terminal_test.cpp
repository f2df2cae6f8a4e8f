#include "terminal/terminalTest.h"

namespace zint {
namespace {

using std::chrono::milliseconds;
using Counted = std::vector<std::int64_t>;

TEST_F(TerminalTest, OpensAndCloses)
{
    EXPECT_EQ(status(), "com3 Closed");
    EXPECT_EQ(line(), "Bytes In: 0  Out: 0     Errors: 0");
    const auto expectClosed = [this] {
        EXPECT_EQ(terminal.panel().openCom.caption, "Open OBD (com3)");
        EXPECT_TRUE(terminal.panel().mnuOpenCom);
        EXPECT_FALSE(terminal.panel().mnuCloseCom || terminal.panel().sendIsDefault || terminal.isReady());
    };
    expectClosed();
    int prompted = 0;
    terminal.onPrompt = [&] { ++prompted; };

    adapter.expect("ATZ\r");
    terminal.pressOpenCom();
    EXPECT_EQ(box.shown, "Initializing...");
    EXPECT_EQ(status(), "com3 Open");
    EXPECT_EQ(line(), "Bytes In: 0 Out: 4 Errors: 0");
    EXPECT_EQ(terminal.panel().openCom.caption, "Close OBD (com3)");
    EXPECT_FALSE(terminal.panel().mnuOpenCom);
    EXPECT_TRUE(terminal.panel().mnuCloseCom && terminal.panel().sendIsDefault);
    EXPECT_TRUE(timer.enabled());
    EXPECT_EQ(timer.interval, std::chrono::seconds(45));

    for (const char* piece : {"\xFC>AT", "ATZ\r", "\r\rELM327\x7Fv1.5\r", "\r"})
        adapter.receive(piece);
    EXPECT_EQ(line(), "Bytes In: 0 Out: 4 Errors: 0") << "nothing to show yet";
    EXPECT_TRUE(timer.enabled());
    adapter.expect("ATE0\r");
    adapter.receive(">");
    EXPECT_EQ(box.shown, "ATZ   ELM327 v1.5  \r\n");
    EXPECT_EQ(status(), "com3 Init");
    EXPECT_EQ(line(), "Bytes In: 24 Out: 9 Errors: 0");
    EXPECT_FALSE(timer.enabled() || terminal.isReady());
    EXPECT_EQ(prompted, 0) << "no time for a command yet";
    adapter.receive("ATE0\rOK\r");
    adapter.receive("\r>");
    EXPECT_EQ(box.shown, "ATZ   ELM327 v1.5  \r\nATE0 OK  \r\n");
    EXPECT_EQ(status(), "com3 Ready");
    EXPECT_TRUE(terminal.isReady());
    EXPECT_EQ(prompted, 1);
    EXPECT_EQ(counted(), (Counted{34, 2, 9, 1, 0, 0, 0, 0}));

    adapter.receive("41"); // cut off by closing
    adapter.expect("ATD\r");
    terminal.pressOpenCom();
    EXPECT_EQ(status(), "com3 Closed");
    EXPECT_EQ(counted(), (Counted{36, 2, 13, 2, 0, 0, 0, 0}));
    EXPECT_EQ(line(), "Bytes In: 34 Out: 9 Errors: 0") << "refreshed with the next output";
    expectClosed();

    adapter.expect("ATZ\r").answer("v1>"); // without an echo, and all of it is the banner
    adapter.expect("ATE0\r");
    terminal.pressOpenCom();
    adapter.play();
    EXPECT_TRUE(box.shown.ends_with("OK  \r\nv1\r\n")) << box.shown;
    adapter.expect("ATD\r");
    terminal.unload();
    terminal.unload();
    EXPECT_EQ(adapter.history, (Pieces{"open 3 38400,N,8,1", "ATZ\r", "ATE0\r", "ATD\r", "close",
                                       "open 3 38400,N,8,1", "ATZ\r", "ATE0\r", "ATD\r", "close"}));
}

TEST_F(TerminalTest, TellsWhyThePortCannotBeOpened)
{
    adapter.writeError = CommError(5, "Input/output error");
    terminal.pressOpenCom();
    EXPECT_EQ(status(), "com3 - Comm init error: 5: Input/output error");
    EXPECT_EQ(adapter.history.back(), "close");
    adapter.openError = CommError(2, "No such file or directory");
    terminal.pressOpenCom();
    EXPECT_EQ(status(), "com3 - Comm init error: 2: No such file or directory");
    EXPECT_EQ(terminal.panel().openCom.caption, "Open OBD (com3)");
    EXPECT_TRUE(terminal.panel().mnuOpenCom);
    EXPECT_FALSE(terminal.panel().mnuCloseCom || terminal.panel().sendIsDefault || timer.enabled());
    EXPECT_EQ(counted(), Counted(8));
    terminal.pressSendCom();
    terminal.pressRepeatCom();
    EXPECT_EQ(terminal.panel().repeatCom.caption, "Send Repeatedly") << "a closed port sends nothing";
    EXPECT_EQ(counted(), Counted(8));
    adapter.workAgain();
    getReady();
}

TEST_F(TerminalTest, AResetWithoutAnAnswerIsToldAndTheCommandSent)
{
    adapter.expect("ATZ\r").answer("ATZ\r");
    terminal.setCommand("0100");
    terminal.pressOpenCom();
    adapter.play();
    adapter.expect("0100\r");
    prompts.whileOpen = [this] { EXPECT_FALSE(timer.enabled()); };
    timer.tick();
    EXPECT_EQ(prompts.takeMessage(),
              "OBD is not responding... Please verify connections between computer and vehicle");
    EXPECT_EQ(counted(), (Counted{4, 0, 9, 2, 1, 0, 0, 0}));
    timer.tick();
    adapter.expect("ATE0\r");
    adapter.receive("late>");
    EXPECT_EQ(status(), "com3 Init");

    adapter.expect("ATD\r");
    adapter.expect("ATZ\r");
    terminal.pressOpenCom();
    terminal.pressOpenCom();
    adapter.expect("0100\r");
    terminal.pressRepeatCom();
    adapter.expect("\r");
    timer.tick();
    EXPECT_NE(prompts.takeMessage(), "");

    adapter.expect("ATD\r");
    adapter.expect("ATZ\r");
    terminal.pressOpenCom();
    terminal.pressOpenCom();
    adapter.expect("ATD\r");
    prompts.whileOpen = [this] { terminal.pressOpenCom(); };
    timer.tick();
    EXPECT_NE(prompts.takeMessage(), "");
    EXPECT_EQ(status(), "com3 Closed") << "and nothing is sent";
}

TEST_F(TerminalTest, ReportsOneKindOfEventAndALostDevice)
{
    getReady();
    adapter.sendEvent(1006);
    EXPECT_EQ(status(), "com3 Ready");
    adapter.sendEvent(commEvent::unknown);
    adapter.sendEvent(commEvent::unknown);
    EXPECT_EQ(status(), "com3 Ready - unhandled comm Event: 0 - unhandled comm Event: 0");
    EXPECT_EQ(terminal.counters().totalErrors, 2);

    terminal.setCommand("0101");
    adapter.expect("0101\r");
    terminal.pressRepeatCom();
    adapter.vanish();
    EXPECT_EQ(status(), "com3 - adapter disconnected");
    EXPECT_EQ(terminal.counters().totalErrors, 3);
    EXPECT_EQ(terminal.panel().repeatCom.caption, "Send Repeatedly");
    EXPECT_TRUE(terminal.panel().sendCom.enabled && terminal.panel().mnuOpenCom);
    EXPECT_EQ(adapter.history.back(), "close");

    adapter.workAgain();
    getReady({.mode = OutputMode::overwrite});
    adapter.receive("LP ALERT\r");
    EXPECT_EQ(box.shown, "LP ALERT\r\n") << "no command, also none of before";
    const std::int64_t sent = terminal.counters().bytesOut;
    adapter.writeError = CommError(5, "Input/output error"); // its event has not come yet
    terminal.pressSendCom();
    EXPECT_EQ(terminal.counters().bytesOut, sent) << "what was not sent is not counted";
}

TEST_F(TerminalTest, ShowsALineWhenItIsComplete)
{
    getReady({.mode = OutputMode::append});
    takeShown();
    Pieces changes; // of the output box and the counters' line, by notification
    const auto receive = [&](const char* text) {
        const std::string before = line();
        adapter.receive(text);
        changes.push_back(takeShown() + (line() == before ? "" : "*"));
    };
    terminal.clearCounters();
    send("01 0b", {});
    EXPECT_EQ(takeShown(), ">01 0b  ") << "sent as typed and shown at once";
    EXPECT_EQ(line(), "Bytes In: 0 Out: 6 Errors: 0");
    // characters behind the first line end wait for the next notification
    for (const char* text :
         {"41 0", "C ", "\r", "\r>", "41 0B\r\n7F\r", "x", "NO DATA\r", "80000000\r", "caf\xE9\r"})
        receive(text);
    EXPECT_EQ(changes, (Pieces{"", "", "41  C  \r\n*", "", "41  B \r\n*", "7F \r\n*", "xNO DATA\r\n*",
                               "80000000\r\n*", "caf\xC3\xA9\r\n*"}));
    EXPECT_EQ(status(), "com3 - Overflow: a number is larger than 7FFFFFFF");
    EXPECT_EQ(counted(), (Counted{42, 6, 6, 1, 1, 0, 0, 0}));
}

TEST_F(TerminalTest, SendsAgainAsSoonAsTheAdapterIsReady)
{
    const Pieces reply{"41 0C \r", "\r>"};
    getReady({.mode = OutputMode::append});
    takeShown();
    terminal.clearCounters();
    terminal.setCommand("010C");
    adapter.expect("010C\r").pieces = reply;
    for (int i = 0; i < 3; ++i)
        adapter.expect("\r").pieces = reply;
    adapter.expect("\r");
    clock.now = milliseconds(700);
    terminal.pressRepeatCom();
    EXPECT_EQ(terminal.panel().repeatCom.caption, "Stop Sending");
    EXPECT_FALSE(terminal.panel().sendCom.enabled);
    adapter.play();
    EXPECT_EQ(takeShown(), ">010C  41  C  \r\n41  C  \r\n41  C  \r\n41  C  \r\n") << "the command once";
    EXPECT_EQ(counted(), (Counted{36, 4, 9, 9, 0, 0, 0, 0})) << "each repeated send counts as two";
    clock.now += milliseconds(3999);
    terminal.pressRepeatCom();
    EXPECT_EQ(status(), "4 In 3 second(s) (1.33)");
    EXPECT_EQ(terminal.panel().repeatCom.caption, "Send Repeatedly");
    EXPECT_TRUE(terminal.panel().sendCom.enabled);
    for (const std::string& piece : reply)
        adapter.receive(piece); // to the last one; nothing follows

    adapter.expect("010C\r").pieces = {"41\r", "\r>"}; // the adapter was asked before it was ready
    adapter.expect("\r");
    terminal.pressRepeatCom();
    clock.now += milliseconds(999);
    adapter.play();
    terminal.pressRepeatCom();
    EXPECT_EQ(status(), "1 In 0 second(s) (0)");

    adapter.expect("010C\r");
    terminal.pressRepeatCom();
    adapter.expect("\r");
    adapter.receive("SEARCH"); // no line yet, so that the last one, which ended in the prompt, counts again
    adapter.receive("ING...\r");
    adapter.expect("\r");
    adapter.receive("NO DATA\r\r>");
    adapter.expect("ATD\r");
    terminal.pressOpenCom();
    EXPECT_EQ(status(), "com3 Closed");
    EXPECT_EQ(terminal.panel().repeatCom.caption, "Send Repeatedly");
    EXPECT_TRUE(terminal.panel().sendCom.enabled);

    getReady();
    adapter.expect("010C\r");
    terminal.pressRepeatCom();
    adapter.receive("SEARCH"); // the prompt of before the closing does not count
}

TEST_F(TerminalTest, ShowsTheLastRepliesTheLastOneOrAll)
{
    getReady();
    const auto ask = [this](int value) {
        const std::string digits = {"0123456789ABCDEF"[value / 16], "0123456789ABCDEF"[value % 16]};
        send("!", {digits + "\r", "\r>"});
        return ">!  " + std::to_string(value) + " \r\n";
    };
    TerminalOptions options{.base = NumberBase::decimal};
    terminal.setOptions(options);
    std::string expected;
    for (int value = 0; value <= 12; ++value) {
        const std::string entry = ask(value);
        expected += value == 0 ? "" : entry;
    }
    EXPECT_EQ(box.shown, expected) << "the last 12, the oldest first";
    options.mode = OutputMode::append;
    terminal.setOptions(options);
    EXPECT_EQ(box.shown, expected) << "a mode begins with the next reply";
    expected += ask(13);
    EXPECT_EQ(box.shown, expected);
    options.mode = OutputMode::overwrite;
    terminal.setOptions(options);
    EXPECT_EQ(ask(14), box.shown);
    send("wait", {});
    EXPECT_EQ(box.shown, ">!  14 \r\n>wait  ") << "a command is shown in any mode, until its reply comes";

    terminal.clearOutput();
    EXPECT_EQ(box.shown, "");
    terminal.setOptions({.base = NumberBase::decimal});
    expected = ask(1);
    EXPECT_EQ(box.shown, expected) << "none of before";
    for (int value = 2; value <= 12; ++value)
        expected += ask(value);
    EXPECT_EQ(box.shown, expected);
}

TEST_F(TerminalTest, ShowsAndClearsItsCounters)
{
    EXPECT_EQ((TerminalCounters{1, 2, 3, 4, 5, 6, 7, 8}.statistics()),
              "Bytes In: 1\r\n   Messages Recvd:2\r\n\r\nBytes Out: 3\r\n   Commands Sent:4\r\n\r\n"
              "Total Errors: 5\r\n   Msg Underflow: 6\r\n   Cmd failed: 7\r\n   Cmd syntax err: 8");
    getReady();
    terminal.showStatistics();
    EXPECT_EQ(prompts.takeMessage(), terminal.counters().statistics());
    EXPECT_EQ(prompts.messageTitle, "Piolum Stats");
    EXPECT_EQ(line(), "Bytes In: 30 Out: 9 Errors: 0");
    terminal.clearCounters();
    EXPECT_EQ(line(), "Bytes In: 0 Out: 0 Errors: 0");
    EXPECT_EQ(counted(), Counted(8));
    terminal.showStatus("out.txt saved");
    EXPECT_EQ(status(), "out.txt saved");
}

} // namespace
} // namespace zint
