#include "terminal/terminalTest.h"

namespace zint {
namespace {

using std::chrono::milliseconds;

TEST_F(TerminalTest, OpensAndCloses)
{
    const std::string closed =
        "|Bytes In: 0  Out: 0     Errors: 0|Open OBD (com3)|Send Repeatedly|open send ";
    EXPECT_EQ(face(), "com3 Closed" + closed);
    box.shown = "of before";
    adapter.writeError = CommError(5, "Input/output error");
    terminal.pressOpenCom();
    EXPECT_EQ(face(), "com3 - Comm init error: 5: Input/output error" + closed);
    EXPECT_EQ(adapter.history.back() + box.shown, "closeof before");
    for (const auto press : {&Terminal::pressSendCom, &Terminal::pressRepeatCom}) {
        (terminal.*press)();
        EXPECT_EQ(face(), "com3 Closed - press Open OBD first" + closed);
    }
    EXPECT_EQ(counted(), Counted(8));

    adapter.workAgain();
    int prompted = 0;
    terminal.onPrompt = [&] { ++prompted; };
    toggle("ATZ");
    EXPECT_EQ(box.shown, "Initializing...");
    const std::string open = "|Close OBD (com3)|Send Repeatedly|close send default ";
    EXPECT_EQ(face(), "com3 Open|Bytes In: 0 Out: 4 Errors: 0" + open + "timer ");
    EXPECT_EQ(timer.interval, std::chrono::seconds(45));
    adapter.receive("\xFC>ATZ\r\r\rELM327\x7Fv1.5\r");
    EXPECT_TRUE(face().ends_with("timer ") && box.shown == "Initializing...");
    adapter.expect("ATE0\r");
    adapter.receive("\r>");
    EXPECT_EQ(face(), "com3 Init|Bytes In: 22 Out: 9 Errors: 0" + open);
    EXPECT_FALSE(terminal.isReady() || prompted != 0);
    adapter.receive("ATE0\rOK\r\r>");
    EXPECT_EQ(face(), "com3 Ready|Bytes In: 32 Out: 9 Errors: 0" + open);
    EXPECT_TRUE(terminal.isReady() && prompted == 1);
    EXPECT_EQ(box.shown, "ATZ   ELM327 v1.5  \r\nATE0 OK  \r\n");
    adapter.receive("41"); // cut off by closing
    toggle("ATD");
    EXPECT_EQ(face(), "com3 Closed|Bytes In: 32 Out: 9 Errors: 0|Open OBD (com3)|Send Repeatedly|open send ");
    EXPECT_EQ(counted(), (Counted{34, 2, 13, 2, 0, 0, 0, 0})) << "the line is refreshed with the next output";

    toggle("ATZ");
    adapter.expect("ATE0\r");
    adapter.receive("v1>"); // without an echo, and all of it is the banner
    EXPECT_TRUE(box.shown.ends_with("OK  \r\nv1\r\n")) << box.shown;
    for (const auto end : {&Terminal::pressOpenCom, &Terminal::unload}) { // also while the adapter starts up
        adapter.expect("ATD\r");
        (terminal.*end)();
        EXPECT_FALSE(timer.enabled() || terminal.isOpen());
        toggle("ATZ");
    }
    adapter.expect("ATD\r");
    terminal.unload();
    terminal.unload();
}

TEST_F(TerminalTest, AResetWithoutAnAnswerIsToldAndTheCommandSent)
{
    const auto timeOut = [this](const char* sent, const char* shownStatus) {
        if (sent != nullptr)
            adapter.expect(sent);
        timer.tick();
        EXPECT_EQ(prompts.takeMessage(), AdapterLink::notRespondingText);
        EXPECT_TRUE(face().starts_with(shownStatus)) << face();
    };
    terminal.setCommand("0100");
    toggle("ATZ");
    prompts.whileOpen = [this] { EXPECT_FALSE(timer.enabled()); };
    timeOut("0100\r", "com3 Open|");
    EXPECT_EQ(counted(), (Counted{0, 0, 9, 2, 1, 0, 0, 0}));
    adapter.expect("ATE0\r");
    adapter.receive("late>");
    EXPECT_TRUE(face().starts_with("com3 Init|"));
    toggle("ATD");
    toggle("ATZ");
    adapter.expect("0100\r");
    terminal.pressRepeatCom();
    timeOut("\r", "com3 Open|");
    toggle("ATD");
    toggle("ATZ");
    prompts.whileOpen = [this] { toggle("ATD"); };
    timeOut(nullptr, "com3 Closed|");
    toggle("ATZ");
    terminal.sendNothingAfterTimeout();
    timeOut(nullptr, "com3 Open|");
}

TEST_F(TerminalTest, ReportsOneKindOfEventAndALostDevice)
{
    getReady();
    for (const PortNotice notice : {PortNotice{1006}, PortNotice::unexplained, PortNotice::unexplained})
        adapter.sendNotice(notice);
    EXPECT_TRUE(face().starts_with("com3 Ready - unhandled comm Event: 0 - unhandled comm Event: 0|"));
    adapter.expect("\r");
    terminal.pressRepeatCom();
    EXPECT_TRUE(face().starts_with("com3 Ready|")) << "the events were those of before";
    adapter.vanish();
    EXPECT_EQ(face(), "com3 - adapter disconnected|Bytes In: 30 Out: 10 Errors: 3|Open OBD (com3)|"
                      "Send Repeatedly|open send ");
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
    terminal.clearCounters();
    EXPECT_TRUE(face().starts_with("com3 Ready|Bytes In: 0 Out: 0 Errors: 0|"));
    send("01 0b", {});
    EXPECT_EQ(takeShown(), ">01 0b  ") << "sent as typed and shown at once";
    std::string shown; // of the output box by notification, and "*" when a counter changes
    for (const char* text :
         {"41 0", "C \r", "\r>", "\r\n41 0B\r\n7F\r", "x", "\nNO DATA\r", "caf\xE9\r", "80000000\r"}) {
        const std::string before = face();
        adapter.receive(text);
        shown += takeShown() + (face() == before ? "|" : "*|");
    }
    // line ends in front belong to nothing; what follows the line end waits for the next notification
    EXPECT_EQ(shown, "|41  C  \r\n*||41  B \r\n*|7F \r\n*|xNO DATA\r\n*|caf\xC3\xA9\r\n*|80000000\r\n*|");
    EXPECT_EQ(counted(), (Counted{45, 6, 6, 1, 1, 0, 0, 0}));
    EXPECT_TRUE(face().starts_with("com3 - Overflow: a number is larger than 7FFFFFFF|Bytes In: 45 "));
    send("0", {});
    EXPECT_TRUE(face().starts_with("com3 Ready|Bytes In: 45 Out: 8 Errors: 1|"));
    terminal.showStatistics();
    EXPECT_EQ(prompts.takeMessage(), terminal.counters().statistics());
    EXPECT_EQ(prompts.messageTitle, "Piolum Stats");
    EXPECT_EQ((TerminalCounters{1, 2, 3, 4, 5, 6, 7, 8}.statistics()),
              "Bytes In: 1\r\n   Messages Recvd:2\r\n\r\nBytes Out: 3\r\n   Commands Sent:4\r\n\r\n"
              "Total Errors: 5\r\n   Msg Underflow: 6\r\n   Cmd failed: 7\r\n   Cmd syntax err: 8");
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
    adapter.play();
    EXPECT_TRUE(face().ends_with("|Stop Sending|close default ")) << face();
    EXPECT_EQ(takeShown(), ">010C  41  C  \r\n41  C  \r\n41  C  \r\n41  C  \r\n") << "the command once";
    EXPECT_EQ(counted(), (Counted{36, 4, 9, 9, 0, 0, 0, 0})) << "each repeated send counts as two";
    clock.now += milliseconds(3999);
    terminal.pressRepeatCom();
    EXPECT_TRUE(face().starts_with("4 In 3 second(s) (1.33)|")) << face();
    EXPECT_TRUE(face().ends_with("|Send Repeatedly|close send default "));
    for (const std::string& piece : reply)
        adapter.receive(piece); // to the last one; nothing follows

    adapter.expect("010C\r").pieces = {"SEARCHING...\r", "41 0C \r", ">", "\r\n41 0C \r"}; // a late prompt
    adapter.expect("\r");
    terminal.pressRepeatCom();
    EXPECT_TRUE(face().starts_with("com3 Ready|"));
    clock.now += milliseconds(999);
    adapter.play();
    terminal.pressRepeatCom();
    EXPECT_TRUE(face().starts_with("1 In 0 second(s) (0)|")) << face();

    adapter.receive("\r>");
    adapter.expect("010C\r");
    terminal.pressRepeatCom();
    adapter.expect("\r");
    adapter.receive("SEARCH"); // no line yet, so that the last one, which ended in the prompt, counts again
    toggle("ATD");
    EXPECT_FALSE(terminal.isRepeating());
    getReady();
    adapter.expect("010C\r");
    terminal.pressRepeatCom();
    adapter.receive("SEARCH"); // the prompt of before the closing does not count
}

TEST_F(TerminalTest, ShowsTheLastRepliesTheLastOneOrAll)
{
    getReady();
    terminal.clearOutput();
    const auto ask = [this](int value, OutputMode mode = OutputMode::scroll) {
        const std::string before = box.shown;
        terminal.setOptions({.base = NumberBase::decimal, .mode = mode});
        EXPECT_EQ(box.shown, before) << "a mode begins with the next reply";
        send("!", {"0" + std::string(1, "0123456789ABCDEF"[value]) + "\r", "\r>"});
        return ">!  " + std::to_string(value) + " \r\n";
    };
    std::string expected;
    for (int value = 1; value <= 11; ++value)
        expected += ask(value);
    EXPECT_EQ(box.shown, expected) << "none of before, but an empty one in front";
    expected += ask(12);
    expected = expected.substr(expected.find('>', 1)) + ask(13);
    EXPECT_EQ(box.shown, expected) << "the last 12, the oldest first";
    expected += ask(14, OutputMode::append);
    EXPECT_EQ(box.shown, expected);
    EXPECT_EQ(ask(15, OutputMode::overwrite), box.shown);
    send("wait", {});
    EXPECT_EQ(box.shown, ">!  15 \r\n>wait  ") << "a command is shown in any mode, until its reply comes";
}

} // namespace
} // namespace zint
