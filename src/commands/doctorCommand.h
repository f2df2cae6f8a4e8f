#pragma once

#include "connection/connectionOptions.h"

namespace CLI {
class App;
} // namespace CLI

namespace zint {

struct DoctorOptions {
    ConnectionOptions connection;
    bool json = false;
    bool quick = false; ///< without the vehicle
    bool quiet = false;

    void describe(CLI::App& command);
};

/// `zint-obd doctor`: finds out why the connection does not work, or how well it does. @return 0 when it
/// works, 1 when it does not
int runDoctorCommand(const DoctorOptions& options);

} // namespace zint
