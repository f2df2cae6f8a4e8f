#pragma once

#include "link/portDirectory.h"

namespace zint {

/// The ports of a machine that a test makes up.
struct FixedPortList final : PortList {
    std::vector<DetectedPort> ports;
    bool numbersAreFixed = false; ///< port n is always "COMn"

    std::vector<DetectedPort> detected() const override { return ports; }
    std::optional<std::string> fixedLocation(int number) const override
    {
        return numbersAreFixed ? std::optional("COM" + std::to_string(number)) : std::nullopt;
    }
};

} // namespace zint
