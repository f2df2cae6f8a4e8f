#pragma once

#include "sim/adapterCommands.h"
#include "sim/lineFaults.h"
#include "sim/pacedOutput.h"
#include "sim/replyLines.h"
#include "sim/simulationOptions.h"
#include "sim/vehicle.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zint {

/// An adapter as it shows itself on its serial line: what it receives, and what it sends when.
///
/// It has no clock: each call tells the time, which must never go back. The vehicle outlives it.
class SimulatedAdapter {
public:
    using Time = std::chrono::microseconds;

    explicit SimulatedAdapter(Vehicle& vehicle, AdapterOptions options = {});

    /// A program has opened the port: a silent or vanished adapter is back. What the adapter does goes on.
    void portOpened();

    /// The speed of the port, in bits per second.
    void setPortSpeed(int bitsPerSecond) { portSpeed_ = bitsPerSecond; }

    /// Nobody takes what arrives until then; it is lost.
    void dropUntil(Time then) { output_.dropArrived(then); }

    /// Bytes that a program begins to send now.
    void receive(std::string_view bytes, Time now);

    /// When the adapter has something to send or to do next; nothing when it waits for a command.
    std::optional<Time> nextDue() const;

    /// The characters that have arrived by now; where replies come in pieces, one piece a call.
    std::string take(Time now);

    /// Whether the device has vanished and all that it had sent before is taken.
    bool disconnected() const { return vanished_ && output_.empty(); }

private:
    struct Request {
        Message bytes;
        std::size_t expectedLines = 0; ///< 0: not told
    };

    /// What the vehicle answers, in lines.
    struct VehicleLines {
        std::vector<std::string> waits; ///< come first, while the answer takes a while
        std::vector<std::string> lines;
    };

    std::optional<Request> parseRequest(std::string_view digits) const;

    bool isSpeedWrong() const;
    void receiveByte(char byte, Time at);
    void interrupt(Time at);
    void dropLateCommand(Time now);
    void runLine(Time at);
    void runAdapterCommand(std::string_view command, Time at);
    void runRequest(const Request& request, Time at);
    void askVehicle(const Request& request, Time at);
    void replyLate(const VehicleLines& answer, Time at, Time waitBeforePrompt);

    unsigned triedProtocol() const;
    bool reachesVehicle() const;
    std::uint32_t header() const;
    Time announceConnection(Time at);
    bool sendsWholeFrames() const;
    ReplyFormat replyFormat() const;
    bool isReceived(const UnitAnswer& answer) const;
    VehicleLines vehicleLines(const Request& request, Time at);
    void applyFaults(std::vector<std::string>& lines);
    std::string joined(const std::vector<std::string>& lines) const;
    Time waitingTime() const;

    void reply(std::string_view text, Time at, Time waitBeforePrompt = Time{0});
    void write(std::string_view text, Time at);
    std::string_view lineEnd() const { return settings_.lineFeeds ? "\r\n" : "\r"; }

    Vehicle& vehicle_;
    AdapterOptions options_;
    AdapterSettings settings_;
    LineFaults lineFaults_;
    PacedOutput output_;
    Time perCharacter_;
    Time inputEnd_{0}; // when the last received character was complete
    Time resetUntil_{0};
    Time busyUntil_{0}; // with the vehicle
    std::string line_;  // what has been received of a command, without blanks and in capitals
    std::optional<Time> lineDeadline_;
    std::string lastLine_;
    int portSpeed_ = 0; // 0: not told
    bool silent_ = false;
    bool vanished_ = false;
    int prompts_ = 0; // since the port was opened
    int requests_ = 0;
    int dataReplies_ = 0;
};

} // namespace zint
