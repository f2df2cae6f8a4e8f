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
    std::string speedHint;        ///< which speed to try first; empty for whom the program has served before

    /// What each port of the list stands for now.
    std::array<std::string, allPorts.size()> portTips;

    bool operator==(const StartPanel&) const = default;
};

} // namespace zint
