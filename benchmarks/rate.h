#pragma once

#include "blockingLoop.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <sys/resource.h>
#include <vector>

// What the benchmarks of requests per second have in common.

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
    std::fprintf(stderr, "benchmark: %s\n", why);
    std::exit(1);
}

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
