#include "designer/loopOffsets.h"
#include "shared/runTimeError.h"
#include "support/failure.h"

#include <gtest/gtest.h>

#include <regex>

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

/// The events of each loop, and its number.
std::string timelineOf(const Timings& timings)
{
    const std::string text =
        std::regex_replace(timelineText(designOf(timings)), std::regex("   ([a-z])\r\n"), "$1");
    return std::regex_replace(text, std::regex("---------- End Loop ([0-9]+)\r\n"), "$1 ");
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
    EXPECT_EQ(timelineOf({{1, 0}, {5, 4}}), "----------\r\n   \r\na1 ab2 a3 a4 a5 a6 ab7 a8 a9 a10 ");
    EXPECT_EQ(timelineOf({{5, 2}}), "----------\r\n   \r\n1 2 3 a4 5 6 7 8 a9 10 11 12 13 ");
    EXPECT_TRUE(timelineOf({{1800, 0}}).ends_with(" 1799 1800 "));
    for (const Timings& timings : {Timings{}, {{1, 0}, {0, 0}}})
        EXPECT_EQ(failureOf<RunTimeError>([&] { timelineOf(timings); }), "Division by zero");
    EXPECT_THROW(timelineOf({{2000000000, 1}}), std::length_error);
}

} // namespace
} // namespace zint
