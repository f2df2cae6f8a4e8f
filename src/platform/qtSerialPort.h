#pragma once

#include "link/receiveGroups.h"
#include "link/serialPort.h"
#include "shared/eventGate.h"

#include <QSerialPort>
#include <QTimer>

#include <chrono>
#include <deque>
#include <functional>
#include <string>
#include <utility>

namespace zint {

/// A serial port of the machine; its notifications pass the window's gate.
class QtSerialPort final : public SerialPort {
public:
    /// Tells at each opening where the port is, such as "/dev/ttyUSB0"; empty when it is nowhere.
    using Locate = std::function<std::string(PortNumber)>;

    QtSerialPort(EventGate& gate, Locate locate);

    void open(PortNumber number, int bitsPerSecond) override;
    void close() override;
    bool isOpen() const override { return port_.isOpen(); }
    void output(std::string_view text) override;
    std::string input() override { return std::exchange(received_, {}); }

private:
    using SteadyTime = std::chrono::steady_clock::time_point;

    void dataArrived();
    void takeArrived();
    void deliver(std::string group);
    void errorArrived(QSerialPort::SerialPortError error);
    void notify(PortNotice notice);
    void finishConversation();

    EventGate& gate_;
    Locate locate_;
    QSerialPort port_;
    QTimer pause_; ///< after which a line is delivered without what might belong to it
    ReceiveGroups groups_;
    std::deque<std::string> arrived_; ///< groups whose notifications wait at the gate
    std::string received_;            ///< of what the owner was notified
    bool goneReported_ = false;       ///< the open port has lost its device
    bool closing_ = false;            ///< what arrives now is looked at for its prompts only
    std::ptrdiff_t unanswered_ = 0;   ///< commands written for which no prompt has come
    std::chrono::microseconds timePerCharacter_{0};
    SteadyTime lineFreeAt_; ///< when the last character written will have left the wire
};

} // namespace zint
