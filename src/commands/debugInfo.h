#pragma once

#include "connection/connectionOptions.h"

#include <string>

namespace zint {

/// What a report of a fault needs: version, build, system, files, ports. The home folder is written as "~".
/// Needs an application object.
std::string debugInfo(const ConnectionOptions& options);

} // namespace zint
