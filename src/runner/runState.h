#pragma once

#include "runner/pollLimits.h"
#include "runner/pollPlan.h"
#include "runner/renewal.h"
#include "runner/replyReader.h"
#include "runner/replyWatch.h"
#include "runner/schedule.h"
#include "samples/sampleStore.h"
#include "shared/clock.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace zint {

/// Where a run ends, whatever comes first.
struct RunLimits {
    static constexpr std::int64_t withoutEnd = std::numeric_limits<std::int64_t>::max();

    std::int64_t loops = pollLimits::usualLoops; ///< since the last reset, which takes them from their box
    std::optional<std::chrono::seconds> time;    ///< since the start, which takes it from its box
};

/// Where the poll runner stands. Each part is assigned as a whole when what it is counted from comes again.
struct RunState {
    using Time = Clock::Time;

    enum class Phase {
        stopped,
        preparing, ///< the adapter is being reset, or gets the design's commands
        polling,
        waiting, ///< the adapter is gone
        complete ///< stopped, for all loops or all of the time are over
    };

    struct Moment {
        Time time{};
        std::chrono::system_clock::time_point date;
    };

    struct SinceReset {
        Moment began;                   ///< the first start since then; the times of samples count from it
        bool showsValues = false;       ///< there has been a refresh with samples
        std::vector<std::string> words; ///< by event, what the last reply told in place of a value
    };

    /// Since a start, or since a reset in the run.
    struct Counts {
        Moment began;
        std::int64_t events = 0;                 ///< replies to requests
        std::vector<std::int32_t> samplesBefore; ///< by event
    };

    struct SinceStart {
        ReplyWatch watch;
        Renewal renewal{};
        Time nextRefresh{};
        std::deque<std::string> commands; ///< still to be sent in front of the next request
        std::string command;              ///< that is outstanding; empty: none
        PollRequest request;              ///< that is outstanding, or comes behind the commands
        BusAddress address;               ///< that the adapter has
        VehicleTraits vehicle;
        int repeats = 0;        ///< of questions whose answers were damaged
        bool hasPolled = false; ///< the first request has been sent
        bool hasAnswer = false; ///< a request was answered
    };

    Phase phase = Phase::stopped;
    Turn turn; ///< of the request that is outstanding; loops count since the last reset
    RunLimits limits;
    std::int64_t refreshSeconds = pollLimits::usualRefresh.count();
    std::int64_t noData = 0; ///< such replies since the window was opened
    SinceReset sinceReset;
    Counts counts;
    SinceStart sinceStart;

    bool isPolling() const { return phase != Phase::stopped && phase != Phase::complete; }

    /// Whether the last loop has been reached; the values must be reset before the next start.
    bool isFull() const { return turn.loop >= limits.loops; }

    bool isTimeUp(Time now) const { return limits.time && now - counts.began.time >= *limits.time; }
};

inline std::int64_t wholeSeconds(RunState::Time time)
{
    return std::chrono::duration_cast<std::chrono::seconds>(time).count();
}

inline SampleTime sampleTime(RunState::Time time)
{
    const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(time).count();
    return {static_cast<std::int32_t>(milliseconds / 1000), static_cast<std::uint16_t>(milliseconds % 1000)};
}

} // namespace zint
