#pragma once

#include "catalogue/design.h"

#include <string>

namespace zint {

/// A design as a page in HTML: heading, title, file, date, sample speed, extra commands, and a row for each
/// event.
/// @param design as it would be saved: its own speed, not the slider's. @param file its name, may be empty
/// @param date as it shall be printed
std::string designPrintout(const Design& design, const std::string& file, const std::string& date);

} // namespace zint
