#pragma once

#include "blockingLoop.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/resource.h>
#include <vector>

// What the benchmarks have in common: times, medians, goals, and the blocking loop beside which requests run.

using RateClock = std::chrono::steady_clock;

inline double secondsSince(RateClock::time_point start)
{
    return std::chrono::duration<double>(RateClock::now() - start).count();
}

inline double processorSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

[[noreturn]] inline void fail(const char* why)
{
    constexpr int broken = 2; // 1 tells of a missed goal
    std::fprintf(stderr, "benchmark: %s\n", why);
    std::exit(broken);
}

inline int missedGoals = 0;

/// A goal in words; a missed one says so and is counted.
inline std::string goalText(const char* bound, double goal, bool reached)
{
    std::array<char, 80> text{};
    missedGoals += reached ? 0 : 1;
    std::snprintf(text.data(), text.size(), "goal: at %s %g%s", bound, goal, reached ? "" : ", MISSED");
    return text.data();
}

inline std::string atLeast(double goal, double figure) { return goalText("least", goal, figure >= goal); }
inline std::string atMost(double goal, double figure) { return goalText("most", goal, figure <= goal); }

/// What main() returns.
inline int benchmarkStatus() { return missedGoals > 0 ? 1 : 0; }

/// The requests take turns.
inline double blockingSeconds(const char* path, const std::vector<const char*>& requests, int count)
{
    const auto start = RateClock::now();
    if (blockingLoop(path, requests.data(), static_cast<int>(requests.size()), count) != 0)
        fail("the blocking loop can't use the port");
    return secondsSince(start);
}

inline double blockingSeconds(const char* path, const char* request, int count)
{
    return blockingSeconds(path, std::vector{request}, count);
}

inline double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}
