#pragma once

#include "connection/connectionOptions.h"

#include <chrono>
#include <string>

namespace CLI {
class App;
} // namespace CLI

namespace zint {

struct ReportOptions {
    ConnectionOptions connection;
    std::chrono::seconds timeout{120};
    std::string replayPath; ///< of a transcript that is read in place of a vehicle
    bool json = false;
    std::string htmlPath;    ///< of a page that is written beside what is printed
    bool quick = false;      ///< see ReportPlan
    std::string comparePath; ///< of an earlier report in JSON
    enum class FailOn { nothing, codes, readiness } failOn = FailOn::nothing;
    bool quiet = false;

    void describe(CLI::App& command);
    void check() const; ///< @throws UsageError
};

/// `zint-obd report`: what all control units tell, in text or JSON. @return the exit status; 3 when what
/// `failOn` names is so. @throws FileError
int runReportCommand(const ReportOptions& options);

} // namespace zint
