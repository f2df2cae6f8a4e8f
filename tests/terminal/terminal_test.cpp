#include "link/adapterLink.h"
#include "support/manualTime.h"
#include "support/scriptedAdapter.h"
#include "support/scriptedPrompts.h"
#include "support/textBox.h"
#include "terminal/terminal.h"

namespace zint {
namespace {

/// A terminal on com3 whose adapter follows a script.
struct TerminalTest : testing::Test {
    ScriptedAdapter adapter;
    ManualTimer timer;
    ManualClock clock;
    ScriptedPrompts prompts;
    TextBox box;
    Terminal terminal{{{adapter, {.port = PortNumber{3}}, timer}, clock, prompts, box}};

    void getReady(OutputMode mode = OutputMode::append)
    {
        terminal.setOptions({.mode = mode});
        adapter.expectOpening();
        terminal.pressOpenCom();
        adapter.play();
        box.shown.clear();
    }

    /// Presses the button that opens and closes; the adapter gets a command by that, and does not answer.
    void toggle(const char* command)
    {
        adapter.expect(command + std::string("\r"));
        terminal.pressOpenCom();
    }

    /// Sends a command; each piece of the answer is a notification.
    void send(const std::string& command, const std::vector<std::string>& answer)
    {
        terminal.setCommand(command);
        adapter.expect(command + "\r").pieces = answer;
        terminal.pressSendCom();
        adapter.play();
    }

    std::string takeShown() { return std::exchange(box.shown, {}); }

    std::string status() const { return terminal.panel().statusBox; }

    std::string statistics() const { return terminal.counters().statistics(); }

