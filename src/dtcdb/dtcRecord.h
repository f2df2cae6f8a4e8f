#pragma once

#include <string>

namespace zint {

/// A description as the database keeps it. All texts are UTF-8.
struct DtcRecord {
    std::string code; ///< such as "P0301"
    std::string description;
    std::string notes;
};

} // namespace zint
