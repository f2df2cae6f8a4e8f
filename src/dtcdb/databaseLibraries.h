#pragma once

#include <string>

namespace zint {

/// What this build reads databases with, for a report of a fault: "SQLite 3.40.1, without mdbtools".
std::string databaseLibraries();

} // namespace zint
