// Commands per second that the terminal sends over and over, without its window, against a blocking loop on
// the same adapter.

#include "compareRates.h"
#include "noPrompts.h"
#include "platform/qtSerialPort.h"
#include "platform/qtTimer.h"
#include "platform/systemClock.h"
#include "terminal/terminal.h"

#include <string>

namespace {

constexpr const char* command = "010C";

struct Box final : zint::OutputBox {
    std::string shown;

    void append(const std::string& text) override { shown += text; }
    void replace(const std::string& text) override { shown = text; }
    std::string text() const override { return shown; }
};

class Run {
public:
    Run(const std::string& path, int count)
        : port_(gate_, [path](zint::PortNumber) { return path; }), left_(count)
    {
        terminal_.setOptions({.mode = zint::OutputMode::append});
        terminal_.setCommand(command);
        terminal_.onPrompt = [this] { prompted(); };
    }

    double secondsTaken()
    {
        gate_.run([this] { terminal_.pressOpenCom(); });
        if (!terminal_.isOpen())
            fail(terminal_.lastFailure().c_str());
        QCoreApplication::exec();
        return seconds_;
    }

private:
    void prompted()
    {
        if (start_ == RateClock::time_point()) {
            start_ = RateClock::now();
            terminal_.pressRepeatCom();
        } else if (--left_ == 0) {
            seconds_ = secondsSince(start_);
            terminal_.pressOpenCom();
            QCoreApplication::quit();
        }
    }

    zint::EventGate gate_;
    zint::QtSerialPort port_;
    zint::QtTimer timer_{gate_};
    zint::SystemClock clock_;
    NoPrompts prompts_;
    Box box_;
    zint::Terminal terminal_{{{port_, {}, timer_}, clock_, prompts_, box_}};
    int left_;
    RateClock::time_point start_;
    double seconds_ = 0;
};

/// Sends the same: the command once, and then carriage returns, with the adapter's echo off.
double blockingSecondsOfRepeating(const char* path, int count)
{
    blockingSeconds(path, "ATE0\r", 1);
    blockingSeconds(path, (std::string(command) + '\r').c_str(), 1);
    return blockingSeconds(path, "\r", count);
}

} // namespace

int main(int argc, char* argv[])
{
    return compareRates(
        argc, argv, {.name = "terminal", .counted = "commands", .atLeast = 0.8},
        [](const char* path, int count) { return Run(path, count).secondsTaken(); },
        blockingSecondsOfRepeating);
}
