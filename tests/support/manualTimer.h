#pragma once

#include "shared/timer.h"

namespace zint {

/// A timer whose time passes only when a test says so.
class ManualTimer final : public Timer {
public:
    void setInterval(std::chrono::milliseconds interval) override { interval_ = interval; }
    void setEnabled(bool enabled) override { enabled_ = enabled; }
    bool enabled() const override { return enabled_; }

    std::chrono::milliseconds interval() const { return interval_; }

    /// The interval has passed. A stopped timer does nothing, as the real one.
    void tick()
    {
        if (enabled_ && onTick)
            onTick();
    }

private:
    std::chrono::milliseconds interval_{0};
    bool enabled_ = false;
};

} // namespace zint
