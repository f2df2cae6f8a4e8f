#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace zint {

/// What a target does with an input. Each fuzz_<name>.cpp has its own; libFuzzer calls it.
void fuzz(std::string_view input);

/// Stops the run with the words of what must always hold.
inline void require(bool holds, const char* what)
{
    if (!holds) {
        std::fprintf(stderr, "\nDoes not hold: %s\n", what);
        std::abort();
    }
}

inline std::uint8_t byteAt(std::string_view input, std::size_t place)
{
    return static_cast<std::uint8_t>(input[place]);
}

} // namespace zint
