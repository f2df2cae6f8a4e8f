#pragma once

#include "designer/designGrid.h"

#include <string>

namespace zint {

/// What a design will cost, as a line for the user: requests per pass on average, and about how long a pass
/// takes.
/// @param sampleSpeed the adapter's time-out in ms, or Design::automaticSpeed
/// @param bitsPerSecond of the line
std::string pollCost(const DesignGrid& grid, int sampleSpeed, int bitsPerSecond);

} // namespace zint
