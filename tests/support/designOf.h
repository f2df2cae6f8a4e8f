#pragma once

#include "catalogue/design.h"

#include <vector>

namespace zint {

/// A design called "Car".
inline Design designOf(const std::vector<DesignEntry>& events) { return {.title = "Car", .events = events}; }

} // namespace zint
