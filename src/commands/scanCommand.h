#pragma once

#include "connection/connectionOptions.h"
#include "scanner/scanParameters.h"
#include "scanner/scanReply.h"

#include <chrono>

namespace CLI {
class App;
} // namespace CLI

namespace zint {

struct ScanOptions {
    ConnectionOptions connection;
    std::chrono::seconds timeout{120}; ///< for a reply; 0: none
    ScanParameters scan;
    ScanFilter filter = ScanFilter::all; ///< of the replies
    bool decimal = false;                ///< valid ones as a number as well
    bool ascii = false;                  ///< as characters as well
    bool names = false;                  ///< with the parameter's name as well
    bool allowsErasing = false;          ///< data in the vehicle
    bool quiet = false;                  ///< without a progress line

    void describe(CLI::App& command);
    void check() const; ///< @throws UsageError

private:
    void describeRange(CLI::App& command);
    void describeOutput(CLI::App& command);
};

/// `zint-obd scan`: the PID scanner without a window. What the window would show goes to standard output,
/// what went wrong to standard error. Needs an application object; runs its event loop.
/// @return the exit status
int runScanCommand(const ScanOptions& options);

} // namespace zint
