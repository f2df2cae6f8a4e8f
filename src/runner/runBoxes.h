#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

/// The numbers that are typed in the poll runner's boxes. A number out of range counts as the usual one.
namespace zint {

/// @param otherwise for a text that is no number
std::int64_t loopsIn(const std::string& text, std::int64_t otherwise);
std::int64_t refreshSecondsIn(const std::string& text, std::int64_t otherwise);

/// Nothing when there is none of 1 second to a day.
std::optional<std::chrono::seconds> timeLimitIn(const std::string& text);

} // namespace zint
