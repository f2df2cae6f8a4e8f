#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace zint {

/// What an event of a serial port is about. Drivers report further numbers (line errors, breaks, modem
/// lines).
namespace commEvent {
inline constexpr int unknown = 0;     ///< an event that the driver does not explain
inline constexpr int receive = 2;     ///< characters have been received
inline constexpr int deviceGone = -1; ///< the device behind the open port has vanished
} // namespace commEvent

/// Text leaves out the bytes 00 that some adapters mix in.
enum class InputMode { text, binary };

/// A serial port as the tools use it: set up once, opened for each exchange.
///
/// The notification comes between events, on the thread that uses the port, and never from inside a call to
/// the port.
class SerialPort {
public:
    SerialPort() = default;
    SerialPort(const SerialPort&) = delete;
    SerialPort& operator=(const SerialPort&) = delete;
    virtual ~SerialPort() = default;

    void setCommPort(int number) { commPort_ = number; }                         ///< 1 for "com1"
    void setSettings(std::string settings) { settings_ = std::move(settings); }  ///< e.g. "9600,N,8,1"
    void setReceiveThreshold(int characters) { receiveThreshold_ = characters; } ///< 0: no notifications
    void setInputMode(InputMode mode) { inputMode_ = mode; }
    void setInputLength(int characters) { inputLength_ = characters; } ///< per read; 0: everything buffered

    /// Opens the port and discards what lies in it: the end of an earlier conversation would be taken for the
    /// answer to the first command of this one.
    /// @throws CommError when the port is missing, in use, not allowed or refuses the settings; it is then
    /// closed
    virtual void open() = 0;

    static constexpr std::chrono::milliseconds closingPatience{500};

    /// Closes the port after what was written has left it and was answered with a prompt; waits
    /// `closingPatience` for that at most. Drops what was received and not read. Closing a closed port does
    /// nothing.
    virtual void close() = 0;

    virtual bool isOpen() const = 0;

    /// Writes text as it stands. @throws CommError when the port is closed or its driver refuses the text
    virtual void output(std::string_view text) = 0;

    virtual std::string input() = 0;       ///< takes received characters, as many as the input length says
    virtual int inBufferCount() const = 0; ///< characters received and not yet taken, bytes 00 included
    virtual int lastCommEvent() const = 0; ///< what the notification is about, see commEvent

    std::function<void()> onComm; ///< the notification; set by the owner before the port is opened

protected:
    int commPort() const { return commPort_; }
    const std::string& settings() const { return settings_; }
    int receiveThreshold() const { return receiveThreshold_; }

    /// Takes from a received text what one read hands out.
    std::string takeInput(std::string& received) const;

private:
    int commPort_ = 1;
    std::string settings_ = "9600,N,8,1";
    int receiveThreshold_ = 0;
    InputMode inputMode_ = InputMode::text;
    int inputLength_ = 0;
};

} // namespace zint
