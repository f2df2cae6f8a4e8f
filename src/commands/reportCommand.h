#pragma once

#include <string>

namespace CLI {
class App;
} // namespace CLI

namespace zint {

struct ReportOptions {
    std::string replayPath; ///< of a transcript that is read in place of a vehicle
    bool json = false;

    void describe(CLI::App& command);
    void check() const; ///< @throws UsageError
};

/// `zint-obd report`: what the control units tell. @return the exit status. @throws FileError
int runReportCommand(const ReportOptions& options);

} // namespace zint
