#pragma once

#include "link/serialPort.h"
#include "shared/clock.h"
#include "shared/timer.h"

#include <chrono>
#include <functional>
#include <string>
#include <string_view>

namespace zint {

/// What has come of a command.
struct TalkAnswer {
    std::string text;        ///< all that was received, prompt included, without bytes 00
    bool isComplete = false; ///< it ends with the prompt; else the time was over
    bool isGone = false;     ///< the device has vanished
    std::chrono::milliseconds took{0};
};

/// One command after the other, each with a time limit of its own, on a port that may be opened at another
/// speed in between. Nothing is sent but what it is told.
class AdapterTalk {
public:
    using Take = std::function<void(const TalkAnswer&)>;

    /// All outlive the talk, which has port and timer for itself.
    AdapterTalk(SerialPort& port, Timer& timer, const Clock& clock);

    /// Opens the port, at another speed if it is open. @throws CommError
    void open(PortNumber number, int bitsPerSecond);

    void close(); ///< nothing is taken any more

    bool isOpen() const { return port_.isOpen(); }

    /// Sends a command with its end. Legal when no answer is awaited.
    /// @param take is called once: for the prompt, at the end of the time, or when the device is gone
    void ask(std::string_view command, std::chrono::milliseconds limit, Take take);

    /// Sends a text as it stands, which ends what the adapter is doing; what is awaited is no more.
    void interrupt(std::string_view text, std::chrono::milliseconds limit, Take take);

private:
    void write(std::string_view text, std::chrono::milliseconds limit, Take take);
    void takeNotice(PortNotice notice);
    void finish(bool isGone);

    SerialPort& port_;
    Timer& timer_;
    const Clock& clock_;
    Take take_;
    std::string received_;
    Clock::Time sentAt_{0};
};

/// The lines of an answer that say something: without the echo of the command, the prompt and empty ones.
/// They are divided by bars where there are several.
std::string coreOf(std::string_view command, std::string_view answer);

} // namespace zint
