#include "platform/qtSerialPort.h"

#include "platform/serialSystem.h"
#include "platform/text.h"

#include <chrono>
#include <utility>

namespace zint {
namespace {

constexpr int bitsPerCharacter = 10; // with start and stop bit

} // namespace

QtSerialPort::QtSerialPort(EventGate& gate, Locate locate)
    : QtSerialPort(gate, std::move(locate), std::make_unique<QSerialPort>())
{
}

QtSerialPort::QtSerialPort(EventGate& gate, Locate locate, std::unique_ptr<QSerialPort> port)
    : DevicePort(gate, std::move(port)), locate_(std::move(locate)),
      port_(static_cast<QSerialPort&>(device()))
{
    QObject::connect(&port_, &QSerialPort::errorOccurred, &port_,
                     [this](QSerialPort::SerialPortError error) { errorArrived(error); });
}

void QtSerialPort::open(PortNumber number, int bitsPerSecond)
{
    const std::string location = locate_(number);
    if (location.empty())
        throw nothingConnected(number);
    const std::string path = devicePath(location);
    port_.setPortName(toQt(path));
    port_.setBaudRate(bitsPerSecond);
    port_.setDataBits(QSerialPort::Data8);
    port_.setParity(QSerialPort::NoParity);
    port_.setStopBits(QSerialPort::OneStop);
    port_.setFlowControl(QSerialPort::NoFlowControl);
    if (!port_.open(QIODevice::ReadWrite))
        throw portOpenError(path, port_.error(), port_.errorString());
    port_.clear(QSerialPort::Input);
    latencyLowered_ = lowerLatency(port_);
    begin(std::chrono::microseconds(std::chrono::seconds(1)) * bitsPerCharacter / bitsPerSecond);
}

std::size_t QtSerialPort::writeNow(std::string_view text) { return zint::writeNow(port_, text); }

void QtSerialPort::closeDevice()
{
    if (latencyLowered_)
        restoreLatency(port_);
    port_.close();
}

void QtSerialPort::errorArrived(QSerialPort::SerialPortError error)
{
    // Whatever a driver calls it, a port that can't be read or written any more has lost its device.
    if (error != QSerialPort::NoError && error != QSerialPort::TimeoutError)
        lost();
}

} // namespace zint
