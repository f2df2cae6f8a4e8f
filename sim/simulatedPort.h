#pragma once

#include "link/receiveGroups.h"
#include "link/serialPort.h"
#include "shared/clock.h"
#include "shared/timer.h"
#include "sim/simulatedAdapter.h"

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace zint {

/// A serial port with a simulated adapter at its end, all within the program.
///
/// The adapter keeps its state while the port is closed; the vehicle is shared by all ports. Timer, clock and
/// vehicle outlive the port, which has the timer for itself.
class SimulatedPort : public SerialPort {
public:
    SimulatedPort(Timer& timer, const Clock& clock, Vehicle& vehicle, AdapterOptions options = {});
    SimulatedPort(const SimulatedPort&) = delete;
    SimulatedPort& operator=(const SimulatedPort&) = delete;
    ~SimulatedPort() override;

    void open(PortNumber number, int bitsPerSecond) override;
    void close() override;
    bool isOpen() const override { return open_; }
    void output(std::string_view text) override;
    std::string input() override { return std::exchange(received_, {}); }

private:
    void deliver();
    void receive();
    bool isVanishing() const;
    std::optional<std::chrono::microseconds> nextDue() const;
    void schedule();
    void notify(PortNotice notice);

    Timer& timer_;
    const Clock& clock_;
    SimulatedAdapter adapter_;
    ReceiveGroups groups_;
    std::optional<std::string> group_;     // the next one to be delivered
    std::chrono::microseconds pauseEnd_{}; // when an incomplete group is delivered
    std::string received_;                 // of what the owner was notified
    bool open_ = false;
    bool gone_ = false; // the device has vanished and the owner has been told
};

} // namespace zint
