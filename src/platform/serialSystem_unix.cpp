#include "platform/serialSystem.h"
#include "platform/text.h"

#include <QFileInfo>

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <grp.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#ifdef __linux__
#include <linux/serial.h>
#include <sys/ioctl.h>
#include <sys/sysmacros.h>
#endif

namespace zint {
namespace {

std::string systemText(int number) { return std::generic_category().message(number); }

/// The number of the failure: the port class of the toolkit tells a text only, so that the system is asked
/// once more.
/// @return 0 when the system finds nothing wrong
int failureNumber(const std::string& path, QSerialPort::SerialPortError error)
{
    const int file = ::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (file < 0)
        return errno;
    const bool serial = ::isatty(file) != 0;
    ::close(file);
    if (!serial)
        return ENOTTY;
    return error == QSerialPort::PermissionError ? EBUSY : 0; // another program has locked it
}

std::string whoMayUse(const std::string& path)
{
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0)
        return {};
    constexpr mode_t groupMayUse = S_IRGRP | S_IWGRP;
    if ((status.st_mode & groupMayUse) != groupMayUse)
        return "only the device's owner may use it";
    std::array<char, 4096> buffer{};
    group entry = {};
    group* found = nullptr;
    const bool named =
        ::getgrgid_r(status.st_gid, &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr;
    return "the device belongs to the group \"" + (named ? found->gr_name : std::to_string(status.st_gid)) +
           "\", whose members may use it";
}

std::string advice(const std::string& path, int number)
{
    switch (number) {
    case EACCES:
    case EPERM:
        return whoMayUse(path);
    case EBUSY:
        return "another program holds it";
    case ENOENT:
    case ENODEV:
    case ENXIO:
        return "the adapter is not connected";
    case ENOTTY:
        return "it is no serial port";
    default:
        return {};
    }
}

/// Whether the chip waits up to 16 ms for more before it hands a short text over, as those of FTDI do: their
/// driver alone has such a file.
bool waitsForMore([[maybe_unused]] const QSerialPort& port)
{
#ifdef __linux__
    struct stat status = {};
    return ::fstat(port.handle(), &status) == 0 &&
           QFileInfo::exists(QStringLiteral("/sys/dev/char/%1:%2/device/latency_timer")
                                 .arg(major(status.st_rdev))
                                 .arg(minor(status.st_rdev)));
#else
    return false;
#endif
}

/// Sets the flag, which users may do. @return whether that changed it
bool setLowLatency([[maybe_unused]] const QSerialPort& port, [[maybe_unused]] bool isOn)
{
#ifdef __linux__
    constexpr auto flag = static_cast<int>(ASYNC_LOW_LATENCY);
    serial_struct settings = {};
    if (::ioctl(port.handle(), TIOCGSERIAL, &settings) != 0 || ((settings.flags & flag) != 0) == isOn)
        return false;
    settings.flags ^= flag;
    return ::ioctl(port.handle(), TIOCSSERIAL, &settings) == 0;
#else
    return false;
#endif
}

} // namespace

std::string devicePath(const std::string& location)
{
    if (location.find('/') == std::string::npos)
        return "/dev/" + location;
    return fromQt(QFileInfo(toQt(location)).absoluteFilePath());
}

bool hasDevice(const std::string& location) { return QFileInfo::exists(toQt(devicePath(location))); }

bool isBluetoothPort(const std::string& path)
{
    return QFileInfo(toQt(path)).fileName().startsWith(QLatin1String("rfcomm"));
}

CommError portOpenError(const std::string& path, QSerialPort::SerialPortError error,
                        const QString& description)
{
    const int number = failureNumber(path, error);
    std::string text = (number == 0 ? fromQt(description) : systemText(number)) + " (" + path + ")";
    if (const std::string more = advice(path, number); !more.empty())
        text += " - " + more;
    return {number == 0 ? EIO : number, text};
}

CommError nothingConnected(PortNumber port)
{
    return {ENODEV, systemText(ENODEV) + " (" + portName(port) +
                        ") - connect an adapter, or assign a port under File, Serial Ports"};
}

std::size_t writeNow(QSerialPort& port, std::string_view text)
{
    const ssize_t count = ::write(port.handle(), text.data(), text.size());
    return count < 0 ? 0 : static_cast<std::size_t>(count);
}

bool lowerLatency(const QSerialPort& port) { return waitsForMore(port) && setLowLatency(port, true); }

void restoreLatency(const QSerialPort& port) { setLowLatency(port, false); }

} // namespace zint
