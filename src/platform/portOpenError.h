#pragma once

#include "link/commError.h"

#include <QSerialPort>

#include <string>

namespace zint {

/// Why a port could not be opened: the operating system's number and text, and what to do about it.
CommError portOpenError(const std::string& location, QSerialPort::SerialPortError error,
                        const QString& description);

/// A port number that stands for nothing now.
CommError nothingConnected(int number);

} // namespace zint
