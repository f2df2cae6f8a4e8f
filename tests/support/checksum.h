#pragma once

#include <cstdint>
#include <string_view>

namespace zint {

/// A short stand-in for a long table in a test (64-bit FNV-1a).
constexpr std::uint64_t checksum(std::string_view text)
{
    std::uint64_t sum = 0xcbf29ce484222325U;
    for (const char character : text)
        sum = (sum ^ static_cast<unsigned char>(character)) * 0x100000001b3U;
    return sum;
}

} // namespace zint
