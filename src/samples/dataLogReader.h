#pragma once

#include "catalogue/design.h"
#include "samples/sampleStore.h"
#include "shared/progress.h"

#include <istream>
#include <string>

namespace zint {

/// A run as a data log keeps it.
struct DataLog {
    Design design;
    std::string firstStart; ///< date and time text
    SampleStore samples;    ///< in an order in which they may have come
};

/// Reads what writeLog() wrote.
///
/// A log keeps the samples by event, and their times in whole seconds; the samples of a second are spread
/// evenly over it. A table that is made of a log must have the rows that the run itself gives: one for each
/// loop through the design. So the reader finds the order between the events again, from the times and the
/// design's frequencies.
/// @throws FileError (with the line's number) for what is no data log, also one that was cut short;
/// WorkStopped
DataLog readLog(std::istream& stream, Progress& progress = unwatched);

/// The same from a file. @throws FileError (with the file's path), WorkStopped
DataLog loadLog(const std::string& path, Progress& progress = unwatched);

} // namespace zint
