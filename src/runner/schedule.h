#pragma once

#include "catalogue/design.h"

#include <cstddef>
#include <cstdint>

namespace zint {

/// A request's place in a run.
struct Turn {
    std::int64_t loop = 0; ///< through the design, from 0
    std::size_t event = 0; ///< of the design, from 0

    bool operator==(const Turn&) const = default;
};

/// Whether the design has an event that is ever due; one with a frequency below 1 never is.
bool isEverDue(const Design& design);

/// What stands in front of the first request of a run.
inline constexpr Turn beforeAll{.loop = -1, .event = Design::maxEvents};

/// How many requests come behind a turn and before a loop.
std::int64_t requestsBetween(const Design& design, Turn after, std::int64_t endLoop);

} // namespace zint
