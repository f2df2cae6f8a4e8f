#pragma once

#include "catalogue/design.h"

namespace zint {

/// How long a request takes at most, about, in seconds: the adapter waits for the vehicle as long as its
/// time-out says, but many go on as soon as there is an answer.
/// @param bitsPerSecond of the line
double requestSeconds(SampleSpeed sampleSpeed, int bitsPerSecond);

} // namespace zint
