#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zint {

/// The letter and the digit that a code's first four bits stand for: "P0" for 0, "U3" for 15 (SAE J2012).
/// @param digit 0 to 15
std::string_view troubleCodePrefix(int digit);

/// The text of a code: "P0133" for 01 33.
std::string troubleCode(std::uint8_t high, std::uint8_t low);

} // namespace zint
