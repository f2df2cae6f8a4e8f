#include "runner/chartAxes.h"
#include "runner/chartData.h"
#include "runner/chartRange.h"
#include "support/designOf.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <tuple>

namespace zint {

void PrintTo(const ChartPoint& point, std::ostream* stream) { *stream << point.time << ": " << point.value; }

namespace {

constexpr std::int32_t celsius = 3;
constexpr std::int32_t rpm = 5;
constexpr std::int32_t mph = 7;
constexpr std::int32_t undefined = 13;
constexpr std::int32_t shortTrim = 16; // reads the low byte only, so that values don't follow the raw ones
constexpr std::int32_t hex = 20;
constexpr std::int32_t fuelStatus = 21;

using Points = std::vector<ChartPoint>;

struct ChartDataTest : testing::Test {
    Design design;
    SampleStore store;
    std::optional<ChartData> data;

    void begin(std::initializer_list<std::int32_t> conversions)
    {
        std::vector<DesignEntry> events;
        for (const std::int32_t conversion : conversions)
            events.push_back({.code = "01" + std::to_string(10 + events.size()), .conversion = conversion});
        design = designOf(events);
        store.reset(design);
        data.emplace(design, store);
    }

    void add(std::initializer_list<std::int32_t> times, std::int32_t value, std::size_t event = 0)
    {
        for (const std::int32_t time : times)
            store.add(event, value, time);
    }
};

TEST_F(ChartDataTest, SpreadsTheSamplesOfASecondAndShowsThemInTheirUnit)
{
    begin({celsius, rpm});
    for (const std::int32_t value : {40, 50, 60, 70})
        store.add(0, value, 3);
    store.add(1, 8000, 3);
    store.add(0, 80, 4);
    store.add(0, 90, 4); // this second is not over: its samples come as fast as those before
    EXPECT_EQ(data->points(0, 0, 10, 1000),
              (Points{{3, 0}, {3.25, 10}, {3.5, 20}, {3.75, 30}, {4, 40}, {4.25, 50}}));
    EXPECT_EQ(data->end(), 4.25);
    EXPECT_EQ(data->points(1, 0, 10, 1000), (Points{{3, 2000}}));

    store.add(0, 95, 5);
    EXPECT_EQ(data->points(0, 4, 10, 1000), (Points{{3.75, 30}, {4, 40}, {4.5, 50}, {5, 55}}));
}

TEST_F(ChartDataTest, GoesToTheNextPointsOutsideAndLeavesOutWhatIsNoNumber)
{
    begin({1, undefined, fuelStatus, hex, 99});
    constexpr std::int32_t tooLarge = 300000; // for hundredths of a percent
    for (std::int32_t time = 0; const std::int32_t value : {tooLarge, 51, tooLarge, 102, tooLarge, 255})
        store.add(0, value, time += 10);
    EXPECT_EQ(data->points(0, 45, 55, 100), (Points{{40, 40}, {60, 100}}));
    EXPECT_EQ(data->points(0, 0, 5, 100), (Points{{20, 20}}));
    for (const auto& [from, to, pixels] : {std::tuple{70, 80, 100}, {5, 5, 100}, {0, 5, 0}})
        EXPECT_TRUE(data->points(0, from, to, pixels).empty());
    const std::array hasNumbers = {true, false, false, true, false};
    for (std::size_t event = 0; event < hasNumbers.size(); ++event)
        EXPECT_EQ(data->hasNumbers(event), hasNumbers.at(event)) << event;
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
    const auto times = [this](std::size_t event) {
        const Points line = data->points(event, 0, 1000, 1000);
        std::string found;
        for (const auto piece : data->pieces(line)) {
            for (const ChartPoint& point : piece)
                found += std::to_string(std::lround(point.time)) + " ";
            found += "| ";
        }
        return found;
    };
    data->startRun();
    add({1, 2, 300}, 50); // a slow reply is no stop
    data->startRun();
    EXPECT_EQ(times(0), "1 2 300 | ");
    data->startRun(); // nothing came since the last start
    add({400}, 50, 1);
    add({401, 402}, 50);
    EXPECT_EQ(times(0) + times(1), "1 2 300 | 401 402 | 400 | ");
    store.reset(design);
    add({0, 1, 2, 3, 4, 5, 6, 7}, 50);
    EXPECT_EQ(times(0), "0 1 2 3 4 5 6 7 | ");
}

TEST_F(ChartDataTest, KeepsEveryPeakWithinFourPointsAColumn)
{
    begin({shortTrim});
    std::mt19937 random(1);
    for (std::int32_t i = 0; i < 2000; ++i)
        store.add(0, static_cast<std::int32_t>(random() % 256), i / 7);
    const auto columnsOf = [](const Points& line, double width) { // lowest and highest value
        std::map<double, std::pair<double, double>> columns;
        for (const auto& [time, value] : line) {
            auto& column = columns.try_emplace(std::floor(time / width), value, value).first->second;
            column = {std::min(column.first, value), std::max(column.second, value)};
        }
        return columns;
    };
    const Points all = data->points(0, -1, 300, 1 << 30); // each in its own column
    EXPECT_EQ(all.size(), 2000U);
    for (const int pixels : {1, 7, 100}) {
        const Points shown = data->points(0, 0, 286, pixels);
        const auto columns = columnsOf(all, 286.0 / pixels);
        EXPECT_EQ(columnsOf(shown, 286.0 / pixels), columns) << pixels;
        EXPECT_LE(shown.size(), 4 * columns.size());
    }
}

TEST_F(ChartDataTest, GivesTwoUnitsAnAxisAndTellsTheLimitsOfTheRest)
{
    begin({rpm, mph, celsius, hex, 1, 2});
    std::string names;
    for (const ChartAxis& axis : axesOf(design, std::array<std::size_t, 6>{0, 1, 2, 3, 4, 5}))
        names += lineName(design, 0, axis, {.lowest = -40, .highest = 120.5}) + "|";
    EXPECT_EQ(names, "0110 (rpm)|0110 (mph)|0110 (C, -40..120.5)|0110 (-40..120.5)|0110 (%, -40..120.5)|")
        << "both kinds of percent have one";
}

TEST(ChartAxes, AreScaledToRoundLimits)
{
    EXPECT_EQ(roundScale(740, 6890), (ChartScale{0, 7000, 7}));
    EXPECT_EQ(roundScale(-12, 9), (ChartScale{-15, 10, 5}));
    EXPECT_EQ(roundScale(8000, 8000), (ChartScale{7200, 8800, 8}));
    EXPECT_EQ(scaleOf(std::array{Points{{0, 10}, {1, 90}}, Points{{0, 3}}, Points{}}), roundScale(3, 90));
    EXPECT_EQ(scaleOf({}), ChartScale());

    EXPECT_EQ(timeMarks(588, 611, 3), (std::vector<TimeMark>{{590, "9:50"}, {600, "10:00"}, {610, "10:10"}}));
    EXPECT_EQ(timeMarks(3599.9, 3600.1, 6),
              (std::vector<TimeMark>{{3599.9, "59:59.9"}, {3600, "1:00:00.0"}, {3600.1, "1:00:00.1"}}));
    EXPECT_LE(timeMarks(12, 2e9, 6).size(), 6U);
}

TEST(ChartRange, FollowsARunShowsItAllAfterwardsAndStaysWhereTheUserWent)
{
    ChartRange range;
    const auto shows = [&range](double end, bool isRunning, double from, double to) {
        range.setEnd(end, isRunning);
        EXPECT_NEAR(range.from(), from, 1e-9) << end;
        EXPECT_NEAR(range.to(), to, 1e-9) << end;
    };
    range.setWindow(60);
    shows(1, true, 0, 10); // the window grows with the run
    range.pan(-1);
    shows(15, true, 0, 15);
    shows(100, true, 40, 100);
    range.zoom(0.5, 50); // the newest moment stays in sight
    shows(110, true, 80, 110);
    range.pan(-50);
    shows(200, true, 30, 60);
    range.pan(-100);
    shows(200, true, 0, 30);
    range.pan(500); // back to the run
    shows(210, true, 180, 210);
    shows(220, false, 0, 220);
    range.zoom(0.5, 55);
    shows(220, false, 27.5, 137.5);
    range.zoom(1e9, 100);
    shows(220, false, 0, 220);
    shows(230, true, 170, 230); // polling goes on
    range.showAll();
    shows(240, true, 0, 240);
    range.setEnd(0, false); // emptied
    shows(30, false, 0, 30);
}

} // namespace
} // namespace zint
