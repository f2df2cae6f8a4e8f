#pragma once

#include "catalogue/design.h"

#include <string>

namespace zint {

/// In what one design differs from another one, for a user who has to tell them apart: "other rows: 0105
/// Coolant Temp and 2 more; init commands ATH1". Titles are not compared.
std::string differenceText(const Design& design, const Design& from);

} // namespace zint
