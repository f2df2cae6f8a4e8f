#include "runner/chartData.h"

#include "catalogue/conversion.h"
#include "shared/runTimeError.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace zint {
namespace {

std::optional<double> numberOf(std::int32_t conversion, std::int32_t raw)
{
    try {
        return convertedNumber(conversion, raw);
    } catch (const RunTimeError&) { // too large for its unit
        return std::nullopt;
    }
}

/// Adds the points of samples that came in one second.
/// @param perSecond at least the number of samples
void addPoints(std::vector<ChartPoint>& points, std::span<const std::int32_t> raw, std::int32_t conversion,
               double time, std::int32_t perSecond)
{
    for (std::size_t i = 0; i < raw.size(); ++i) {
        if (const std::optional<double> number = numberOf(conversion, raw[i]))
            points.push_back({.time = time + static_cast<double>(i) / perSecond, .value = *number});
    }
}

/// Adds what a column of pixels shows of its points: the first, the lowest, the highest and the last.
void addColumn(std::vector<ChartPoint>& shown, std::span<const ChartPoint> column)
{
    const auto lowest = std::ranges::min_element(column, {}, &ChartPoint::value);
    const auto highest = std::ranges::max_element(column, {}, &ChartPoint::value);
    const std::array chosen = {column.begin(), std::min(lowest, highest), std::max(lowest, highest),
                               column.end() - 1};
    for (std::size_t i = 0; i < chosen.size(); ++i) {
        if (i == 0 || chosen.at(i) != chosen.at(i - 1))
            shown.push_back(*chosen.at(i));
    }
}

} // namespace

ChartData::ChartData(const Design& design, const SampleStore& samples) : samples_(samples)
{
    for (const DesignEntry& event : design.events)
        lines_.push_back({.conversion = event.conversion});
}

/// Begins anew when the store was emptied.
void ChartData::follow()
{
    if (generation_ == samples_.generation())
        return;
    generation_ = samples_.generation();
    for (Line& line : lines_)
        line = {.conversion = line.conversion};
    starts_.clear();
}

void ChartData::startRun()
{
    follow();
    starts_.push_back(samples_.size());
}

bool ChartData::hasNumbers(std::size_t event) const
{
    return numberOf(lines_.at(event).conversion, 0).has_value();
}

/// Adds what the store has got since the last time. The points of the newest second are made anew: their
/// places change as more come.
void ChartData::extend(Line& line, std::size_t event) const
{
    if (line.record == EventTotals::none) {
        const std::int32_t header = samples_.events()[event].header;
        if (header == EventTotals::none)
            return;
        line.record = header + 1;
        line.time = std::max(0, samples_[line.record].time);
    }
    line.points.resize(line.finished);
    std::vector<std::int32_t> raw; // of one second; a clock that is set back begins none
    for (;;) {
        std::int32_t next = line.record;
        for (raw.clear(); next != 0 && samples_[next].time <= line.time; next = samples_[next].link)
            raw.push_back(samples_[next].value);
        const auto count = static_cast<std::int32_t>(raw.size());
        const bool isOver = next != 0;
        const std::int32_t perSecond = isOver ? count : std::max(count, line.perSecond);
        addPoints(line.points, raw, line.conversion, line.time, perSecond);
        if (!isOver) {
            line.end = line.time + (count - 1.0) / perSecond;
            return;
        }
        line.finished = line.points.size();
        line.record = next;
        line.time = samples_[next].time;
        line.perSecond = count;
    }
}

std::vector<ChartPoint> ChartData::points(std::size_t event, double from, double to, int pixels)
{
    follow();
    if (!(from < to) || pixels < 1 || event >= samples_.events().size())
        return {};
    Line& line = lines_.at(event);
    extend(line, event);
    const std::span<const ChartPoint> all = line.points;
    auto next = std::ranges::lower_bound(all, from, {}, &ChartPoint::time);
    const auto end = std::ranges::upper_bound(all, to, {}, &ChartPoint::time);
    std::vector<ChartPoint> shown;
    if (next == all.end())
        return shown;
    if (next != all.begin())
        shown.push_back(*(next - 1));
    const auto columnOf = [width = (to - from) / pixels](const ChartPoint& point) {
        return std::floor(point.time / width);
    };
    while (next != end) {
        const auto columnEnd = std::ranges::upper_bound(next, end, columnOf(*next), {}, columnOf);
        addColumn(shown, {next, columnEnd});
        next = columnEnd;
    }
    if (end != all.end())
        shown.push_back(*end);
    return shown;
}

std::vector<std::span<const ChartPoint>> ChartData::pieces(std::span<const ChartPoint> line) const
{
    std::vector<std::span<const ChartPoint>> found;
    for (std::size_t start : starts_) {
        while (start < samples_.size() && samples_[start].isHeader())
            ++start;
        if (start >= samples_.size())
            break;
        const auto next = std::ranges::lower_bound(line, samples_[start].time, {}, &ChartPoint::time);
        const auto count = static_cast<std::size_t>(next - line.begin());
        if (count > 0)
            found.push_back(line.first(count));
        line = line.subspan(count);
    }
    if (!line.empty())
        found.push_back(line);
    return found;
}

double ChartData::end()
{
    follow();
    double end = samples_.isEmpty() ? 0 : std::max(0, samples_[samples_.size() - 1].time);
    for (const Line& line : lines_)
        end = std::max(end, line.end);
    return end;
}

} // namespace zint
