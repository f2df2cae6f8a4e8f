#pragma once

#include "designer/gridEditing.h"

#include <string>

namespace zint {

/// What a design will cost, as a line for the user: requests per loop on average, how long a loop takes, and
/// how long where one request asks for several parameters, if that makes a difference.
/// @param bitsPerSecond of the line
/// @param measuredSeconds that a request took in the last run; 0 before there was one
std::string pollCost(const GridRows& rows, SampleSpeed sampleSpeed, int bitsPerSecond,
                     double measuredSeconds = 0);

} // namespace zint
