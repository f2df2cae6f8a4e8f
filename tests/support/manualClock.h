#pragma once

#include "shared/clock.h"

namespace zint {

/// A clock that a test sets.
struct ManualClock final : Clock {
    std::chrono::microseconds now{0};

    std::chrono::microseconds monotonic() const override { return now; }
};

} // namespace zint
