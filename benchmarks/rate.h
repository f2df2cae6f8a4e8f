#pragma once

#include "blockingLoop.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

// What the benchmarks of requests per second have in common.

using RateClock = std::chrono::steady_clock;

inline double secondsSince(RateClock::time_point start)
{
    return std::chrono::duration<double>(RateClock::now() - start).count();
}

[[noreturn]] inline void fail(const char* why)
{
    std::fprintf(stderr, "benchmark: %s\n", why);
    std::exit(1);
}

inline double blockingSeconds(const char* path, const char* request, int count)
{
    const auto start = RateClock::now();
    if (blockingLoop(path, request, count) != 0)
        fail("the blocking loop can't use the port");
    return secondsSince(start);
}

inline double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}
