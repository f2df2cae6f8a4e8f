#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

/// The monitors' part of the reply to "0101".
namespace zint {

inline constexpr std::size_t monitorCount = 11;

/// One line per monitor, first the three continuous ones; monitorLabel() tells which is which.
using ReadinessTexts = std::array<std::string, monitorCount>;

/// The label that shows a line, counted from 0.
std::string_view monitorLabel(std::size_t line);

/// What the lines read before a status has been read.
ReadinessTexts initialReadiness();

/// The lines for a reply that begins with "41 01 ": each monitor's name and how far its test is. A value that
/// is missing, garbled or 0 makes its monitors read " input error".
ReadinessTexts readinessReport(std::string_view statusReply);

} // namespace zint
