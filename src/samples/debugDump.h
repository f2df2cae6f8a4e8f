#pragma once

#include "samples/sampleStore.h"
#include "shared/progress.h"

#include <ostream>

namespace zint {

/// Writes every record of the store as "link,value,time", lines ended by CR LF. @throws WorkStopped
void writeDebugDump(std::ostream& stream, const SampleStore& samples, Progress& progress = unwatched);

} // namespace zint
