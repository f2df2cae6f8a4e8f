#include "platform/systemPorts.h"

#include "platform/text.h"

#include <QSerialPortInfo>

#include <algorithm>

namespace zint {
namespace {

bool isPlugged(const QSerialPortInfo& port)
{
    return port.hasVendorIdentifier() || port.portName().startsWith(QLatin1String("rfcomm")) ||
           port.portName().startsWith(QLatin1String("ttyUSB")) ||
           port.portName().startsWith(QLatin1String("ttyACM"));
}

QString usbIds(const QSerialPortInfo& port)
{
    if (!port.hasVendorIdentifier())
        return {};
    const auto hex = [](quint16 id) { return QStringLiteral("%1").arg(id, 4, 16, QLatin1Char('0')); };
    return hex(port.vendorIdentifier()) + QLatin1Char(':') + hex(port.productIdentifier());
}

DetectedPort described(const QSerialPortInfo& port)
{
#ifdef Q_OS_WIN
    const QString location = port.portName();
#else
    const QString location = port.systemLocation();
#endif
    return {fromQt(location), fromQt(port.description()), fromQt(usbIds(port))};
}

} // namespace

std::vector<DetectedPort> SystemPorts::detected() const
{
    QList<QSerialPortInfo> ports = QSerialPortInfo::availablePorts();
    std::ranges::sort(ports, {}, [](const QSerialPortInfo& port) {
        const QString name = port.portName();
        return std::tuple(!isPlugged(port), name.size(), name); // by size first: ttyUSB2 before ttyUSB10
    });
    std::vector<DetectedPort> result;
    std::ranges::transform(ports, std::back_inserter(result), described);
    return result;
}

std::optional<std::string> SystemPorts::fixedLocation([[maybe_unused]] int number) const
{
#ifdef Q_OS_WIN
    return "COM" + std::to_string(number);
#else
    return std::nullopt;
#endif
}

} // namespace zint
