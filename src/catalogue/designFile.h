#pragma once

#include "catalogue/design.h"
#include "shared/textFile.h"

#include <cstddef>
#include <istream>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>

/// Polling designs as text: a title, a settings line, one line per event, an end line. A data log begins with
/// the same block.
namespace zint {

/// A text that would break the file: its fields are separated by "|".
class NotStorable : public std::runtime_error {
public:
    NotStorable();
};

/// @throws NotStorable for a text that can't be a field of the file
void requireStorable(std::string_view text);

/// What the line of an event tells.
enum class EventFields {
    all,            ///< as design files have it
    withoutReserved ///< as data logs have it: five fields, the reserved numbers are left out
};

/// Writes the design, lines ended by CR LF.
void writeDesign(std::ostream& stream, const Design& design, EventFields fields = EventFields::all);

/// Reads a design up to its end line; what follows is left. A speed that the slider can't show becomes the
/// default one.
/// @throws RunTimeError 13 or 6 for a field that is no number or too large; FileError for too many events, a
/// text that ends before its settings line, or a line that is too long
Design readDesign(std::istream& stream, std::size_t mostEvents = Design::maxEvents);

/// Reads the design that a data log begins with, and nothing that writeDesign() would not have written there.
/// @throws as readDesign(), and FileError for a line that is different; it is the last one that was read
Design readLoggedDesign(LineReader& lines);

/// Reads and writes a design's file. @throws FileError when it can't be opened, read or written, and as above
Design loadDesign(const std::string& path, std::size_t mostEvents = Design::maxEvents);
void saveDesign(const std::string& path, const Design& design);

} // namespace zint
