#pragma once

#include "link/receiveGroups.h"
#include "link/serialPort.h"
#include "shared/eventGate.h"

#include <QIODevice>
#include <QTimer>

#include <chrono>
#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace zint {

/// What ports over a device of the toolkit have in common: groups, notifications that pass the window's gate,
/// and an end of the conversation that leaves nothing behind.
class DevicePort : public SerialPort {
public:
    ~DevicePort() override;

    void close() final;
    bool isOpen() const final { return device_->isOpen(); }
    void output(std::string_view text) final;
    std::string input() final { return std::exchange(received_, {}); }

protected:
    /// @param device is told of by its readyRead signal, and by lost()
    DevicePort(EventGate& gate, std::unique_ptr<QIODevice> device);

    QIODevice& device() { return *device_; }

    /// The device has been opened. @param timePerCharacter that the line takes; 0 where there is none
    void begin(std::chrono::microseconds timePerCharacter);

    /// The device can't be read or written any more. Before begin() nobody is told, for an opening that fails
    /// says so itself.
    void lost();

private:
    /// Hands text to the system at once, which the toolkit's device would do from the event loop, when that
    /// has been woken for it: a fifth of the time of a fast exchange.
    /// @return how many characters the system took, possibly none; the rest goes through the device
    virtual std::size_t writeNow(std::string_view text) = 0;

    virtual void closeDevice() { device_->close(); }

    using SteadyTime = std::chrono::steady_clock::time_point;

    void dataArrived();
    void takeArrived();
    void deliver(std::string group);
    void notify(PortNotice notice);
    void finishConversation();

    EventGate& gate_;
    std::unique_ptr<QIODevice> device_;
    QTimer pause_; ///< after which a line is delivered without what might belong to it
    ReceiveGroups groups_;
    std::deque<std::string> arrived_; ///< groups whose notifications wait at the gate
    std::string received_;            ///< of what the owner was notified
    bool isUsable_ = false;           ///< opened, and the device has not gone
    bool closing_ = false;            ///< what arrives now is looked at for its prompts only
    std::ptrdiff_t unanswered_ = 0;   ///< commands written for which no prompt has come
    std::chrono::microseconds timePerCharacter_{0};
    SteadyTime lineFreeAt_; ///< when the last character written will have left the wire
};

} // namespace zint
