#pragma once

#include <chrono>
#include <functional>

namespace zint {

/// A repeating timer, made stopped. It ticks between events, never inside a call to it, and never after it
/// was stopped: a tick that was already on its way when the timer was stopped is dropped. Ticks that have to
/// wait come as one.
class Timer {
public:
    Timer() = default;
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;
    virtual ~Timer() = default;

    /// Sets the time between ticks; a running timer starts its interval anew.
    virtual void setInterval(std::chrono::milliseconds interval) = 0;

    /// Starts the interval anew, or stops the timer.
    virtual void setEnabled(bool enabled) = 0;

    virtual bool enabled() const = 0;

    std::function<void()> onTick; ///< set once, by the owner, before the timer is enabled
};

} // namespace zint
