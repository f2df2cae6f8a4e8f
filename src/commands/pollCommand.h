#pragma once

#include "commands/commandLine.h"

namespace zint {

/// `zint-obd poll`: a run of the poll runner without a window. The summary goes to standard output, what went
/// wrong to standard error. Needs an application object; runs its event loop.
/// @return the exit status
int runPollCommand(const CommandLine& line);

/// `zint-obd export`: turns a saved data log into a table. @return the exit status
int runExportCommand(const CommandLine& line);

} // namespace zint
