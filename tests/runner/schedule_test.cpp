#include "runner/schedule.h"
#include "support/designOf.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

TEST(ScheduleTest, FindsTheNextRequestHoweverFar)
{
    const Design design =
        designOf({{.frequency = 0}, {.frequency = 4, .offset = 1}, {.frequency = 1000000000, .offset = 1}});
    Turn turn{0, 0};
    for (const Turn& expected : {Turn{3, 1}, {7, 1}, {11, 1}})
        EXPECT_EQ(turn = nextTurn(design, turn), expected);
    EXPECT_EQ(nextTurn(design, {999999995, 1}), (Turn{999999999, 1}));
    EXPECT_EQ(nextTurn(design, {999999999, 1}), (Turn{999999999, 2})) << "in the design's order";
    EXPECT_EQ(nextTurn(designOf({{.frequency = 3, .offset = -7}}), {5, 0}), (Turn{7, 0}));
    EXPECT_EQ(requestsBetween(design, turn, 20), 2);
    EXPECT_EQ(requestsBetween(design, beforeAll, 1000000000), 250000001);
    EXPECT_FALSE(isEverDue(designOf({{.frequency = 0}})));
}

} // namespace
} // namespace zint
