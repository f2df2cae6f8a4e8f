#pragma once

#include "dtcdb/dtcRecord.h"

#include <string>
#include <vector>

namespace zint {

/// Whether this build can read databases of the Access engine: descriptions from before this program kept
/// them in SQLite.
bool canReadAccessDatabases();

/// All records of the table DTCset(Code, Description, Notes) in a database of the Access engine (.mdb of the
/// generations Jet 3 and 4, .accdb), in the order in which they lie in the file. The names of table and
/// fields compare without regard to case. The file is only read, and not held open.
///
/// A password is not asked for: it keeps nobody from the records in such a file. A file that is encrypted as
/// a whole with one is refused.
/// @throws DatabaseError when the file can't be read to the last record
std::vector<DtcRecord> readAccessDatabase(const std::string& path);

} // namespace zint
