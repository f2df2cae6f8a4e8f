#pragma once

#include "shared/clock.h"

namespace zint {

/// A clock that a test sets.
class ManualClock final : public Clock {
public:
    std::chrono::microseconds monotonic() const override { return now_; }
    void advance(std::chrono::microseconds time) { now_ += time; }

private:
    std::chrono::microseconds now_{0};
};

} // namespace zint