    /// Status, counters, captions, and what is on.
    std::string face() const
    {
        const TerminalPanel& p = terminal.panel();
        return p.statusBox + "|" + p.labelStats + "|" + p.openCom.caption + "|" + p.repeatCom.caption + "|" +
               (p.sendCom.enabled ? "send " : "") + (timer.enabled() ? "timer " : "") +
               (terminal.isReady() ? "ready" : "");
    }
};

const std::string asClosed = "|Bytes In: 0  Out: 0     Errors: 0|Open OBD (com3)|Send Repeatedly|send ";

TEST_F(TerminalTest, AClosedPortIsToldOfAndNothingElseChanges)
{
    EXPECT_EQ(face(), "com3 Closed" + asClosed);
    box.shown = "of before";
    adapter.writeError = CommError(5, "Input/output error");
    terminal.pressOpenCom();
    EXPECT_EQ(face(), "com3 - Comm init error: 5: Input/output error" + asClosed);
    EXPECT_EQ(box.shown + terminal.lastFailure(), "of before" + status());
    terminal.pressSendCom();
    EXPECT_EQ(status(), "com3 Closed - press Open OBD first");
    terminal.pressRepeatCom();
    EXPECT_EQ(face(), "com3 Closed - press Open OBD first" + asClosed);
}

TEST_F(TerminalTest, OpensAndShowsEachAnswerAsALine)
{
    int prompted = 0;
    terminal.onPrompt = [&] { ++prompted; };
    toggle("ATZ");
    EXPECT_EQ(box.shown, "Initializing...");
    const std::string asOpen = "|Close OBD (com3)|Send Repeatedly|send ";
    EXPECT_EQ(face(), "com3 Open|Bytes In: 0 Out: 4 Errors: 0" + asOpen + "timer ");
    adapter.receive("\xFC>ATZ\r\r\rELM327\x7Fv1.5\r");
    EXPECT_EQ(box.shown, "Initializing...") << "the prompt is not the last character";
    adapter.expect("ATE0\r");
    adapter.receive("\r>");
    EXPECT_EQ(face(), "com3 Init|Bytes In: 22 Out: 9 Errors: 0" + asOpen);
    adapter.receive("ATE0\rOK\r\r>");
    EXPECT_EQ(face(), "com3 Ready|Bytes In: 32 Out: 9 Errors: 0" + asOpen + "ready");
    EXPECT_EQ(prompted, 1);
    EXPECT_EQ(box.shown, "ATZ   ELM327 v1.5  \r\nATE0 OK  \r\n");
    adapter.receive("41"); // cut off by closing
    toggle("ATD");
    EXPECT_TRUE(face().starts_with("com3 Closed|Bytes In: 32 Out: 9 Errors: 0|Open OBD (com3)|"));
    EXPECT_EQ(statistics(), (TerminalCounters{34, 2, 13, 2}.statistics())) << "shown with the next output";

    toggle("ATZ");
    adapter.expect("ATE0\r");
    for (const char* text : {"\r\nv1>", "OK>", "0C\r"})
        adapter.receive(text);
    EXPECT_TRUE(box.shown.ends_with("OK  \r\n  v1\r\nOK\r\nC \r\n")) << "a banner without an echo";
    adapter.expect("ATD\r");
    terminal.unload();
    terminal.unload();
}

TEST_F(TerminalTest, AResetWithoutAnAnswerIsToldAndTheCommandSent)
{
    const auto timeOut = [this] {
        timer.tick();
        EXPECT_EQ(prompts.takeMessage(), AdapterLink::notRespondingText);
        return status();
    };
    terminal.setCommand("0100");
    toggle("ATZ");
    adapter.expect("0100\r");
    EXPECT_EQ(timeOut(), "com3 Open");
    EXPECT_EQ(statistics(), (TerminalCounters{0, 0, 9, 2, 1}.statistics()));
    adapter.expect("ATE0\r");
    adapter.receive("late>");
    EXPECT_EQ(status(), "com3 Init");
    toggle("ATD");
    toggle("ATZ");
    prompts.whileOpen = [this] { toggle("ATD"); };
    EXPECT_EQ(timeOut(), "com3 Closed") << "nothing is sent any more";
    toggle("ATZ");
    terminal.sendNothingAfterTimeout();
    EXPECT_EQ(timeOut(), "com3 Open");
}

TEST_F(TerminalTest, ReportsNoticesAndALostDevice)
{
    getReady();
    adapter.sendNotice(PortNotice::unexplained);
    adapter.sendNotice(PortNotice::unexplained);
    EXPECT_EQ(status(), "com3 Ready - unhandled comm Event: 0 - unhandled comm Event: 0");
    adapter.expect("\r");
    terminal.pressRepeatCom();
    EXPECT_EQ(status(), "com3 Ready") << "the notices were about what was before";
    adapter.vanish();
    EXPECT_TRUE(face().starts_with("com3 - adapter disconnected|Bytes In: 30 Out: 10 Errors: 3|Open OBD (c"));
    adapter.workAgain();
    getReady(OutputMode::overwrite);
    adapter.receive("LP ALERT\r");
    EXPECT_EQ(box.shown, "LP ALERT\r\n") << "no command, also none of before";
}

TEST_F(TerminalTest, ShowsALineWhenItIsComplete)
{
    getReady();
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
    EXPECT_EQ(statistics(), (TerminalCounters{45, 6, 6, 1, 1}.statistics()));
    EXPECT_EQ(status(), "com3 - Overflow: a number is larger than 7FFFFFFF");
    send("0", {});
    EXPECT_TRUE(face().starts_with("com3 Ready|Bytes In: 45 Out: 8 Errors: 1|"));
    terminal.showStatistics();
    EXPECT_EQ(prompts.takeMessage() + prompts.messageTitle, statistics() + "Piolum Stats");
    EXPECT_EQ((TerminalCounters{1, 2, 3, 4, 5, 6, 7, 8}.statistics()),
              "Bytes In: 1\r\n   Messages Recvd:2\r\n\r\nBytes Out: 3\r\n   Commands Sent:4\r\n\r\n"
              "Total Errors: 5\r\n   Msg Underflow: 6\r\n   Cmd failed: 7\r\n   Cmd syntax err: 8");
}

TEST_F(TerminalTest, SendsAgainAsSoonAsTheAdapterIsReady)
{
    getReady();
    terminal.clearCounters();
    terminal.setCommand("010C");
    for (const char* sent : {"010C\r", "\r", "\r", "\r"})
        adapter.expect(sent).pieces = {"41 0C \r", "\r>"};
    adapter.expect("\r");
    clock.now = std::chrono::milliseconds(700);
    terminal.pressRepeatCom();
    adapter.play();
    EXPECT_TRUE(face().ends_with("|Close OBD (com3)|Stop Sending|ready"));
    EXPECT_EQ(takeShown(), ">010C  41  C  \r\n41  C  \r\n41  C  \r\n41  C  \r\n") << "the command once";
    EXPECT_EQ(statistics(), (TerminalCounters{36, 4, 9, 9}.statistics())); // each repeated send counts as two
    clock.now += std::chrono::milliseconds(3999);
    terminal.pressRepeatCom();
    EXPECT_EQ(status(), "4 In 3 second(s) (1.33)");
    EXPECT_TRUE(face().ends_with("|Send Repeatedly|send ready"));
    adapter.receive("41 0C \r\r>"); // to the last one; nothing follows

    adapter.expect("010C\r").pieces = {"SEARCHING...\r", "41 0C \r", ">", "\r\n41 0C \r"}; // a late prompt
    adapter.expect("\r");
    terminal.pressRepeatCom();
    clock.now += std::chrono::milliseconds(999);
    adapter.play();
    terminal.pressRepeatCom();
    EXPECT_EQ(status(), "1 In 0 second(s) (0)");

    adapter.receive("41\r>");
    adapter.expect("010C\r");
    terminal.pressRepeatCom();
    EXPECT_EQ(status(), "com3 Ready");
    adapter.expect("\r");
    adapter.receive("SEARCH"); // no line yet, so that the last one, which ended in the prompt, counts again
}

TEST_F(TerminalTest, ShowsTheLastRepliesTheLastOneOrAll)
{
    getReady();
    terminal.clearOutput();
    const auto ask = [this](const std::string& number) {
        send("!", {number + "\r", "\r>"});
        return ">!  " + number + " \r\n";
    };
    terminal.setOptions({.mode = OutputMode::scroll});
    std::string all;
    for (int number = 1; number <= 13; ++number) {
        all += ask(std::to_string(number));
        EXPECT_TRUE(box.shown == all || number > 11) << "none of before";
    }
    EXPECT_EQ(box.shown, all.substr(all.find('>', 1))) << "the last 12";
    terminal.setOptions({.mode = OutputMode::append});
    const std::string before = box.shown; // a mode begins with the next reply
    EXPECT_EQ(before + ask("14"), box.shown);
    terminal.setOptions({.mode = OutputMode::overwrite});
    EXPECT_EQ(ask("15"), box.shown);
    send("wait", {});
    EXPECT_EQ(box.shown, ">!  15 \r\n>wait  ") << "a command is shown in any mode, until its reply comes";
}

TEST_F(TerminalTest, TakesBytesAndSendsAgainAtEachPromptThatIsNoData)
{
    for (const std::string& reply : {std::string("\x05\x41"), std::string("?no"),
                                     std::string("\x04\x41\x01\0>>", 6)}) { // two are cut off by closing
        getReady();
        send("0", {"0A\r"});
        EXPECT_EQ(takeShown(), ">0  A \r\n") << "no bytes as yet";
        terminal.expectBinaryReplies();
        send("ATPD", {"ELM\r", "\n v1>"});
        EXPECT_EQ(takeShown(), ">ATPD  ATPD ELM   v1\r\n");
        send("01O1", {"\x03\x41\x01\x05?>"});
        EXPECT_EQ(takeShown(), ">01O1  5 \r\n(ERROR - Misformatted command)\r\n\r\n");
        adapter.expect("ATI\r").pieces = {"E>"};
        adapter.expect("\r").pieces = {"F>"};
        adapter.expect("\r");
        terminal.setCommand("ATI");
        terminal.pressRepeatCom();
        adapter.play();
        EXPECT_EQ(takeShown(), ">ATI  E\r\nF\r\n") << "text each time";
        terminal.pressRepeatCom();
        adapter.receive(">");
        takeShown();
        send("0101", {reply});
        toggle("ATD");
    }
    EXPECT_EQ(terminal.counters().totalErrors, 4);
    EXPECT_EQ(box.shown, ">0101  0 3E \r\n") << "a byte of data may have the prompt's value";
}

} // namespace
} // namespace zint
