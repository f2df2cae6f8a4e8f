#pragma once

#include "commands/commandLine.h"

namespace zint {

/// `zint-obd dtc setup`, `lookup`, `import` and `export`: the database of code descriptions without a window.
/// Results go to standard output, what went wrong to standard error. Needs an application object.
/// @return the exit status
int runDtcCommand(const CommandLine& line);

} // namespace zint
