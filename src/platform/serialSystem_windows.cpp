#include "platform/serialSystem.h"
#include "platform/text.h"
#include "shared/module1.h"

#include <QStringList>
#include <qt_windows.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace zint {
namespace {

constexpr std::string_view devicePrefix = R"(\\.\)";

/// A number of the system, which the toolkit's port class tells as a text only.
struct Trouble {
    DWORD number;
    const char* advice;
};

constexpr const char* partnerAdvice =
    "the Bluetooth adapter is off, too far away, or connected to another device";

constexpr std::array<Trouble, 13> troubles{{
    {ERROR_FILE_NOT_FOUND, "the adapter is not connected"},
    {ERROR_ACCESS_DENIED, "another program holds it"}, // ports have no owners here
    {ERROR_BUSY, "another program holds it"},
    {ERROR_INVALID_FUNCTION, "it is no serial port"},
    {ERROR_INVALID_HANDLE, "it is no serial port"},
    {ERROR_INVALID_PARAMETER, "it takes no such speed"},
    {ERROR_SEM_TIMEOUT, partnerAdvice},
    {ERROR_HOST_DOWN, partnerAdvice},
    {ERROR_CONNECTION_REFUSED, partnerAdvice},
    {ERROR_DEVICE_NOT_CONNECTED, "the adapter is not connected"},
    {ERROR_NOT_READY, "unplug the adapter and plug it in again"},
    {ERROR_GEN_FAILURE, "unplug the adapter and plug it in again"},
    {ERROR_IO_DEVICE, "unplug the adapter and plug it in again"},
}};

/// What GetLastError() tells may be of something else by now.
DWORD failureNumber(QSerialPort::SerialPortError error, const QString& description)
{
    if (error == QSerialPort::DeviceNotFoundError)
        return ERROR_FILE_NOT_FOUND;
    if (error == QSerialPort::PermissionError)
        return ERROR_ACCESS_DENIED;
    const auto* const told = std::ranges::find(troubles, description, [](const Trouble& trouble) {
        return qt_error_string(static_cast<int>(trouble.number));
    });
    return told == troubles.end() ? ERROR_OPEN_FAILED : told->number;
}

/// A name without what may stand around it: "COM10" of "\\.\com10" and "COM10:".
std::string nameOf(const std::string& location)
{
    std::string name = upperCase(location);
    std::ranges::replace(name, '/', '\\');
    for (const std::string_view prefix : {devicePrefix, std::string_view(R"(\\?\)")}) {
        if (name.starts_with(prefix))
            name.erase(0, prefix.size());
    }
    if (name.ends_with(':'))
        name.pop_back();
    return name;
}

/// The driver's name for a device, such as "\Device\Serial0"; empty when there is none.
std::string driverDevice(const std::string& location)
{
    std::array<wchar_t, 1024> target{};
    const std::wstring name = toQt(nameOf(location)).toStdWString();
    const DWORD length = ::QueryDosDeviceW(name.c_str(), target.data(), static_cast<DWORD>(target.size()));
    return length == 0 ? std::string() : fromQt(QString::fromWCharArray(target.data()));
}

} // namespace

/// The toolkit's port class puts the prefix before names that begin with COM, and before no others.
std::string devicePath(const std::string& location)
{
    const std::string name = nameOf(location);
    if (name.starts_with("COM") || name.empty())
        return name;
    return name.find('\\') == std::string::npos ? std::string(devicePrefix) + name : location;
}

bool hasDevice(const std::string& location) { return !driverDevice(location).empty(); }

bool isBluetoothPort(const std::string& path)
{
    return driverDevice(path).find("BthModem") != std::string::npos;
}

CommError portOpenError(const std::string& path, QSerialPort::SerialPortError error,
                        const QString& description)
{
    const DWORD number = failureNumber(error, description);
    const auto* const trouble = std::ranges::find(troubles, number, &Trouble::number);
    return {static_cast<int>(number),
            std::string(trimmed(fromQt(description), " .")) + " (" + path + ")" +
                (trouble == troubles.end() ? "" : std::string(" - ") + trouble->advice)};
}

CommError nothingConnected(PortNumber port)
{
    return {ERROR_FILE_NOT_FOUND, "Nothing is connected to " + portName(port) +
                                      " - connect an adapter, or assign a port under File, Serial Ports"};
}

std::size_t writeNow(QSerialPort& /*port*/, std::string_view /*text*/)
{
    return 0; // a port that was opened for overlapped access takes no plain writes
}

bool lowerLatency(const QSerialPort& /*port*/)
{
    return false; // the drivers take it from their settings in the device manager alone
}

void restoreLatency(const QSerialPort& /*port*/) {}

} // namespace zint
