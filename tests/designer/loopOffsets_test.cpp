#include "designer/loopOffsets.h"
#include "shared/runTimeError.h"
#include "support/failure.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

using Timings = std::vector<std::pair<std::int32_t, std::int32_t>>; // frequency, offset

/// Events "a", "b", ...
Design designOf(const Timings& timings)
{
    Design design;
    for (const auto& [frequency, offset] : timings)
        design.events.push_back({.description = {static_cast<char>('a' + design.events.size())},
                                 .frequency = frequency,
                                 .offset = offset});
    return design;
}

TEST(LoopOffsetsTest, SpreadsTheEventsOfEachFrequency)
{
    Design design = designOf({{2, 9}, {1, 9}, {2, 9}, {5, 9}, {2, 9}, {5, 9}, {5, 9}, {0, 9}});
    spreadOffsets(design);
    std::string offsets;
    for (const DesignEntry& event : design.events)
        offsets += std::to_string(event.offset);
    EXPECT_EQ(offsets, "00100439");
}

TEST(LoopOffsetsTest, TimelineListsTheLoops)
{
    EXPECT_EQ(timelineText(designOf({{1, 0}, {5, 4}})),
              "----------\r\n   \r\n"
              "   a\r\n---------- End Loop 1\r\n   a\r\n   b\r\n---------- End Loop 2\r\n"
              "   a\r\n---------- End Loop 3\r\n   a\r\n---------- End Loop 4\r\n"
              "   a\r\n---------- End Loop 5\r\n   a\r\n---------- End Loop 6\r\n"
              "   a\r\n   b\r\n---------- End Loop 7\r\n   a\r\n---------- End Loop 8\r\n"
              "   a\r\n---------- End Loop 9\r\n   a\r\n---------- End Loop 10\r\n");

    EXPECT_TRUE(timelineText(designOf({{5, 2}}))
                    .ends_with( // due in loops 3, 8 and 13
                        "   a\r\n---------- End Loop 9\r\n---------- End Loop 10\r\n"
                        "---------- End Loop 11\r\n---------- End Loop 12\r\n---------- End Loop 13\r\n"));
    EXPECT_NE(timelineText(designOf({{1800, 0}})).find("End Loop 1800\r\n"), std::string::npos);
}

TEST(LoopOffsetsTest, WhatIsNeverDueIsADivisionByZero)
{
    for (const auto& timings : {Timings{}, {{1, 0}, {0, 0}}}) {
        const auto show = [&] { timelineText(designOf(timings)); };
        EXPECT_EQ(failureOf<RunTimeError>(show), "Division by zero");
    }
    EXPECT_THROW(timelineText(designOf({{2000000000, 1}})), std::length_error);
}

} // namespace
} // namespace zint
