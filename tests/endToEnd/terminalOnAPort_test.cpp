#include "endToEnd/simulator.h"
#include "platform/qtSerialPort.h"
#include "platform/qtTimer.h"
#include "platform/systemClock.h"
#include "support/scriptedPrompts.h"
#include "support/textBox.h"
#include "terminal/terminal.h"

#include <QTest>

#include <algorithm>

namespace zint {
namespace {

/// The terminal's engine on a real port.
struct TerminalEndToEnd : testing::Test {
    EventGate gate;
    QString path;
    QtSerialPort port{gate, [this](PortNumber) { return path.toStdString(); }};
    QtTimer timer{gate};
    SystemClock clock;
    ScriptedPrompts prompts;
    TextBox box;
    Terminal terminal{{port, timer, clock, prompts, box}, {}};

    void press(void (Terminal::*button)())
    {
        gate.run([this, button] { (terminal.*button)(); });
    }
};

TEST_F(TerminalEndToEnd, ShowsEachReplyBeforeItSendsAgain)
{
    constexpr std::int64_t sends = 100;
    for (const char* options :
         {"--no-announcement", "--no-announcement --line-feeds --pieces 1",
          R"(--no-announcement --single-line-end --pieces 7 --after-prompt \x20\r\n --leading-line-end)"}) {
        SCOPED_TRACE(options);
        const Simulator simulator((std::string("--latency 0 ") + options).c_str());
        path = simulator.path();
        terminal.setOptions({.mode = OutputMode::append});
        press(&Terminal::pressOpenCom);
        ASSERT_TRUE(QTest::qWaitFor([this] { return terminal.isReady(); }, patienceMs));
        terminal.setCommand("0101");
        terminal.clearOutput();
        terminal.clearCounters();
        std::int64_t latest = 0; // replies that had not been shown when the next command was sent
        terminal.onPrompt = [&] {
            const TerminalCounters counters = terminal.counters();
            const std::int64_t sent = (counters.commandsSent + 1) / 2; // a repeated one counts twice
            latest = std::max(latest, sent - counters.messagesReceived);
            if (sent == sends && terminal.isRepeating())
                terminal.pressRepeatCom(); // the reply to the last one is still to come
        };
        press(&Terminal::pressRepeatCom);
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return terminal.counters().messagesReceived == sends; }, patienceMs))
            << terminal.counters().messagesReceived;
        EXPECT_EQ(latest, 1);
        std::string expected = ">0101  ";
        for (int i = 0; i < sends; ++i)
            expected += "41  1  83  7  65  4  \r\n";
        EXPECT_TRUE(box.shown == expected) << box.shown.substr(0, 500);
        EXPECT_EQ(terminal.counters().bytesOut, 5 + sends - 1);
        EXPECT_TRUE(terminal.panel().statusBox.starts_with("99 In "));
        press(&Terminal::unload);
        terminal.onPrompt = {};
    }
}

} // namespace
} // namespace zint
