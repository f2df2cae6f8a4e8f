#pragma once

#include "vehicle/unitReading.h"

namespace zint {

/// The monitors in the four bytes of parameter 01 or 41. A monitor that is not supported tells no result;
/// those of parameter 41 that are not enabled in this drive cycle count as not supported.
Readiness readinessIn(BytesView status);

} // namespace zint
