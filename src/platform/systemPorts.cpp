#include "platform/systemPorts.h"

#include "platform/serialSystem.h"
#include "platform/text.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QSerialPortInfo>
#include <QSettings>

#include <algorithm>
#include <tuple>

namespace zint {
namespace {

bool isPlugged(const QSerialPortInfo& port)
{
    return port.hasVendorIdentifier() || isBluetoothPort(fromQt(port.portName())) ||
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

/// Bluetooth ports have no description, and only the superuser may read their partner's name.
QString bluetoothAddress(const QString& portName)
{
    QFile file(QStringLiteral("/sys/class/tty/%1/address").arg(portName));
    if (!portName.startsWith(QLatin1String("rfcomm")) || !file.open(QIODevice::ReadOnly))
        return {};
    return QStringLiteral("Bluetooth ") + QString::fromLatin1(file.readAll()).trimmed();
}

DetectedPort described(const QSerialPortInfo& port)
{
#ifdef Q_OS_WIN
    const std::string location = devicePath(fromQt(port.portName()));
#else
    const std::string location = fromQt(port.systemLocation());
#endif
    const QString address = port.description().isEmpty() ? bluetoothAddress(port.portName()) : QString();
    return {location, fromQt(port.description() + address), fromQt(usbIds(port))};
}

/// Looks at all ports. That takes long enough to be felt in a window that looks every other second.
std::vector<DetectedPort> look()
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

/// What changes with each port that comes or goes, and is quickly read; never empty.
QString stateOfPorts()
{
#ifdef Q_OS_WIN
    const QSettings ports(QStringLiteral("HKEY_LOCAL_MACHINE\\HARDWARE\\DEVICEMAP\\SERIALCOMM"),
                          QSettings::NativeFormat);
    QString state = QStringLiteral("ports");
    for (const QString& device : ports.allKeys())
        state += u'\n' + device + u' ' + ports.value(device).toString();
    return state;
#else
    return QString::number(QFileInfo(QStringLiteral("/dev")).lastModified().toMSecsSinceEpoch());
#endif
}

} // namespace

std::vector<DetectedPort> SystemPorts::detected() const
{
    // The system goes on describing a new port for a while, so that one look after a change is not enough.
    constexpr std::chrono::seconds settling{5};
    const QString state = stateOfPorts();
    const auto now = std::chrono::steady_clock::now();
    if (state != lastState_) {
        lastState_ = state;
        changeSeenAt_ = now;
    }
    if (now - changeSeenAt_ < settling)
        seen_ = look();
    return seen_;
}

bool SystemPorts::exists(const std::string& location) const { return hasDevice(location); }

std::string SystemPorts::devicePath(const std::string& location) const
{
    const std::string path = zint::devicePath(location);
    if (hasNumberedPorts)
        return path;
    const QString target =
        QFileInfo(toQt(path)).canonicalFilePath(); // of a link such as /dev/serial/by-id/...
    return target.isEmpty() ? path : fromQt(target);
}

std::optional<std::string> SystemPorts::fixedLocation(PortNumber port) const
{
    return hasNumberedPorts ? std::optional("COM" + std::to_string(static_cast<int>(port))) : std::nullopt;
}

} // namespace zint
