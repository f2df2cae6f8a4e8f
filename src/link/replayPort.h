#pragma once

#include "link/receiveGroups.h"
#include "link/recording.h"
#include "link/serialPort.h"
#include "shared/timer.h"

#include <deque>
#include <optional>
#include <utility>

namespace zint {

/// A serial port with a recording in place of an adapter.
class ReplayPort : public SerialPort {
public:
    enum class Pace { atOnce, asRecorded };

    /// Reads the transcript when it is opened first. @param timer is the port's own, and outlives it
    ReplayPort(Timer& timer, std::string path, Pace pace);
    ReplayPort(const ReplayPort&) = delete;
    ReplayPort& operator=(const ReplayPort&) = delete;
    ~ReplayPort() override;

    void open(PortNumber number, int bitsPerSecond) override;
    void close() override;
    bool isOpen() const override { return isOpen_; }
    void output(std::string_view text) override;
    std::string input() override { return std::exchange(received_, {}); }

private:
    void load();
    void deliver();
    std::optional<std::string> nextGroup();
    bool endsLine() const;
    void schedule();

    Timer& timer_;
    std::string path_;
    Pace pace_;
    std::optional<Recording> recording_;
    std::deque<Recording::Piece> due_;
    ReceiveGroups groups_;
    std::optional<std::string> group_; ///< the next one to be delivered
    std::string received_;             ///< of what the owner was notified
    bool isOpen_ = false;
};

} // namespace zint
