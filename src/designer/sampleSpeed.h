#pragma once

#include <string>

/// The adapter's time-out as the designer's slider shows it.
namespace zint {

/// "200ms", or "Auto"
/// @param sampleSpeed in ms, or Design::automaticSpeed
std::string speedText(int sampleSpeed);

/// The slider's position as a multiple of 4 ms, the adapter's unit; a half goes to the even multiple.
int roundedSpeed(int position);

} // namespace zint
