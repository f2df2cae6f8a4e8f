#pragma once

#include "catalogue/design.h"
#include "runner/sampleStore.h"

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
/// A log keeps the samples by event and their times in whole seconds. A table made of it is to have the rows
/// that the run itself would have given, one for each pass through the design; so the order between the
/// events is found again from the times and the design's frequencies.
/// @throws FileError (with the line's number) for what is no data log, also one that was cut short
DataLog readLog(std::istream& stream);

} // namespace zint
