#pragma once

#include "link/portLocation.h"
#include "link/portNumber.h"
#include "shared/settingsStore.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zint {

/// A serial port that the machine has.
struct DetectedPort {
    std::string location;    ///< what opens it: "/dev/ttyUSB0", "COM7"
    std::string description; ///< the device's own words, may be empty
    std::string usbIds;      ///< "0403:6001"; empty when it is no USB device

    bool operator==(const DetectedPort&) const = default;
};

/// What a system tells about its serial ports.
class PortList {
public:
    virtual ~PortList() = default;

    /// Whether there is a device at a location now.
    virtual bool exists(const std::string& location) const = 0;

    /// The ports that exist now, in the order in which they get their numbers.
    virtual std::vector<DetectedPort> detected() const = 0;

    /// The one spelling of a location: "ttyUSB0" and a link that leads there are "/dev/ttyUSB0".
    virtual std::string devicePath(const std::string& location) const { return location; }

    /// The location that a port always has on this system, such as "COM3"; nothing where numbers are given to
    /// the detected ports in their order.
    virtual std::optional<std::string> fixedLocation(PortNumber port) const = 0;
};

/// What "com1" to "com8" stand for.
///
/// The user's assignment comes first, then the system's own port of that number, then the n-th detected port.
/// Assignments are kept in the settings store; those of a command line hold for one run.
class PortDirectory {
public:
    /// Stands for the simulated vehicle in place of a location.
    static constexpr std::string_view simulated = PortLocation::simulatedText;

    struct Target {
        std::string location;    ///< as it was assigned; empty: nothing is connected
        std::string description; ///< of the device, may be empty
        bool connected = false;  ///< whether there is a device or a file now; an adapter in a network counts

        PortLocation place = portLocation(location); ///< what the location stands for

        /// In one line for the user: "/dev/ttyUSB0 - FT232R USB UART", "simulated vehicle",
        /// "nothing connected", "/dev/rfcomm0 at 38400 - nothing connected", "192.168.0.10:35000 - network
        /// adapter".
        std::string text() const;
    };

    PortDirectory(SettingsStore& settings, const PortList& system) : settings_(settings), system_(system) {}

    /// What the port stands for now.
    Target target(PortNumber port) const { return target(port, detected()); }

    /// The same for who asks for many: looking at the machine's ports takes time. @param ports detected()
    Target target(PortNumber port, const std::vector<DetectedPort>& ports) const;

    /// What the port would stand for without an assignment.
    Target automaticTarget(PortNumber port, const std::vector<DetectedPort>& ports) const;

    /// The user's assignment for good, empty when there is none.
    std::string assignment(PortNumber port) const;

    /// What the command line assigned, empty when it did not.
    std::string assignmentForThisRun(PortNumber port) const;

    /// Assigns a location, `simulated`, or nothing (empty) for good.
    void assign(PortNumber port, const std::string& location);

    void assignForThisRun(PortNumber port, std::string location);

    std::vector<DetectedPort> detected() const { return system_.detected(); }

    /// The number of "com1" to "com8", in upper or lower case; nothing for any other text.
    static std::optional<PortNumber> numberOf(std::string_view text);

private:
    Target targetAt(const std::string& location, const std::vector<DetectedPort>& ports) const;

    SettingsStore& settings_;
    const PortList& system_;
    std::array<std::string, allPorts.size()> thisRun_;
};

} // namespace zint
