#pragma once

#include "vehicle/bytes.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace zint {

/// The raw value of a reply: the bytes of its first line behind the two that repeat the request, as one
/// number, the first byte highest. 0 when there are none.
/// @return nothing for a bad reply: one with anything but upper-case digits and blanks in its first line,
/// without a byte, or with a value above 0x7FFFFFFF
std::optional<std::int32_t> pollValue(std::string_view reply);

/// Data bytes as one number, the first byte highest. @return nothing above 0x7FFFFFFF
std::optional<std::int32_t> rawValueOf(BytesView data);

/// Whether the adapter says that the vehicle did not answer.
bool saysNoData(std::string_view reply);

} // namespace zint
