#pragma once

#include <string>

namespace zint {

/// A record of the description database; all texts in UTF-8, a missing one is empty.
struct DtcRecord {
    std::string code;
    std::string description;
    std::string notes;

    bool operator==(const DtcRecord&) const = default;
};

} // namespace zint
