#pragma once

#include <chrono>
#include <string>

namespace zint {

/// A time as the user reads it: the locale's short date and its time of day with seconds, in local time.
std::string dateText(std::chrono::system_clock::time_point time);

} // namespace zint
