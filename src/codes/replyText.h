#pragma once

#include "vehicle/bytes.h"

#include <string_view>
#include <vector>

/// Replies as lines and bytes, where positions in the text do not matter.
namespace zint {

/// The bytes that a line of hexadecimal pairs stands for, blanks skipped; none for any other line.
Bytes bytesOf(std::string_view line);

/// The bit of a status's byte A above the number of codes.
inline constexpr int milOn = 128;

/// What a control unit says of its codes.
struct UnitStatus {
    bool isLit = false; ///< it switches the light on
    int codes = 0;      ///< how many it stores
};

/// One for each line of a reply to "0101" that can be read, in their order.
std::vector<UnitStatus> unitStatuses(std::string_view statusReply);

} // namespace zint
