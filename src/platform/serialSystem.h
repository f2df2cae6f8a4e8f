#pragma once

#include "link/commError.h"
#include "link/portNumber.h"

#include <QSerialPort>

#include <cstddef>
#include <string>
#include <string_view>

/// What a serial port needs of the system beyond the toolkit's port class.
namespace zint {

/// The path of a device: a bare name is one of the system's ports, anything else is taken from the working
/// folder. On Windows the one spelling of a port's name: "COM10" of "com10" and "\\.\COM10".
std::string devicePath(const std::string& location);

/// Whether the system has such a device now.
bool hasDevice(const std::string& location);

/// Whether a path leads to a port whose adapter is at the other end of a Bluetooth connection.
bool isBluetoothPort(const std::string& path);

/// Why a port could not be opened: the operating system's number and text, and what to do about it.
CommError portOpenError(const std::string& path, QSerialPort::SerialPortError error,
                        const QString& description);

/// A port that stands for nothing now.
CommError nothingConnected(PortNumber port);

/// Hands text to the system at once. The toolkit's port does so from the event loop, which it has to wake for
/// that: a fifth of the time of a fast exchange.
/// @return how many characters the system took, possibly none; the rest goes through the toolkit's port
std::size_t writeNow(QSerialPort& port, std::string_view text);

/// Asks the driver of an open port to hand over at once what comes, where it would wait for more otherwise.
/// @return whether it does so by that, so that restoreLatency() is to give it back
bool lowerLatency(const QSerialPort& port);

/// Lets the driver of an open port wait again.
void restoreLatency(const QSerialPort& port);

} // namespace zint
