#pragma once

#include "platform/devicePort.h"

#include <QSerialPort>

#include <functional>
#include <string>

namespace zint {

/// A serial port of the machine.
class QtSerialPort final : public DevicePort {
public:
    /// Tells at each opening where the port is, such as "/dev/ttyUSB0"; empty when it is nowhere.
    using Locate = std::function<std::string(PortNumber)>;

    QtSerialPort(EventGate& gate, Locate locate);

    void open(PortNumber number, int bitsPerSecond) override;

private:
    QtSerialPort(EventGate& gate, Locate locate, std::unique_ptr<QSerialPort> port);

    std::size_t writeNow(std::string_view text) override;
    void closeDevice() override;
    void errorArrived(QSerialPort::SerialPortError error);

    Locate locate_;
    QSerialPort& port_;           ///< the base's device
    bool latencyLowered_ = false; ///< which closing gives back
};

} // namespace zint
