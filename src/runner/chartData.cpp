#include "runner/chartData.h"

#include "catalogue/conversion.h"
#include "shared/runTimeError.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace zint {
namespace {

/// Small enough that most blocks fit a column when all of a long run is shown, large enough that the blocks
/// take a fraction of what the samples take.
constexpr std::int32_t samplesPerBlock = 16;

std::optional<double> numberOf(std::int32_t conversion, std::int32_t raw)
{
    try {
        return convertedNumber(conversion, raw);
    } catch (const RunTimeError&) { // too large for its unit
        return std::nullopt;
    }
}

/// Calls `take` with each point of successive samples that came in one second.
/// @param perSecond at least the number of samples
template <typename Take>
void forEachPoint(const SampleStore& samples, std::int32_t record, std::int32_t time, std::int32_t count,
                  std::int32_t perSecond, std::int32_t conversion, Take take)
{
    for (std::int32_t i = 0; i < count; ++i) {
        const SampleRecord& sample = samples[static_cast<std::size_t>(record)];
        if (const std::optional<double> number = numberOf(conversion, sample.value))
            take(ChartPoint{.time = time + static_cast<double>(i) / perSecond, .value = *number});
        record = sample.link;
    }
}

/// Makes a line of points and whole columns that come in the order of time.
class LineMaker {
public:
    LineMaker(double from, double to, int pixels) : from_(from), to_(to), width_((to - from) / pixels) {}

    /// Whether nothing that comes later is needed.
    bool isDone() const { return isDone_; }

    void add(const ChartPoint& point)
    {
        if (point.time < from_) {
            before_ = point;
        } else if (point.time > to_) {
            flush();
            append(point);
            isDone_ = true;
        } else {
            enter(columnOf(point));
            column_.add(point);
        }
    }

    /// Whether a stretch of the line can be added as a whole.
    bool takes(const ChartColumn& stretch) const
    {
        return stretch.last.time < from_ || stretch.first.time > to_ ||
               (stretch.first.time >= from_ && stretch.last.time <= to_ &&
                columnOf(stretch.first) == columnOf(stretch.last));
    }

    void add(const ChartColumn& stretch)
    {
        if (stretch.last.time < from_) {
            before_ = stretch.last;
        } else if (stretch.first.time > to_) {
            add(stretch.first);
        } else {
            enter(columnOf(stretch.first));
            column_.add(stretch);
        }
    }

    std::vector<ChartPoint> finish()
    {
        flush();
        return std::move(points_);
    }

private:
    double columnOf(const ChartPoint& point) const { return std::floor(point.time / width_); }

    void enter(double column)
    {
        if (column_.isEmpty || column == number_) {
            number_ = column;
            return;
        }
        flush();
        number_ = column;
    }

    void flush()
    {
        if (column_.isEmpty)
            return;
        const bool lowestIsEarlier = column_.lowest.time < column_.highest.time;
        append(column_.first);
        append(lowestIsEarlier ? column_.lowest : column_.highest);
        append(lowestIsEarlier ? column_.highest : column_.lowest);
        append(column_.last);
        column_ = {};
    }

    void append(const ChartPoint& point)
    {
        if (before_)
            points_.push_back(*before_);
        before_.reset();
        if (points_.empty() || points_.back().time < point.time)
            points_.push_back(point);
    }

    double from_;
    double to_;
    double width_; ///< of a column, in seconds
    std::optional<ChartPoint> before_;
    ChartColumn column_;
    double number_ = 0; ///< of the column
    std::vector<ChartPoint> points_;
    bool isDone_ = false;
};

} // namespace

void ChartColumn::add(const ChartPoint& point)
{
    if (isEmpty)
        *this = {.first = point, .lowest = point, .highest = point, .last = point, .isEmpty = false};
    if (point.value < lowest.value)
        lowest = point;
    if (point.value > highest.value)
        highest = point;
    last = point;
}

void ChartColumn::add(const ChartColumn& laterPoints)
{
    if (laterPoints.isEmpty)
        return;
    if (isEmpty) {
        *this = laterPoints;
        return;
    }
    if (laterPoints.lowest.value < lowest.value)
        lowest = laterPoints.lowest;
    if (laterPoints.highest.value > highest.value)
        highest = laterPoints.highest;
    last = laterPoints.last;
}

void ChartData::setDesign(const Design& design)
{
    lines_.clear();
    starts_.clear();
    size_ = 0;
    for (const DesignEntry& event : design.events())
        lines_.push_back({.conversion = event.conversion});
}

void ChartData::startRun(const SampleStore& samples)
{
    notice(samples);
    starts_.push_back(samples.size());
}

bool ChartData::hasNumbers(std::size_t event) const
{
    return numberOf(lines_.at(event).conversion, 0).has_value();
}

