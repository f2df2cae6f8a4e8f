#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace zint {

inline std::string_view asText(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}

/// Stops the run with the words of what must always hold.
inline void require(bool holds, const char* what)
{
    if (!holds) {
        std::fprintf(stderr, "\nDoes not hold: %s\n", what);
        std::abort();
    }
}

} // namespace zint
