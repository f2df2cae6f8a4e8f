#pragma once

#include "connection/connectionOptions.h"
#include "samples/csvExport.h"

#include <chrono>
#include <optional>
#include <string>

namespace CLI {
class App;
} // namespace CLI

namespace zint {

struct PollOptions {
    ConnectionOptions connection;
    std::chrono::seconds timeout{120}; ///< for a reply; 0: none
    std::string designPath;
    std::string logPath;    ///< empty: none is asked for
    std::string exportPath; ///< likewise
    std::optional<Decimals> decimals;
    std::optional<int> loops;
    std::optional<std::chrono::seconds> seconds;   ///< after which a run ends
    std::optional<std::chrono::seconds> reconnect; ///< that a run waits for an adapter that has vanished
    bool quiet = false;                            ///< without a progress line

    void describe(CLI::App& command);
    void check() const; ///< @throws UsageError
};

/// `zint-obd poll`: a run of the poll runner without a window. The summary goes to standard output, what went
/// wrong to standard error. Needs an application object; runs its event loop.
/// @return the exit status. @throws FileError
int runPollCommand(const PollOptions& options);

} // namespace zint
