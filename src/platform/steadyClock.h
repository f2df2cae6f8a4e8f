#pragma once

#include "shared/clock.h"

namespace zint {

/// The system's monotonic clock.
class SteadyClock final : public Clock {
public:
    std::chrono::microseconds monotonic() const override
    {
        const auto now = std::chrono::steady_clock::now().time_since_epoch();
        return std::chrono::duration_cast<std::chrono::microseconds>(now);
    }
};

} // namespace zint
