#pragma once

#include "catalogue/design.h"

#include <array>

/// The largest design: each of its events is polled in each loop.
inline zint::Design fullDesign()
{
    constexpr std::array conversions = {1, 4, 5, 7, 9, 14, 15, 17}; // what engines mostly send
    zint::Design design{.title = "Benchmark"};
    for (std::size_t n = 0; n < zint::Design::maxEvents; ++n)
        design.events.push_back({.code = "010C",
                                 .description = "Event",
                                 .conversion = conversions.at(n % conversions.size()),
                                 .frequency = 1});
    return design;
}
