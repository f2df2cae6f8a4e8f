#include "vehicle/messageJoiner.h"

#include <algorithm>
#include <utility>

namespace zint {
namespace {

constexpr std::size_t firstPartLength = 6;
constexpr std::size_t partLength = 7;
constexpr std::size_t longestMessage = 4095;
constexpr std::size_t numbers = 16;
constexpr std::size_t mostOpen = 16; // far more units than ever answer at once

} // namespace

SegmentedMessage::SegmentedMessage(std::optional<std::size_t> length, Bytes first) : length_(length)
{
    parts_.push_back(std::move(first));
}

std::size_t SegmentedMessage::lastPlace() const
{
    const std::size_t length = length_.value_or(longestMessage);
    return length <= firstPartLength ? 0 : (length - firstPartLength + partLength - 1) / partLength;
}

/// Numbers come again after sixteen parts: of the places for one, that nearest to the next free one.
std::size_t SegmentedMessage::placeOf(int number) const
{
    const auto wanted = static_cast<std::size_t>(number);
    if (lastPlace() <= numbers)
        return wanted == 0 ? numbers : wanted;
    const std::size_t ahead = (wanted + numbers - next_ % numbers) % numbers;
    const bool isBehind = ahead >= numbers / 2 && next_ + ahead > numbers;
    return isBehind ? next_ + ahead - numbers : next_ + ahead;
}

bool SegmentedMessage::hasPlaceFor(int number) const
{
    const std::size_t place = placeOf(number);
    return place <= lastPlace() && (length_ || place == next_) &&
           (place >= parts_.size() || parts_[place].empty());
}

bool SegmentedMessage::take(int number, const Bytes& data)
{
    const std::size_t place = placeOf(number);
    if (!hasPlaceFor(number))
        return place < parts_.size() && parts_[place] == data;
    parts_.resize(std::max(parts_.size(), place + 1));
    parts_[place] = data;
    next_ = place + 1;
    return true;
}

void SegmentedMessage::fillGap(int number, const Bytes& data)
{
    parts_.resize(std::max(parts_.size(), lastPlace() + 1));
    for (std::size_t place = number == 0 ? numbers : static_cast<std::size_t>(number); place < parts_.size();
         place += numbers) {
        if (parts_[place].empty()) {
            parts_[place] = data;
            return;
        }
    }
}

Bytes SegmentedMessage::bytes() const
{
    Bytes bytes;
    for (std::size_t i = 0;
         i < parts_.size() && bytes.size() == (i == 0 ? 0 : firstPartLength + (i - 1) * partLength); ++i)
        bytes.insert(bytes.end(), parts_[i].begin(), parts_[i].end());
    bytes.resize(std::min(bytes.size(), length_.value_or(longestMessage)));
    return bytes;
}

bool SegmentedMessage::isComplete() const { return length_ && bytes().size() == *length_; }

void MessageJoiner::add(const Frame& frame)
{
    if (frame.kind == FrameKind::length)
        lengths_.push_back(frame.length);
    else if (frame.kind == FrameKind::whole)
        entries_.push_back(
            {.unit = frame.unit, .bytes = frame.data, .isDamaged = frame.isDamaged, .segments = {}});
    else if (hasHeaders_)
        addToUnit(frame);
    else
        addPlain(frame);
}

void MessageJoiner::begin(std::uint32_t unit, std::optional<std::size_t> length, const Bytes& data)
{
    entries_.push_back({.unit = unit, .bytes = {}, .segments = SegmentedMessage(length, data)});
}

bool MessageJoiner::givenToLatest(const Unit& unit, const Frame& frame)
{
    return unit.latest && entries_[*unit.latest].segments->take(frame.number, frame.data);
}

void MessageJoiner::addToUnit(const Frame& frame)
{
    if (frame.kind == FrameKind::first)
        beginOfUnit(frame);
    else if (Unit& unit = units_[frame.unit]; !givenToLatest(unit, frame))
        unit.early.push_back(frame);
}

void MessageJoiner::beginOfUnit(const Frame& first)
{
    Unit& unit = units_[first.unit];
    if (unit.latest && entries_[*unit.latest].segments->beginsLike(first))
        return;
    fillGaps(unit);
    unit.latest = entries_.size();
    begin(first.unit, first.length, first.data);
}

/// Parts that came behind the first one have their places already: an early part may be left over from the
/// answer to another request.
void MessageJoiner::fillGaps(Unit& unit)
{
    if (!unit.latest || unit.early.empty())
        return;
    for (const Frame& frame : unit.early)
        entries_[*unit.latest].segments->fillGap(frame.number, frame.data);
    unit.early.clear();
}

/// Number 0 goes on with a message that has come to it, unless the length of another one was told.
void MessageJoiner::addPlain(const Frame& frame)
{
    if (frame.kind == FrameKind::first) {
        lengths_.push_back(frame.length);
        return beginPlain(frame.data);
    }
    const auto takes = [&](std::size_t i) { return entries_[i].segments->hasPlaceFor(frame.number); };
    const auto takers = std::ranges::count_if(open_, takes);
    if (frame.number == 0 && (!lengths_.empty() || takers == 0))
        beginPlain(frame.data);
    else if (takers == 1 || (takers > 1 && areTakersAlike(frame.number)))
        entries_[*std::ranges::find_if(open_, takes)].segments->take(frame.number, frame.data);
    else if (!hasBegun_)
        early_.push_back(frame);
    else
        std::erase_if(open_, takes);
}

/// Whether the open messages that could take a part are the same up to it: two units that say the same.
bool MessageJoiner::areTakersAlike(int number) const
{
    std::optional<SegmentedMessage> first;
    return std::ranges::all_of(open_, [&](std::size_t i) {
        const SegmentedMessage& message = *entries_[i].segments;
        if (!message.hasPlaceFor(number))
            return true;
        first = first ? first : message;
        return message == *first;
    });
}

void MessageJoiner::beginPlain(const Bytes& data)
{
    open_.push_back(entries_.size());
    if (open_.size() > mostOpen)
        open_.pop_front();
    begin(0, lengths_.empty() ? std::nullopt : std::optional(lengths_.front()), data);
    if (!lengths_.empty())
        lengths_.pop_front();
    hasBegun_ = true;
    for (const Frame& frame : std::exchange(early_, {}))
        addPlain(frame);
}

std::vector<JoinedMessage> MessageJoiner::takeMessages()
{
    std::vector<JoinedMessage> messages;
    for (auto& [id, unit] : units_)
        fillGaps(unit);
    messages.reserve(entries_.size());
    for (Entry& entry : entries_) {
        if (entry.segments)
            messages.push_back({entry.unit, entry.segments->bytes(), !entry.segments->isComplete(), false});
        else
            messages.push_back({entry.unit, std::move(entry.bytes), entry.isDamaged, true});
    }
    for (const auto& [id, unit] : units_) {
        if (!unit.early.empty())
            messages.push_back({id, {}, true, false});
    }
    if (!early_.empty())
        messages.push_back({0, {}, true, false});
    return messages;
}

} // namespace zint
