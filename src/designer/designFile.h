#pragma once

#include "catalogue/design.h"

#include <cstdint>
#include <istream>
#include <ostream>
#include <string>

/// Polling designs as text: a title, a settings line, one line per event, an end line. A data log begins with
/// the same block.
namespace zint {

/// The sample speeds that the designer's slider offers, in ms.
inline constexpr std::int16_t slowestSampling = 1020;
inline constexpr std::int16_t fastestSampling = 4;

/// Writes the design, lines ended by CR LF.
void writeDesign(std::ostream& stream, const Design& design);

/// Reads a design up to its end line; what follows is left. A speed that the slider can't show becomes the
/// default one.
/// @throws RunTimeError 13 or 6 for a field that is no number or too large; FileError for more than 64
/// events, a text that
///         ends before its settings line, or a line that is too long
Design readDesign(std::istream& stream);

/// The same for a file. @throws FileError when it can't be opened, read or written, and as above
Design loadDesign(const std::string& path);
void saveDesign(const std::string& path, const Design& design);

} // namespace zint
