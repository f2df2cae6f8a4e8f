#include "platform/serialSystem.h"
#include "platform/systemInspector.h"
#include "platform/text.h"

#include <QSettings>
#include <qt_windows.h>

#include <cerrno>

namespace zint {
namespace {

/// For how long a driver of FTDI holds back short texts, as its settings in the device manager say.
std::optional<std::chrono::milliseconds> latencyOf(const std::string& port)
{
    QSettings devices(QStringLiteral("HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Enum\\FTDIBUS"),
                      QSettings::NativeFormat);
    for (const QString& device : devices.childGroups()) {
        devices.beginGroup(device);
        for (const QString& instance : devices.childGroups()) {
            const QString settings = instance + QStringLiteral("/Device Parameters/");
            const QVariant latency = devices.value(settings + QStringLiteral("LatencyTimer"));
            if (latency.isValid() &&
                devicePath(fromQt(devices.value(settings + QStringLiteral("PortName")).toString())) == port)
                return std::chrono::milliseconds(latency.toInt());
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
    facts.latency = latencyOf(facts.path);
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
