#pragma once

#include "catalogue/design.h"
#include "runner/sampleStore.h"
#include "shared/progress.h"

#include <functional>
#include <istream>
#include <ostream>
#include <string>

/// What the poll runner writes of a run, as text with lines ended by CR LF: the data log, the export and the
/// debug dump.
namespace zint {

/// A run as a data log keeps it.
struct DataLog {
    Design design;
    std::string firstStart; ///< date and time text
    SampleStore samples;    ///< in an order in which they may have come
};

/// Writes the design (five fields a line), the start, the number of records, and each event's samples as
/// "seconds,raw value". @throws WorkStopped, as the others that tell their progress
void writeLog(std::ostream& stream, const Design& design, const SampleStore& samples,
              const std::string& firstStart, Progress& progress = unwatched);

/// Reads a data log. A log keeps the samples by event; the order between events is found again from the times
/// and the design's passes.
/// @throws FileError (with the line's number) for what is no data log, also one that was cut short
DataLog readLog(std::istream& stream);

/// Writes a table for spreadsheets: a column per event, a row per moment, values in the events' units.
/// @param complain told, in words for the user, of a sample that belongs to no event; the export goes on
void writeExport(std::ostream& stream, const Design& design, const SampleStore& samples,
                 const std::string& firstStart, const std::function<void(const std::string&)>& complain,
                 Progress& progress = unwatched);

/// Writes every record of the store: link, value, time.
void writeDebugDump(std::ostream& stream, const SampleStore& samples, Progress& progress = unwatched);

} // namespace zint
