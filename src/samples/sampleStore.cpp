#include "samples/sampleStore.h"

#include "catalogue/conversion.h"
#include "catalogue/eventValue.h"

#include <algorithm>
#include <limits>
#include <new>
#include <utility>

namespace zint {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

/// Above all that an event of this conversion usually sends, for its minimum to begin with.
double startingMinimum(std::int32_t conversion)
{
    if (!keepsRawValues(conversion))
        return infinity;
    switch (conversion) {
    case conversionCode::rpm:
    case conversionCode::airFlow:
        return 65536;
    case conversionCode::displayHex:
        return -1;
    default:
        return 255;
    }
}

} // namespace

void SampleStore::reset(const Design& design)
{
    blocks_.clear();
    size_ = 0;
    start_ = 0;
    ++generation_;
    events_.clear();
    for (const DesignEntry& event : design.events)
        events_.push_back({.maximum = keepsRawValues(event.conversion) ? 0 : -infinity,
                           .minimum = startingMinimum(event.conversion)});
}

void SampleStore::take(SampleStore other)
{
    other.generation_ = generation_ + 1;
    other.limit_ = limit_;
    *this = std::move(other);
}

void SampleStore::addSaved(std::size_t event, double value, SampleTime time)
{
    if (size_ > 0 && std::int64_t{time.seconds} - (*this)[size_ - 1].time > longestSilence)
        startRun();
    add(event, value, time);
}

void SampleStore::add(std::size_t event, double value, SampleTime time)
{
    EventTotals& totals = events_.at(event);
    const bool isFirst = totals.lastSample == EventTotals::none;
    makeRoom(isFirst ? 2 : 1);
    const auto append = [this](const SampleRecord& record) {
        const auto index = static_cast<std::int32_t>(size_++);
        at(index) = record;
        return index;
    };
    if (isFirst)
        totals.header = append({.value = static_cast<double>(event + 1),
                                .link = SampleRecord::headerLink,
                                .event = static_cast<std::uint8_t>(event)});
    const bool isFirstOfRun = isFirst || std::cmp_less(totals.lastSample, start_);
    const std::int32_t sample = append({.value = value,
                                        .time = time.seconds,
                                        .milliseconds = time.milliseconds,
                                        .event = static_cast<std::uint8_t>(event),
                                        .isFirst = isFirstOfRun});
    if (!isFirst)
        at(totals.lastSample).link = sample;
    totals.lastSample = sample;
    totals.current = value;
    ++totals.sampleCount;
    totals.maximum = std::max(totals.maximum, value);
    totals.minimum = std::min(totals.minimum, value);
}

void SampleStore::addError(std::size_t event)
{
    EventTotals& totals = events_.at(event);
    ++totals.errorCount;
    totals.errorFlag = true;
}

SampleRecord& SampleStore::at(std::int32_t index)
{
    const auto place = static_cast<std::size_t>(index);
    return (*blocks_[place / blockSize])[place % blockSize];
}

void SampleStore::makeRoom(std::size_t records)
{
    if (size_ + records > limit_)
        throw std::bad_alloc();
    while (size_ + records > blocks_.size() * blockSize)
        blocks_.push_back(std::make_unique<Block>());
}

} // namespace zint
