#pragma once

#include <chrono>
#include <functional>
#include <string>

namespace zint {

/// Writes a time as the user reads it.
using DateText = std::function<std::string(std::chrono::system_clock::time_point)>;

/// Tells the time, so that tests can set it.
class Clock {
public:
    using Time = std::chrono::microseconds; ///< since a fixed moment of this run

    virtual ~Clock() = default;

    /// It never goes back, whatever happens to the date.
    virtual Time monotonic() const = 0;

    /// The date and time of day. It may be set, forwards and back, while the program runs.
    virtual std::chrono::system_clock::time_point wall() const = 0;
};

} // namespace zint
