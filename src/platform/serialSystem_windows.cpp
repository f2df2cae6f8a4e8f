#include "platform/serialSystem.h"
#include "platform/text.h"

#include <qt_windows.h>

namespace zint {
namespace {

int failureNumber(QSerialPort::SerialPortError error)
{
    switch (error) {
    case QSerialPort::DeviceNotFoundError:
        return ERROR_FILE_NOT_FOUND;
    case QSerialPort::PermissionError:
        return ERROR_ACCESS_DENIED;
    default:
        return static_cast<int>(::GetLastError());
    }
}

std::string advice(int number)
{
    switch (number) {
    case ERROR_FILE_NOT_FOUND:
        return " - the adapter is not connected";
    case ERROR_ACCESS_DENIED:
        return " - another program holds it"; // ports have no owners here
    default:
        return {};
    }
}

} // namespace

std::string devicePath(const std::string& location) { return location; }

CommError portOpenError(const std::string& path, QSerialPort::SerialPortError error,
                        const QString& description)
{
    const int number = failureNumber(error);
    return {number, fromQt(description) + " (" + path + ")" + advice(number)};
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
