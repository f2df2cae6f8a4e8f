#include "dtcdb/databaseLibraries.h"

#include "dtcdb/accessDatabase.h"

#include <sqlite3.h>

namespace zint {

std::string databaseLibraries()
{
    return std::string("SQLite ") + sqlite3_libversion() +
           (canReadAccessDatabases() ? ", with mdbtools" : ", without mdbtools");
}

} // namespace zint
