#pragma once

#include "terminal/terminalOptions.h"

#include <cstdint>
#include <string>

namespace zint {

/// A number of a reply as the terminal writes it: without leading zeros, with one blank behind it.
/// @param value at least 0
std::string numberText(std::int32_t value, NumberBase base);

} // namespace zint
