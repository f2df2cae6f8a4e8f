#pragma once

#include "commands/commandLine.h"

namespace zint {

/// `zint-obd scan`: the PID scanner without a window. What the window would show goes to standard output,
/// what went wrong to standard error. Needs an application object; runs its event loop.
/// @return the exit status
int runScanCommand(const CommandLine& line);

} // namespace zint