bool ChartData::notice(const SampleStore& samples)
{
    const bool isEmptied = samples.size() < size_;
    if (isEmptied) {
        for (Line& line : lines_)
            line = {.conversion = line.conversion};
        starts_.clear();
    }
    size_ = samples.size();
    return isEmptied;
}

/// The time of a second is never before that of the one before it, even if the clock was set back.
ChartData::Second ChartData::readSecond(const SampleStore& samples, std::int32_t record, std::int32_t time)
{
    Second second{.record = record, .time = time, .samples = 1};
    while (true) {
        record = samples[static_cast<std::size_t>(record)].link;
        if (record == 0)
            return second;
        const std::int32_t next = std::max(time, samples[static_cast<std::size_t>(record)].time);
        if (next > time) {
            second.nextRecord = record;
            second.nextTime = next;
            return second;
        }
        ++second.samples;
    }
}

void ChartData::extend(Line& line, const SampleStore& samples, std::size_t event)
{
    const std::int32_t header = samples.events()[event].header;
    if (line.header != header)
        line = {.conversion = line.conversion, .header = header};
    if (header == EventTotals::none)
        return;
    if (line.newest.samples == 0) {
        line.newest.record = header + 1;
        line.newest.time = std::max(0, samples[static_cast<std::size_t>(header) + 1].time);
    }
    while (true) {
        const Second second = readSecond(samples, line.newest.record, line.newest.time);
        if (second.nextRecord == 0) {
            line.newest = second;
            return;
        }
        if (line.growing.samples == 0) {
            line.growing.record = second.record;
            line.growing.time = second.time;
        }
        forEachPoint(samples, second.record, second.time, second.samples, second.samples, line.conversion,
                     [&line](const ChartPoint& point) { line.growing.points.add(point); });
        line.growing.samples += second.samples;
        line.samplesPerSecond = second.samples;
        line.newest = {.record = second.nextRecord, .time = second.nextTime};
        if (line.growing.samples >= samplesPerBlock) {
            line.blocks.push_back(line.growing);
            line.growing = {};
        }
    }
}

std::vector<ChartPoint> ChartData::points(const SampleStore& samples, std::size_t event, double from,
                                          double to, int pixels)
{
    notice(samples);
    if (!(from < to) || pixels < 1 || event >= samples.events().size())
        return {};
    Line& line = lines_.at(event);
    extend(line, samples, event);
    LineMaker maker(from, to, pixels);

    const auto addBlock = [&](const Block& block) {
        if (block.points.isEmpty)
            return;
        if (maker.takes(block.points)) {
            maker.add(block.points);
            return;
        }
        std::int32_t left = block.samples;
        Second second{.nextRecord = block.record, .nextTime = block.time};
        while (left > 0 && !maker.isDone()) {
            second = readSecond(samples, second.nextRecord, second.nextTime);
            left -= second.samples;
            forEachPoint(samples, second.record, second.time, second.samples, second.samples, line.conversion,
                         [&maker](const ChartPoint& point) {
                             if (!maker.isDone())
                                 maker.add(point);
                         });
        }
    };

    auto block = std::ranges::upper_bound(line.blocks, from, {}, &Block::time);
    while (block != line.blocks.begin()) { // begins where there is a point that the line comes from
        --block;
        if (!block->points.isEmpty && block->points.first.time < from)
            break;
    }
    for (; block != line.blocks.end() && !maker.isDone(); ++block)
        addBlock(*block);
    if (!maker.isDone())
        addBlock(line.growing);
    if (!maker.isDone()) {
        const Second& newest = line.newest;
        forEachPoint(samples, newest.record, newest.time, newest.samples,
                     std::max(newest.samples, line.samplesPerSecond), line.conversion,
                     [&maker](const ChartPoint& point) {
                         if (!maker.isDone())
                             maker.add(point);
                     });
    }
    return maker.finish();
}

std::vector<std::span<const ChartPoint>> ChartData::pieces(const SampleStore& samples,
                                                           std::span<const ChartPoint> line) const
{
    std::vector<std::span<const ChartPoint>> found;
    for (std::size_t record : starts_) {
        while (record < samples.size() && samples[record].isHeader())
            ++record;
        if (record >= samples.size())
            break;
        const auto next = std::ranges::lower_bound(line, samples[record].time, {}, &ChartPoint::time);
        const auto count = static_cast<std::size_t>(next - line.begin());
        if (count > 0)
            found.push_back(line.first(count));
        line = line.subspan(count);
    }
    if (!line.empty())
        found.push_back(line);
    return found;
}

double ChartData::end(const SampleStore& samples) const
{
    if (samples.isEmpty() || samples.size() < size_)
        return 0;
    double end = std::max(0, samples[samples.size() - 1].time);
    for (const Line& line : lines_) {
        if (line.newest.samples > 0) {
            const std::int32_t perSecond = std::max(line.newest.samples, line.samplesPerSecond);
            end = std::max(end, line.newest.time + (line.newest.samples - 1.0) / perSecond);
        }
    }
    return end;
}

} // namespace zint
