#pragma once

#include "measure.h"

#include <QCoreApplication>

#include <string>

/// What a comparison is about.
struct RateGoal {
    const char* name;    ///< of what is compared with the blocking loop
    const char* counted; ///< "requests"
    double atLeast;      ///< the ratio that it should reach
};

/// What two take that are measured in turn.
struct ComparedSeconds {
    static constexpr int rounds = 7;
    double program;
    double blocking;
};

/// @return the medians
template <typename Program, typename Blocking>
ComparedSeconds compareSeconds(const Program& program, const Blocking& blocking)
{
    std::vector<double> ofProgram;
    std::vector<double> ofBlocking;
    for (int round = 0; round < ComparedSeconds::rounds; ++round) {
        ofProgram.push_back(program());
        ofBlocking.push_back(blocking());
    }
    return {median(ofProgram), median(ofBlocking)};
}

/// What main() does in a benchmark that is called with PATH COUNT DESCRIPTION: compares the two in turn on
/// the same adapter. Both take the path and the count, and return seconds. @return 1 below the goal
template <typename Application = QCoreApplication, typename Program, typename Blocking>
int compareRates(int argc, char* argv[], const RateGoal& goal, const Program& program,
                 const Blocking& blocking)
{
    const Application application(argc, argv);
    if (argc != 4)
        fail(("usage: " + std::string(argv[0]) + " PATH COUNT DESCRIPTION").c_str());
    const int count = std::max(1, std::atoi(argv[2]));
    const ComparedSeconds seconds =
        compareSeconds([&] { return program(argv[1], count); }, [&] { return blocking(argv[1], count); });
    const double ratio = seconds.blocking / seconds.program;
    std::printf("%s, %s: %.0f %s/s, blocking loop %.0f (medians of %d): ratio %.2f (%s)\n", goal.name,
                argv[3], count / seconds.program, goal.counted, count / seconds.blocking,
                ComparedSeconds::rounds, ratio, atLeast(goal.atLeast, ratio).c_str());
    return benchmarkStatus();
}
