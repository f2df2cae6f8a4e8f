#pragma once

#include <chrono>
#include <string>

namespace zint {

/// A time as the user reads it: the locale's short date and its time of day with seconds, in local time.
std::string dateText(std::chrono::system_clock::time_point time);

/// The day in words and the time in minutes ("Saturday, November 21, 2026 03:24 PM"), in local time; the same
/// in each locale.
std::string longDateText(std::chrono::system_clock::time_point time);

/// A time as a part of a file's name, "2026-11-21 15.24.08", in local time: names sort as the times do.
std::string fileDateText(std::chrono::system_clock::time_point time);

} // namespace zint
