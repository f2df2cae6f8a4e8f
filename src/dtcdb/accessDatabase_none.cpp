// In place of accessDatabase.cpp where the library that it needs is missing.

#include "dtcdb/accessDatabase.h"
#include "dtcdb/dtcDatabase.h"

namespace zint {

bool canReadAccessDatabases() { return false; }

std::vector<DtcRecord> readAccessDatabase(const std::string& path)
{
    throw DatabaseError(
        "The code descriptions in \"" + path +
        "\" can't be read: this is a database of the Access engine, and this copy of the program "
        "was built without its reader. Choose another file.");
}

} // namespace zint
