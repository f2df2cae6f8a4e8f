#include "chart/chartRange.h"

#include <gtest/gtest.h>

#include <functional>
#include <tuple>

namespace zint {
namespace {

TEST(ChartRange, FollowsARunShowsItAllAfterwardsAndStaysWhereTheUserWent)
{
    ChartRange range;
    const std::tuple<std::function<void()>, double, bool, std::pair<double, double>> rows[] = {
        {[&] { range.setWindow(60); }, 0, true, {0, 1}}, // the window grows with the run
        {[&] { range.take(-1, 14); }, 15, true, {0, 15}},
        {[&] { range.take(-10, 20); }, 100, true, {40, 100}},
        {[&] { range.take(70, 100); }, 110, true, {80, 110}}, // the newest moment stays in sight
        {[&] { range.take(30, 60); }, 200, true, {30, 60}},
        {[&] { range.take(-70, -40); }, 200, true, {0, 30}},
        {[&] { range.take(500, 530); }, 210, true, {180, 210}}, // back to the run
        {[] {}, 220, false, {0, 220}},
        {[&] { range.take(27.5, 137.5); }, 220, false, {27.5, 137.5}},
        {[&] { range.take(30, 30.01); }, 220, false, {30, 30.1}},
        {[&] { range.take(-1e9, 1e9); }, 220, false, {0, 220}},
        {[&] { range.take(100, 150); }, 220, false, {100, 150}},
        {[&] { range.showAll(); }, 220, false, {0, 220}},
        {[] {}, 230, true, {170, 230}}, // polling goes on
        {[&] { range.take(200, 230); }, 240, true, {210, 240}},
        {[&] { range.take(200, 230); }, 250, true, {200, 230}},
        {[&] { range.showAll(); }, 260, true, {0, 260}},
        {[] {}, 5, true, {0, 5}},                              // emptied while it is on
        {[&] { range.setEnd(0, false); }, 30, false, {0, 30}}, // emptied
        {[&] { range.setEnd(0, false); }, 0, false, {0, 60}},
    };
    for (const auto& [action, end, isRunning, shown] : rows) {
        action();
        range.setEnd(end, isRunning);
        EXPECT_NEAR(range.from(), shown.first, 1e-9) << end;
        EXPECT_NEAR(range.to(), shown.second, 1e-9) << end;
    }
}

} // namespace
} // namespace zint
