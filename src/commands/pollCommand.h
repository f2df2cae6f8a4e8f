#pragma once

#include "connection/connectionOptions.h"
#include "samples/csvExport.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
} // namespace CLI

namespace zint {

struct PollOptions {
    ConnectionOptions connection;
    std::chrono::seconds timeout{120}; ///< for a reply; 0: none
    std::vector<std::string> words;    ///< the design's path; with events more of them
    std::vector<std::string> events;   ///< in place of a design; see eventsNamed()
    bool imperial = false;             ///< units of the standard's parameters among them
    bool combine = false;              ///< several parameters in one request
    std::string csvPath;    ///< of the stream of samples; "-": standard output; empty: there is none
    bool jsonLines = false; ///< a stream of samples to standard output
    std::string logPath;    ///< empty: none is asked for
    std::string exportPath; ///< likewise
    std::optional<Decimals> decimals;
    std::optional<int> loops;
    std::optional<std::chrono::seconds> seconds;   ///< after which a run ends
    std::optional<std::chrono::seconds> reconnect; ///< that a run waits for an adapter that has vanished
    bool quiet = false;                            ///< without a progress line

    void describe(CLI::App& command);
    void check() const; ///< @throws UsageError

    bool printsSamples() const { return jsonLines || csvPath == "-"; }
    bool hasEvents() const { return !events.empty(); }
};

/// `zint-obd poll`: a run of the poll runner without a window. The summary goes to standard output, or to
/// standard error where samples go there; what went wrong to standard error. Needs an application object;
/// runs its event loop.
/// @return the exit status. @throws FileError
int runPollCommand(const PollOptions& options);

} // namespace zint
