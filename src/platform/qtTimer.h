#pragma once

#include "shared/eventGate.h"
#include "shared/timer.h"

#include <QTimer>

#include <optional>

namespace zint {

/// A timer on the event loop; its ticks pass the window's gate.
class QtTimer final : public Timer {
public:
    explicit QtTimer(EventGate& gate);

    void setInterval(std::chrono::milliseconds interval) override;
    void setEnabled(bool enabled) override;
    bool enabled() const override { return timer_.isActive(); }

private:
    void arrived();

    EventGate& gate_;
    QTimer timer_;
    unsigned setting_ = 0;            ///< tells a tick of the present setting from one of an earlier setting
    std::optional<unsigned> waiting_; ///< the setting whose tick waits at the gate
};

} // namespace zint
