#pragma once

#include <algorithm>
#include <cstdint>

namespace zint {

/// Whether an item tells which of the 32 that follow it are supported (00, 20, 40 ...).
constexpr bool isSupportItem(std::uint8_t number) { return number % 32 == 0; }

/// The bit of an item in the bitmap that stands at a lower one. All that lies more than 31 items away shows
/// in the last bit, which promises an answer to the next bitmap.
constexpr std::uint32_t supportBit(std::uint8_t bitmap, std::uint8_t item)
{
    return item <= bitmap ? 0 : 0x80000000U >> (std::min(item - bitmap, 32) - 1);
}

} // namespace zint
