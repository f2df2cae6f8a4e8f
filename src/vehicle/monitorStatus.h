#pragma once

#include "vehicle/unitReading.h"

#include <string>

namespace zint {

/// The monitors in the four bytes of parameter 01 or 41. A monitor that is not supported tells no result;
/// those of parameter 41 that are not enabled in this drive cycle count as not supported.
Readiness readinessIn(BytesView status);

/// A monitor's name in words: "Oxygen sensor" for "o2Sensor".
std::string monitorText(const std::string& name);

} // namespace zint
