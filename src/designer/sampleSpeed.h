#pragma once

#include "catalogue/design.h"

#include <string>

/// The adapter's time-out as the designer's slider shows it.
namespace zint {

/// "200ms", or "Auto"
std::string speedText(SampleSpeed sampleSpeed);

/// The slider's position, in ms, as a multiple of 4 ms, the adapter's unit; a half goes to the even multiple.
int roundedSpeed(int position);

} // namespace zint
