#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace zint {

/// A USB device with the ids of a serial converter, for which the system has made no port.
struct PortlessDevice {
    std::string usbIds;  ///< "1a86:7523"
    std::string product; ///< in its own words, may be empty
    std::string driver;  ///< that has it; "usbfs" is a program, empty is none

    bool operator==(const PortlessDevice&) const = default;
};

/// What a system tells of a serial port from outside, without opening it. What it does not tell is as made.
struct PortFacts {
    std::string path; ///< in full, where a link leads
    bool exists = true;
    bool mayBeUsed = true;       ///< read and written, by this user
    std::string group;           ///< whose members may use it; empty where a group makes no difference
    bool isGroupGranted = false; ///< the user is a member from the next login on
    bool isSandboxed = false;    ///< the program runs where devices must be allowed
    bool isBluetooth = false;    ///< the speed of the port makes no difference
    bool isIncoming = false;     ///< Bluetooth devices may call it; it calls none
    std::string lockFile;        ///< of another program; empty: there is none
    std::string lockHolder;      ///< "minicom (1234)"
    std::optional<std::chrono::seconds> age;          ///< since it was plugged
    std::optional<std::chrono::milliseconds> latency; ///< for which the driver holds back short texts
    bool modemManagerRuns = false;
    bool brlttyRuns = false;
    std::vector<PortlessDevice> portless;
};

/// Why a port could not be opened.
enum class OpenTrouble { unknown, missing, notAllowed, inUse, noSerialPort, hostDown, refused, timedOut };

/// Looks at ports from outside. It changes nothing, and does not wait.
class PortInspector {
public:
    virtual ~PortInspector() = default;

    virtual PortFacts facts(const std::string& location) const = 0;

    /// The programs that have a port open, such as "minicom (1234)". Those of other users mostly can't be
    /// seen.
    virtual std::vector<std::string> holders(const std::string& location) const = 0;

    /// What the number of a CommError stands for.
    virtual OpenTrouble troubleOf(int number) const = 0;
};

} // namespace zint
