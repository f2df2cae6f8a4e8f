#pragma once

#include <string>

namespace zint {

/// What the launcher shows; members are named after its controls.
struct StartPanel {
    std::string caption = "Zint"; ///< the version is appended at the start
    int comPort = 0;              ///< list position
    int comSpeed = 0;             ///< list position
    std::string portInfo;         ///< what the chosen port stands for now
};

} // namespace zint
