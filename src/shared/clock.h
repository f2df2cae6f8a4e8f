#pragma once

#include <chrono>

namespace zint {

/// Tells the time, so that tests can set it.
class Clock {
public:
    virtual ~Clock() = default;

    /// Time since a fixed moment of this run; it never goes back, whatever happens to the date.
    virtual std::chrono::microseconds monotonic() const = 0;

    /// The date and time of day. It may be set, forwards and back, while the program runs.
    virtual std::chrono::system_clock::time_point wall() const = 0;
};

} // namespace zint
