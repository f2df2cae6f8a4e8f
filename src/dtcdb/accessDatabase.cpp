#include "dtcdb/accessDatabase.h"

#include "dtcdb/dtcDatabase.h"
namespace zint {
std::vector<DtcRecord> readAccessDatabase(const std::string& path) { throw DatabaseError(path); }
} // namespace zint
