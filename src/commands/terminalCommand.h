#pragma once

#include "commands/commandLine.h"

namespace zint {

/// `zint-obd terminal`: the command terminal without a window. Each line of standard input is a command; what
/// the window would show goes to standard output, what went wrong to standard error. Needs an application
/// object; runs its event loop.
/// @return the exit status
int runTerminalCommand(const CommandLine& line);

} // namespace zint
