#pragma once

#include "link/portDirectory.h"

#include <optional>
#include <string>
#include <vector>

namespace zint {

/// The ports of a machine that a test makes up.
class FixedPortList final : public PortList {
public:
    std::vector<DetectedPort> ports;
    bool numbersAreFixed = false; ///< port n is always "COMn"

    std::vector<DetectedPort> detected() const override { return ports; }

    std::optional<std::string> fixedLocation(int number) const override
    {
        return numbersAreFixed ? std::optional("COM" + std::to_string(number)) : std::nullopt;
    }
};

} // namespace zint
