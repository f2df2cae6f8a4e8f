#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The reply to "03" of a vehicle on CAN:
///
///     43 02 01 33 03 01         the number of codes, then two bytes for each: P0133, P0301
///
///     00A                       more than two codes: how many bytes there are,
///     0: 43 04 01 33 03 01      then numbered frames, the last one padded
///     1: C1 00 04 20 00 00 00
namespace zint {

/// What one control unit answered.
struct CanUnit {
    std::vector<std::string> codes; ///< such as "P0133", in the order sent
    std::size_t unreadCodes = 0; ///< stored too, but their bytes are missing or belong to nobody for certain

    bool operator==(const CanUnit&) const = default;
};

/// The codes of a reply in the CAN layout, for each control unit in the order of their answers; nothing for a
/// reply in any other layout. Older buses answer with lines of seven bytes, "43" and three codes.
///
/// Some adapters leave the padding of CAN in their lines, which have seven bytes then, too. The reply to
/// "0101" tells them apart: it has a byte too many, or its number of codes fits this layout alone.
std::optional<std::vector<CanUnit>> canCodes(std::string_view codesReply, std::string_view statusReply);

} // namespace zint
