#pragma once

#include "dtcdb/dtcRecord.h"

#include <string>
#include <vector>

namespace zint {
std::vector<DtcRecord> readAccessDatabase(const std::string& path);
}
