#include "platform/serialSystem.h"
#include "platform/systemInspector.h"
#include "platform/text.h"

#include <QSettings>
#include <qt_windows.h>

#include <cerrno>

namespace zint {
namespace {

/// What the system keeps of the device behind a port.
struct PortDevice {
    QString instance; ///< of a Bluetooth port it holds the address of its partner
    QVariant latency; ///< in milliseconds, of a driver of FTDI
};

std::optional<PortDevice> deviceOn(const QString& bus, const std::string& port)
{
    QSettings devices(QStringLiteral("HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Enum\\") + bus,
                      QSettings::NativeFormat);
    for (const QString& device : devices.childGroups()) {
        devices.beginGroup(device);
        for (const QString& instance : devices.childGroups()) {
            const QString settings = instance + QStringLiteral("/Device Parameters/");
            const QString name = devices.value(settings + QStringLiteral("PortName")).toString();
            if (!name.isEmpty() && devicePath(fromQt(name)) == port)
                return PortDevice{instance, devices.value(settings + QStringLiteral("LatencyTimer"))};
        }
        devices.endGroup();
    }
    return std::nullopt;
}

} // namespace

PortFacts SystemInspector::facts(const std::string& location) const
{
    PortFacts facts;
    facts.path = devicePath(location);
    facts.exists = location.empty() || hasDevice(location);
    facts.isBluetooth = facts.exists && isBluetoothPort(location);
    if (const auto radio = deviceOn(QStringLiteral("BTHENUM"), facts.path))
        facts.isIncoming = radio->instance.contains(QLatin1String("&000000000000_")); // no partner
    if (const auto cable = deviceOn(QStringLiteral("FTDIBUS"), facts.path); cable && cable->latency.isValid())
        facts.latency = std::chrono::milliseconds(cable->latency.toInt());
    return facts;
}

std::vector<std::string> SystemInspector::holders(const std::string& /*location*/) const
{
    return {"it can't be seen which"}; // the system tells nobody
}

OpenTrouble SystemInspector::troubleOf(int number) const
{
    switch (number) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_DEVICE_NOT_CONNECTED:
        return OpenTrouble::missing;
    case ERROR_ACCESS_DENIED: // ports have no owners here
    case ERROR_BUSY:
        return OpenTrouble::inUse;
    case ERROR_INVALID_FUNCTION:
    case ERROR_INVALID_HANDLE:
        return OpenTrouble::noSerialPort;
    case ERROR_SEM_TIMEOUT: // a Bluetooth adapter that is off
    case ERROR_HOST_DOWN:
    case ETIMEDOUT:
    case ENETUNREACH:
        return OpenTrouble::hostDown;
    case ERROR_CONNECTION_REFUSED:
    case ECONNREFUSED:
        return OpenTrouble::refused;
    default:
        return OpenTrouble::unknown;
    }
}

} // namespace zint
