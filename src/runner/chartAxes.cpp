#include "runner/chartAxes.h"

#include "catalogue/conversion.h"
#include "shared/module1.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

namespace zint {
namespace {

const DesignEntry& entryOf(const Design& design, std::size_t event) { return design.events[event]; }

/// A short text for a limit of a scale.
std::string numberText(double number)
{
    constexpr int significantDigits = 6;
    std::array<char, 32> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                                      std::chars_format::general, significantDigits);
    return {buffer.data(), result.ptr};
}

/// @param tenths of a second since the first start of polling
std::string timeText(std::int64_t tenths, bool showTenths)
{
    std::string text = durationText(tenths / 10);
    if (showTenths)
        text += '.' + std::to_string(tenths % 10);
    return text;
}

} // namespace

ChartScale roundScale(double lowest, double highest)
{
    constexpr double fewestSteps = 4;
    if (!(lowest < highest)) { // one value: room on both sides
        const double room = lowest == 0 ? 1 : std::abs(lowest) * 0.1;
        if (lowest != 0)
            lowest -= room;
        highest += room;
    }
    const double atMost = (highest - lowest) / fewestSteps;
    const double power = std::pow(10.0, std::floor(std::log10(atMost)));
    const double digit = atMost / power;
    const double step = (digit >= 5 ? 5.0 : digit >= 2 ? 2.0 : 1.0) * power;
    const double first = std::floor(lowest / step);
    const double last = std::ceil(highest / step);
    return {.lowest = first * step, .highest = last * step, .steps = static_cast<int>(last - first)};
}

std::string axisUnit(const Design& design, std::size_t event)
{
    const std::string_view unit = unitText(entryOf(design, event).conversion);
    const std::size_t begin = unit.find_first_not_of(' ');
    return begin == std::string_view::npos ? std::string() : std::string(unit.substr(begin));
}

std::vector<ChartAxis> axesOf(const Design& design, std::span<const std::size_t> events)
{
    std::vector<ChartAxis> axes;
    for (const std::size_t event : events) {
        const std::string unit = axisUnit(design, event);
        if (std::ranges::find(axes, unit, &ChartAxis::unit) != axes.end())
            continue;
        constexpr std::array sides = {ChartAxis::Side::left, ChartAxis::Side::right};
        axes.push_back({.unit = unit,
                        .side = axes.size() < sides.size() ? sides.at(axes.size()) : ChartAxis::Side::none});
    }
    return axes;
}

ChartScale scaleOf(std::span<const std::vector<ChartPoint>> lines)
{
    double lowest = std::numeric_limits<double>::infinity();
    double highest = -lowest;
    for (const std::vector<ChartPoint>& line : lines) {
        for (const ChartPoint& point : line) {
            lowest = std::min(lowest, point.value);
            highest = std::max(highest, point.value);
        }
    }
    if (lowest > highest)
        return {};
    return roundScale(lowest, highest);
}

std::string eventName(const Design& design, std::size_t event)
{
    const DesignEntry& entry = entryOf(design, event);
    return entry.description.empty() ? entry.code : entry.description;
}

std::string lineName(const Design& design, std::size_t event, const ChartAxis& axis, const ChartScale& scale)
{
    std::string note = axis.unit;
    if (axis.side == ChartAxis::Side::none)
        note += (note.empty() ? "" : ", ") + numberText(scale.lowest) + ".." + numberText(scale.highest);
    std::string name = eventName(design, event);
    return note.empty() ? name : name + " (" + note + ')';
}

std::vector<TimeMark> timeMarks(double from, double to, int most)
{
    constexpr std::array<std::int64_t, 19> steps = {1,     2,     5,     10,     20,    50,   100,
                                                    150,   300,   600,   1200,   3000,  6000, 9000,
                                                    18000, 36000, 72000, 108000, 216000}; // tenths
    constexpr double tenths = 10;
    const auto isWideEnough = [&](double step) { return (to - from) * tenths / step < most; };
    std::int64_t step = steps.front();
    for (std::size_t i = 1; i < steps.size() && !isWideEnough(static_cast<double>(step)); ++i)
        step = steps.at(i);
    while (!isWideEnough(static_cast<double>(step)))
        step *= 2;

    std::vector<TimeMark> marks;
    const auto width = static_cast<double>(step);
    for (auto i = static_cast<std::int64_t>(std::ceil(from * tenths / width));; ++i) {
        const std::int64_t time = i * step;
        if (static_cast<double>(time) > to * tenths)
            return marks;
        marks.push_back({.time = static_cast<double>(time) / tenths, .text = timeText(time, step % 10 != 0)});
    }
}

} // namespace zint
