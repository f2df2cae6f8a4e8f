#pragma once

#include <string>

namespace zint {

/// What a file is, by its first bytes.
enum class DatabaseKind {
    sqlite,
    access, ///< of the Access engine, which keeps its own form of the table
    empty,
    other,
    unreadable ///< also what is missing or no file
};

DatabaseKind databaseKind(const std::string& path);

/// Whether there is a database, of whatever kind. An empty file is none: a set-up that was killed may have
/// left it.
bool isSetUp(const std::string& databasePath);

} // namespace zint
