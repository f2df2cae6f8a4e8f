#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Entries of the choosers read number + ">" + name, for example "  15>about 5s".
namespace zint {

std::string chooserText(std::int32_t number, std::string_view name);

/// The number read back: the digits before the first ">", 0 when there are none.
/// @throws RunTimeError 6 when it exceeds the signed 32-bit range
std::int32_t chooserNumber(std::string_view text);

} // namespace zint
