#pragma once

#include "shared/clock.h"
#include "shared/timer.h"

namespace zint {

/// A clock that a test sets.
struct ManualClock final : Clock {
    std::chrono::microseconds now{0};
    std::chrono::system_clock::time_point date{};

    std::chrono::microseconds monotonic() const override { return now; }
    std::chrono::system_clock::time_point wall() const override { return date; }
};

/// A timer whose time passes only when a test says so.
struct ManualTimer final : Timer {
    std::chrono::milliseconds interval{0};
    bool running = false;

    void setInterval(std::chrono::milliseconds time) override { interval = time; }
    void setEnabled(bool enabled) override { running = enabled; }
    bool enabled() const override { return running; }

    /// The interval has passed. A stopped timer does nothing, as the real one.
    void tick()
    {
        if (running)
            onTick();
    }
};

} // namespace zint
