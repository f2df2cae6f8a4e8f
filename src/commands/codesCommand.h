#pragma once

#include "connection/connectionOptions.h"

#include <chrono>

namespace CLI {
class App;
} // namespace CLI

namespace zint {

struct CodesOptions {
    ConnectionOptions connection;
    bool clear = false;
    bool isConfirmed = false;          ///< that data in the vehicle be erased
    std::chrono::seconds timeout{120}; ///< for the whole exchange; 0: none

    void describe(CLI::App& command);
    void check() const; ///< @throws UsageError
};

/// `zint-obd codes`: one exchange without a window. The report goes to standard output, what went wrong to
/// standard error. Needs an application object; runs its event loop.
/// @return the exit status: 0, or 1 when the exchange failed, when codes have no
/// description because the database can't be read, and when a clear left codes or the light
int runCodesCommand(const CodesOptions& options);

} // namespace zint
