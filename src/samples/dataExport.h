#pragma once

#include "catalogue/design.h"
#include "samples/sampleStore.h"
#include "shared/progress.h"

#include <functional>
#include <ostream>
#include <string>

namespace zint {

/// Writes a table for spreadsheets, lines ended by CR LF: a column per event, a row per moment, values in the
/// events' units.
/// @param complain told, in words for the user, of a sample that belongs to no event; the export goes on
/// @throws WorkStopped
void writeExport(std::ostream& stream, const Design& design, const SampleStore& samples,
                 const std::string& firstStart, const std::function<void(const std::string&)>& complain,
                 Progress& progress = unwatched);

} // namespace zint
