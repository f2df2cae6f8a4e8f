#pragma once

#include "connection/connectionOptions.h"
#include "terminal/terminalOptions.h"

#include <chrono>

namespace CLI {
class App;
} // namespace CLI

namespace zint {

struct TerminalCommandOptions {
    ConnectionOptions connection;
    std::chrono::seconds timeout{120}; ///< for a reply; 0: none
    NumberBase base = NumberBase::hexadecimal;

    void describe(CLI::App& command);
};

/// `zint-obd terminal`: the command terminal without a window. Each line of standard input is a command; what
/// the window would show goes to standard output, what went wrong to standard error. Needs an application
/// object; runs its event loop.
/// @return the exit status
int runTerminalCommand(const TerminalCommandOptions& options);

} // namespace zint
