#pragma once

#include "shared/timer.h"

namespace zint {

/// A timer whose time passes only when a test says so.
class ManualTimer final : public Timer {
public:
    std::chrono::milliseconds interval{0};

    void setInterval(std::chrono::milliseconds time) override { interval = time; }
    void setEnabled(bool enabled) override { enabled_ = enabled; }
    bool enabled() const override { return enabled_; }

    /// The interval has passed. A stopped timer does nothing, as the real one.
    void tick()
    {
        if (enabled_)
            onTick();
    }

private:
    bool enabled_ = false;
};

} // namespace zint
