#pragma once

#include "codes/readiness.h"

#include <chrono>
#include <string>
#include <vector>

namespace zint {

/// What the last reading brought.
struct CodesReading {
    std::chrono::system_clock::time_point time;

    // Of the control unit that answered first, as all that is shown unless a note says otherwise.
    bool isLit = false;
    int reportedCodes = 0;
    ReadinessTexts readiness = initialReadiness();

    std::vector<std::string> listing; ///< a line a code, with its description if there is one

    /// That the listing shows no codes of this vehicle, and which ones it has; empty when the listing holds.
    std::vector<std::string> canWarning;

    std::vector<std::string> notes; ///< what the listing leaves out
};

} // namespace zint
