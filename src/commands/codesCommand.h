#pragma once

#include "commands/commandLine.h"

namespace zint {

/// `zint-obd codes`: one exchange without a window. The report goes to standard output, what went wrong to
/// standard error. Needs an application object; runs its event loop.
/// @return the exit status: 0, or 1 when the exchange failed, when codes have no
/// description because the database can't be read, and when a clear left codes or the light
int runCodesCommand(const CommandLine& line);

} // namespace zint
