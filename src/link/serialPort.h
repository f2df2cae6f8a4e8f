#pragma once

#include "link/portNumber.h"

#include <chrono>
#include <functional>
#include <string>
#include <string_view>

namespace zint {

/// What a port reports, by the numbers that drivers give it. Line errors, breaks and modem lines have
/// numbers, too, but no port reports them: what matters of them shows in the replies.
enum class PortNotice : int {
    deviceGone = -1, ///< the device behind the open port has vanished
    unexplained = 0, ///< something that the driver does not explain
    received = 2,    ///< characters have been received
};

/// A serial port as the tools use it: opened for each exchange.
///
/// The notification comes between events, on the thread that uses the port, and never from inside a call to
/// the port. Each group of characters that is received brings one.
class SerialPort {
public:
    SerialPort() = default;
    SerialPort(const SerialPort&) = delete;
    SerialPort& operator=(const SerialPort&) = delete;
    virtual ~SerialPort() = default;

    /// Opens the port, with 8 data bits, no parity and 1 stop bit, and discards what lies in it: the end of
    /// an earlier conversation would be taken for the answer to the first command of this one.
    /// @throws CommError when the port is missing, in use, not allowed or refuses the speed; it is then
    /// closed
    virtual void open(PortNumber number, int bitsPerSecond) = 0;

    static constexpr std::chrono::milliseconds closingPatience{500};

    /// Closes the port after what was written has left it and was answered with a prompt; waits
    /// `closingPatience` for that at most. Drops what was received and not read. Closing a closed port does
    /// nothing.
    virtual void close() = 0;

    virtual bool isOpen() const = 0;

    /// Writes text as it stands. @throws CommError when the port is closed or its driver refuses the text
    virtual void output(std::string_view text) = 0;

    /// Takes all characters that were received, bytes 00 included.
    virtual std::string input() = 0;

    std::function<void(PortNotice)> onNotice; ///< set by the owner before the port is opened
};

} // namespace zint
