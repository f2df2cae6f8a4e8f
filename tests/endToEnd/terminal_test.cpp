#include "endToEnd/simulator.h"
#include "platform/qtSerialPort.h"
#include "platform/qtTimer.h"
#include "platform/systemClock.h"
#include "sim/pseudoTerminal.h"
#include "sim/simulatedAdapter.h"
#include "support/scriptedPrompts.h"
#include "support/textBox.h"
#include "terminal/terminal.h"

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>
#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <functional>
#include <random>

namespace zint {
namespace {

/// Runs the event loop without the pauses that QTest::qWaitFor() makes. @return whether the condition holds
bool runUntil(const std::function<bool()>& condition)
{
    QEventLoop loop;
    QTimer watch;
    const QDeadlineTimer deadline(patienceMs);
    QObject::connect(&watch, &QTimer::timeout, &loop, [&] {
        if (condition() || deadline.hasExpired())
            loop.quit();
    });
    watch.start(2);
    loop.exec();
    return condition();
}

/// The terminal's engine on a real port.
class TerminalOnPort {
public:
    explicit TerminalOnPort(std::string path) : port_(gate_, [path = std::move(path)](int) { return path; })
    {
        terminal.setOptions({.mode = OutputMode::append});
    }

    /// Opens the port. @return whether the adapter waits for commands then
    bool getReady()
    {
        press(&Terminal::pressOpenCom);
        return runUntil([this] { return terminal.isReady(); });
    }

    /// Sends the commands, each when the adapter waits for one. @return the box in the end
    std::string transcript(std::deque<std::string> commands)
    {
        terminal.onPrompt = [&] {
            terminal.setCommand(commands.empty() ? "" : commands.front());
            commands.empty() ? terminal.pressOpenCom() : terminal.pressSendCom();
            if (!commands.empty())
                commands.pop_front();
        };
        press(&Terminal::pressOpenCom);
        EXPECT_TRUE(runUntil([this] { return !terminal.isOpen(); }));
        return box.shown;
    }

    /// Presses a button.
    void press(void (Terminal::*button)())
    {
        gate_.run([this, button] { (terminal.*button)(); });
    }

private:
    EventGate gate_;
    QtSerialPort port_;
    QtTimer timer_{gate_};
    SystemClock clock_;

public:
    ScriptedPrompts prompts;
    TextBox box;
    Terminal terminal{{port_, timer_, clock_, prompts, box}, {}};
};

const std::deque<std::string> commands{"ATI",      "01 00", "0101", "03",   "0902", "010A",
                                       "nonsense", "at@1",  "ATE1", "0101", "ATH1", "0101"};

/// What they show, in hexadecimal. With its echo on, the adapter sends the
/// commands back.
constexpr std::string_view screen = ">ATI  E LM327 v1.5\r\n"
                                    ">01 00  41  0  BE  3F  B8  13  \r\n"
                                    ">0101  41  1  83  7  65  4  \r\n"
                                    ">03  43  1  33  3  1  C1  23  \r\n"
                                    ">0902  49  2  1  0  0  0  55  \r\n"
                                    "49  2  2  39  5A  4E  54  \r\n"
                                    "49  2  3  42  44  32  39  \r\n"
                                    "49  2  4  31  5A  30  30  \r\n"
                                    "49  2  5  30  30  34  32  \r\n"
                                    ">010A  NO DATA\r\n"
                                    ">nonsense  ?\r\n"
                                    ">at@1  OBDII to RS232 Interpreter\r\n"
                                    ">ATE1  OK\r\n"
                                    ">0101  101 \r\n"
                                    "41  1  83  7  65  4  \r\n"
                                    ">ATH1  A TH1\r\n"
                                    "OK\r\n"
                                    ">0101  101 \r\n"
                                    "48  6B  10  41  1  83  7  65  4  F8  \r\n";

/// The adapter itself, its output cut at random places.
class CuttingAdapter {
public:
    explicit CuttingAdapter(unsigned seed) : random_(seed)
    {
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { serve(); });
        timer_.start(0);
    }

    const std::string& path() const { return terminal_.path(); }

private:
    void serve()
    {
        adapter_.receive(terminal_.read(), {});
        terminal_.takeOpening();
        waiting_ += adapter_.take({});
        const std::size_t length = random_() % 8; // none: the event loop turns
        terminal_.write(waiting_.substr(0, length));
        waiting_.erase(0, length);
    }

    std::mt19937 random_;
    Vehicle vehicle_;
    SimulatedAdapter adapter_{vehicle_};
    PseudoTerminal terminal_;
    std::string waiting_;
    QTimer timer_;
};

TEST(TerminalEndToEnd, ShowsTheSameHoweverTheRepliesAreCut)
{
    const auto expectScreen = [](const std::string& path) {
        const std::string shown = TerminalOnPort(path).transcript(commands);
        EXPECT_EQ(shown.substr(std::min(shown.find('>'), shown.size())), screen);
    };
    for (const char* options :
         {"--latency 0", "--latency 1 --line-feeds --pieces 1", "--latency 2 --single-line-end --pieces 1",
          R"(--latency 0 --leading-line-end --after-prompt \r\n)", "--latency 2 --pieces 3 --piece-gap 1",
          "--latency 5 --line-speed 38400"}) {
        SCOPED_TRACE(options);
        const Simulator simulator((std::string("--no-announcement ") + options).c_str());
        expectScreen(simulator.path().toStdString());
    }
    for (unsigned seed = 1; seed <= 10; ++seed) {
        SCOPED_TRACE(seed);
        const CuttingAdapter adapter(seed);
        expectScreen(adapter.path());
    }
}

TEST(TerminalEndToEnd, ShowsEachReplyBeforeItSendsAgain)
{
    constexpr std::int64_t sends = 5000;
    for (const char* options : {"--latency 0", "--latency 0 --line-feeds --pieces 1",
                                R"(--latency 0 --single-line-end --pieces 7 --after-prompt \r\n)"}) {
        SCOPED_TRACE(options);
        const Simulator simulator((std::string("--no-announcement ") + options).c_str());
        TerminalOnPort on(simulator.path().toStdString());
        ASSERT_TRUE(on.getReady());
        on.terminal.setCommand("0101");
        on.terminal.clearOutput();
        on.terminal.clearCounters();
        const TerminalCounters& counters = on.terminal.counters();
        std::int64_t latest = 0; // replies that had not been shown when the next command was sent
        on.terminal.onPrompt = [&] {
            const std::int64_t sent = (counters.commandsSent + 1) / 2; // a repeated one counts twice
            latest = std::max(latest, sent - counters.messagesReceived);
            if (sent == sends && counters.messagesReceived < sends)
                on.terminal.pressRepeatCom(); // the reply to the last one is still to come
        };
        on.press(&Terminal::pressRepeatCom);
        EXPECT_TRUE(runUntil([&] { return counters.messagesReceived == sends; }))
            << counters.messagesReceived;
        EXPECT_EQ(latest, 1);
        std::string expected = ">0101  ";
        for (int i = 0; i < sends; ++i)
            expected += "41  1  83  7  65  4  \r\n";
        EXPECT_TRUE(on.box.shown == expected) << on.box.shown.substr(0, 500);
        EXPECT_EQ(counters.bytesOut, 5 + sends - 1);
        EXPECT_TRUE(on.terminal.panel().statusBox.starts_with("4999 In "));
        on.press(&Terminal::unload);
    }
}

} // namespace
} // namespace zint
