#pragma once

#include "catalogue/design.h"
#include "samples/sampleStore.h"
#include "shared/progress.h"

#include <ostream>
#include <string>

namespace zint {

/// Writes a data log, lines ended by CR LF: the design (five fields an event), the start, the number of
/// records, and each event's samples as "seconds,raw value". @throws WorkStopped
void writeLog(std::ostream& stream, const Design& design, const SampleStore& samples,
              const std::string& firstStart, Progress& progress = unwatched);

} // namespace zint
