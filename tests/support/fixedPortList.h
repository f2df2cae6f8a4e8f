#pragma once

#include "link/portDirectory.h"

#include <algorithm>

namespace zint {

/// The ports of a machine that a test makes up.
struct FixedPortList final : PortList {
    std::vector<DetectedPort> ports;
    bool numbersAreFixed = false;     ///< port n is always "COMn"
    std::vector<std::string> devices; ///< exist, but are not detected, as a typed path

    std::vector<DetectedPort> detected() const override { return ports; }
    bool exists(const std::string& location) const override
    {
        return std::ranges::find(devices, location) != devices.end();
    }
    std::string devicePath(const std::string& location) const override
    {
        return numbersAreFixed || location.starts_with('/') ? location : "/dev/" + location;
    }
    std::optional<std::string> fixedLocation(PortNumber port) const override
    {
        return numbersAreFixed ? std::optional("COM" + std::to_string(static_cast<int>(port))) : std::nullopt;
    }
};

} // namespace zint
