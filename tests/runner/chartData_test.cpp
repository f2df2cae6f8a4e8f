#include "runner/chartAxes.h"
#include "runner/chartData.h"
#include "runner/chartRange.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <tuple>

namespace zint {

void PrintTo(const ChartPoint& point, std::ostream* stream) { *stream << point.time << ": " << point.value; }

namespace {

enum : std::int32_t { celsius = 3, rpm = 5, mph = 7, undefined = 13, hex = 20, fuelStatus = 21 };

using Points = std::vector<ChartPoint>;

struct ChartDataTest : testing::Test {
    Design design;
    SampleStore store;
    std::optional<ChartData> data;

    void begin(std::initializer_list<std::int32_t> conversions)
    {
        design = {};
        for (const std::int32_t conversion : conversions)
            design.events.push_back({.code = "010C", .conversion = conversion});
        store.reset(design);
        data.emplace(design, store);
    }

    void add(std::initializer_list<std::int32_t> times, std::int32_t value, std::size_t event = 0)
    {
        for (const std::int32_t time : times)
            store.add(event, value, {time});
    }
};

TEST_F(ChartDataTest, SpreadsTheSamplesOfASecondAndShowsThemInTheirUnit)
{
    begin({celsius, rpm});
    for (const std::int32_t value : {40, 50, 60, 70})
        store.add(0, value, {3});
    store.add(1, 8000, {3});
    store.add(0, 80, {4});
    store.add(0, 90, {4}); // this second is not over: its samples come as fast as those before
    EXPECT_EQ(data->points(0, 0, 10, 1000),
              (Points{{3, 0}, {3.25, 10}, {3.5, 20}, {3.75, 30}, {4, 40}, {4.25, 50}}));
    EXPECT_EQ(data->end(), 4.25);
    EXPECT_EQ(data->points(1, 0, 10, 1000), (Points{{3, 2000}}));

    store.add(0, 95, {5});
    EXPECT_EQ(data->points(0, 4, 10, 1000), (Points{{3.75, 30}, {4, 40}, {4.5, 50}, {5, 55}}));
}

TEST_F(ChartDataTest, GoesToTheNextPointsOutsideAndLeavesOutWhatIsNoNumber)
{
    begin({1, 0, hex, undefined, fuelStatus, 99});
    constexpr std::int32_t tooLarge = 300000; // for hundredths of a percent
    for (std::int32_t time = 0; const std::int32_t value : {tooLarge, 51, tooLarge, 102, tooLarge, 255})
        store.add(0, value, {time += 10});
    EXPECT_EQ(data->points(0, 45, 55, 100), (Points{{40, 40}, {60, 100}}));
    EXPECT_EQ(data->points(0, 0, 5, 100), (Points{{20, 20}}));
    for (const auto& [from, to, pixels] : {std::tuple{70, 80, 100}, {5, 5, 100}, {0, 5, 0}})
        EXPECT_TRUE(data->points(0, from, to, pixels).empty());
    for (std::size_t event = 0; event < design.events.size(); ++event)
        EXPECT_EQ(data->hasNumbers(event), event < 3) << event;
}

TEST_F(ChartDataTest, FollowsAClockThatIsSetBackAndAStoreThatIsEmptied)
{
    begin({celsius});
    for (const std::int32_t time : {10, 20, 5, 21}) {
        add({time}, time);
        data->points(0, 0, 100, 100);
    }
    EXPECT_EQ(data->points(0, 0, 100, 1000), (Points{{10, -30}, {20, -20}, {20.5, -35}, {21, -19}}));

    store.reset(design);
    EXPECT_EQ(data->end(), 0);
    add({1, 2, 3, 4, 5}, 41); // more than there were
    EXPECT_EQ(data->points(0, 0, 3.5, 1000), (Points{{1, 1}, {2, 1}, {3, 1}, {4, 1}}));
    EXPECT_EQ(data->end(), 5);
}

TEST_F(ChartDataTest, BreaksALineWherePollingWasStoppedAndNowhereElse)
{
    begin({celsius, celsius});
    const auto pieces = [this](std::size_t event) {
        std::string sizes;
        for (const Points line = data->points(event, 0, 1000, 1000); const auto piece : data->pieces(line))
            sizes += std::to_string(piece.size()) + " ";
        return sizes;
    };
    data->startRun();
    add({1, 2, 300}, 50); // a slow reply is no stop
    data->startRun();
    EXPECT_EQ(pieces(0), "3 ");
    data->startRun(); // nothing came since the last start
    add({400}, 50, 1);
    add({401, 402}, 50);
    EXPECT_EQ(pieces(0) + "and " + pieces(1), "3 2 and 1 ");
    store.reset(design);
    add({0, 1, 2, 3, 4, 5, 6, 7}, 50);
    EXPECT_EQ(pieces(0), "8 ");
}

TEST_F(ChartDataTest, ShowsFirstLowestHighestAndLastOfEachColumn)
{
    begin({celsius});
    for (std::int32_t time = 10; const std::int32_t value : {7, 1, 9, 3, -2, 4, 5, 6, 8, 2, 3, 3, 4, 3})
        store.add(0, value + 40, {time++});
    const Points shown{{10, 7}, {11, 1}, {12, 9}, {14, -2}, {19, 2}, {20, 3}, {22, 4}, {23, 3}};
    EXPECT_EQ(data->points(0, 11, 31, 2), shown) << "columns begin at multiples of their width";
}

TEST_F(ChartDataTest, GivesTwoUnitsAnAxisAndTellsTheLimitsOfTheRest)
{
    begin({rpm, mph, celsius, hex, 1, 2});
    std::string names;
    for (const ChartAxis& axis : axesOf(design, std::array<std::size_t, 6>{0, 1, 2, 3, 4, 5}))
        names += lineName(design, 0, axis, {.lowest = -40, .highest = 120.5}) + "|";
    EXPECT_EQ(names, "010C (rpm)|010C (mph)|010C (C, -40..120.5)|010C (-40..120.5)|010C (%, -40..120.5)|");
}

TEST(ChartAxes, AreScaledToRoundLimits)
{
    EXPECT_EQ(roundScale(740, 6890), (ChartScale{0, 7000, 7}));
    EXPECT_EQ(roundScale(0, 9), (ChartScale{0, 10, 5}));
    EXPECT_EQ(roundScale(-12, 9), (ChartScale{-15, 10, 5}));
    EXPECT_EQ(roundScale(8000, 8000), (ChartScale{7200, 8800, 8}));
    EXPECT_EQ(scaleOf(std::array{Points{{0, 10}, {1, 90}}, Points{{0, 3}}, Points{}}), roundScale(3, 90));
    EXPECT_EQ(scaleOf({}), ChartScale());

    EXPECT_EQ(timeMarks(588, 611, 3), (std::vector<TimeMark>{{590, "9:50"}, {600, "10:00"}, {610, "10:10"}}));
    EXPECT_EQ(timeMarks(3599.5, 3600.5, 3),
              (std::vector<TimeMark>{{3599.5, "59:59.5"}, {3600, "1:00:00.0"}, {3600.5, "1:00:00.5"}}));
    EXPECT_LE(timeMarks(12, 2e9, 6).size(), 6U);
}

TEST(ChartRange, FollowsARunShowsItAllAfterwardsAndStaysWhereTheUserWent)
{
    ChartRange range;
    const std::tuple<std::function<void()>, double, bool, std::pair<double, double>> rows[] = {
        {[&] { range.setWindow(60); }, 1, true, {0, 10}}, // the window grows with the run
        {[&] { range.pan(-1); }, 15, true, {0, 15}},
        {[&] { range.zoom(2, 10); }, 100, true, {40, 100}},
        {[&] { range.zoom(0.5, 50); }, 110, true, {80, 110}}, // the newest moment stays in sight
        {[&] { range.pan(-50); }, 200, true, {30, 60}},
        {[&] { range.pan(-100); }, 200, true, {0, 30}},
        {[&] { range.pan(500); }, 210, true, {180, 210}}, // back to the run
        {[] {}, 220, false, {0, 220}},
        {[&] { range.zoom(0.5, 55); }, 220, false, {27.5, 137.5}},
        {[&] { range.zoom(1e9, 100); }, 220, false, {0, 220}},
        {[] {}, 230, true, {170, 230}}, // polling goes on
        {[&] { range.showAll(); }, 240, true, {0, 240}},
        {[] {}, 5, true, {0, 10}},                             // emptied while it is on
        {[&] { range.setEnd(0, false); }, 30, false, {0, 30}}, // emptied
    };
    for (const auto& [action, end, isRunning, shown] : rows) {
        action();
        range.setEnd(end, isRunning);
        EXPECT_EQ(std::pair(range.from(), range.to()), shown) << end;
    }
}

} // namespace
} // namespace zint
