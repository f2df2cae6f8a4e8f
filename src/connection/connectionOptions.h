#pragma once

#include "link/portNumber.h"

#include <optional>
#include <string>

namespace zint {

/// What a command line says of the connection, for one run.
struct ConnectionOptions {
    std::optional<PortNumber> portNumber; ///< 1 to 8
    std::string portLocation;             ///< what that port stands for; empty: as always
    std::optional<int> speedPosition;     ///< position in the launcher's list
    std::string transcriptPath;           ///< where the exchange is recorded; empty: nowhere. Of commands
    bool isIdentityLeftOut = false;       ///< in the transcript
};

/// What a command line asks of the windows.
struct StartOptions {
    ConnectionOptions connection;
    std::string designPath; ///< absolute; what the polling designer opens. Empty: the launcher comes up
};

} // namespace zint
