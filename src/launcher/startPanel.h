#pragma once

#include "link/portNumber.h"

#include <array>
#include <string>

namespace zint {

/// What the launcher shows; members are named after its controls.
struct StartPanel {
    std::string caption = "Zint"; ///< the version is appended at the start
    int comPort = 0;              ///< list position
    int comSpeed = 0;             ///< list position
    std::string portInfo;         ///< what the chosen port stands for now
    bool comSpeedEnabled = true;  ///< whether the line speed is of use with what the port stands for
    std::string speedHint;        ///< which speed to try first, or why none is needed; mostly empty

    /// What each port of the list stands for now.
    std::array<std::string, allPorts.size()> portTips;

    bool operator==(const StartPanel&) const = default;
};

} // namespace zint
