#pragma once

#include "shared/clock.h"

namespace zint {

/// The system's clocks.
class SystemClock final : public Clock {
public:
    std::chrono::microseconds monotonic() const override
    {
        const auto now = std::chrono::steady_clock::now().time_since_epoch();
        return std::chrono::duration_cast<std::chrono::microseconds>(now);
    }

    std::chrono::system_clock::time_point wall() const override { return std::chrono::system_clock::now(); }
};

} // namespace zint
