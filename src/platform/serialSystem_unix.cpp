#include "link/portDirectory.h"
#include "platform/serialSystem.h"
#include "platform/text.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <grp.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace zint {
namespace {

std::string systemText(int number)
{
    return std::generic_category().message(number);
}

std::string withDevPath(const std::string& location)
{
    return location.find('/') == std::string::npos ? "/dev/" + location : location;
}

/// The number of the failure: the port class of the toolkit tells a text only, so that the system is asked
/// once more.
int failureNumber(const std::string& path)
{
    const int file = ::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (file < 0)
        return errno;
    const bool serial = ::isatty(file) != 0;
    ::close(file);
    return serial ? EBUSY : ENOTTY; // it opens for us: then another program has locked it, or it is no port
}

std::string groupOf(const std::string& path)
{
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0)
        return {};
    std::array<char, 4096> buffer{};
    group entry = {};
    group* found = nullptr;
    if (::getgrgid_r(status.st_gid, &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr)
        return std::to_string(status.st_gid);
    return found->gr_name;
}

std::string advice(const std::string& path, int number)
{
    switch (number) {
    case EACCES:
    case EPERM:
        if (const std::string group = groupOf(path); !group.empty())
            return "the device belongs to the group \"" + group + "\", whose members may use it";
        return {};
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

} // namespace

CommError portOpenError(const std::string& location, QSerialPort::SerialPortError /*error*/,
                        const QString& /*description*/)
{
    const std::string path = withDevPath(location);
    const int number = failureNumber(path);
    std::string text = systemText(number) + " (" + path + ")";
    if (const std::string more = advice(path, number); !more.empty())
        text += " - " + more;
    return {number, text};
}

CommError nothingConnected(int number)
{
    return {ENODEV, systemText(ENODEV) + " (" + PortDirectory::name(number) +
                        ") - connect an adapter, or assign a port under File, Serial Ports"};
}

std::size_t writeNow(QSerialPort& port, std::string_view text)
{
    const ssize_t count = ::write(port.handle(), text.data(), text.size());
    return count < 0 ? 0 : static_cast<std::size_t>(count);
}

} // namespace zint
