#pragma once

#include "designer/designGrid.h"

#include <string>

namespace zint {

/// A design as a page in HTML: heading, title, date, sample speed, and a row for each event.
/// @param date as it shall be printed; the design's speed counts, not the slider's
std::string designPrintout(const DesignGrid& grid, int sampleSpeed, const std::string& date);

} // namespace zint
