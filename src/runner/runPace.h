#pragma once

#include "catalogue/design.h"
#include "runner/schedule.h"
#include "shared/clock.h"

#include <cstdint>
#include <optional>
#include <string>

namespace zint {

/// How fast a design is polled: estimated at first, then as measured.
class RunPace {
public:
    using Time = Clock::Time;

    /// @param design outlives this. @param bitsPerSecond of the line
    RunPace(const Design& design, int bitsPerSecond);

    /// The first request of a run goes out, or the first one behind an interruption.
    /// @param replies that the run has had
    void begin(Time now, std::int64_t replies = 0)
    {
        began_ = now;
        repliesBefore_ = replies;
    }

    /// @param last when the last reply came. @param replies that the run has had
    void measure(Time last, std::int64_t replies);

    /// What is left of a run, in seconds; nothing before it was measured. @param last the request that is
    /// outstanding
    std::optional<double> secondsLeft(Turn last, std::int64_t endLoop) const;

    /// How long so many loops take: "about 1:45 with this design (0.11 s per loop)". Empty when the design
    /// has nothing to poll.
    std::string lengthText(std::int64_t loops) const;

    /// "0.11 s per loop"; empty before it was measured.
    std::string measuredText(std::int64_t loops) const;

    /// The seconds that a request takes; nothing before it was measured.
    std::optional<double> measuredSeconds() const
    {
        return isMeasured_ ? std::optional(requestSeconds_) : std::nullopt;
    }

private:
    double secondsOf(std::int64_t loops) const;

    const Design& design_;
    Time began_{};
    std::int64_t repliesBefore_ = 0; ///< began_
    double requestSeconds_;          ///< that one request takes
    bool isMeasured_ = false;
};

} // namespace zint
