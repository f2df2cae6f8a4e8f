#pragma once

#include "vehicle/busFrames.h"
#include "vehicle/bytes.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <vector>

namespace zint {

/// A message of several frames, put together by their numbers in whatever order they come.
class SegmentedMessage {
public:
    /// @param length of the message; nothing where it was not told: the message stays incomplete
    SegmentedMessage(std::optional<std::size_t> length, Bytes first);

    bool beginsLike(const Frame& first) const
    {
        return length_ == first.length && parts_.front() == first.data;
    }
    bool isComplete() const;

    /// Whether the number's place is in the message and free.
    bool hasPlaceFor(int number) const;

    /// Takes a part into its place. @return false when another one is there already, or there is no such
    /// place
    bool take(int number, const Bytes& data);

    /// Takes a part that has come before the message began: into the first free place for its number.
    void fillGap(int number, const Bytes& data);

    bool operator==(const SegmentedMessage&) const = default;

    /// What there is up to the first gap, without padding.
    Bytes bytes() const;

private:
    std::size_t placeOf(int number) const;
    std::size_t lastPlace() const;

    std::optional<std::size_t> length_;
    std::vector<Bytes> parts_; ///< empty: has not come yet
    std::size_t next_ = 1;     ///< the place behind the last one that was filled
};

/// A message out of a reply's frames.
struct JoinedMessage {
    std::uint32_t unit = 0;
    Bytes bytes;
    bool isIncomplete = false;
    bool isOneLine = true;
};

/// Puts the frames of a reply together.
class MessageJoiner {
public:
    /// @param hasHeaders the frames tell their units. Without, a part that could belong to two different
    /// messages is nobody's, and they end before it
    explicit MessageJoiner(bool hasHeaders) : hasHeaders_(hasHeaders) {}

    void add(const Frame& frame);

    /// In the order in which they began. Behind them, one without bytes for parts of which the
    /// beginning is missing.
    std::vector<JoinedMessage> takeMessages();

private:
    struct Entry {
        std::uint32_t unit = 0;
        Bytes bytes; ///< of a single frame
        bool isDamaged = false;
        std::optional<SegmentedMessage> segments;
    };
    struct Unit {
        std::optional<std::size_t> latest; ///< its last message of several frames
        std::vector<Frame> early;          ///< parts that no message has a place for yet
    };

    void begin(std::uint32_t unit, std::optional<std::size_t> length, const Bytes& data);
    void beginOfUnit(const Frame& first);
    void fillGaps(Unit& unit);
    void addToUnit(const Frame& frame);
    bool givenToLatest(const Unit& unit, const Frame& frame);
    void addPlain(const Frame& frame);
    bool areTakersAlike(int number) const;
    void beginPlain(const Bytes& data);

    bool hasHeaders_;
    std::vector<Entry> entries_;
    std::map<std::uint32_t, Unit> units_;
    std::deque<std::size_t> lengths_; ///< told, but nothing has followed yet
    std::deque<std::size_t> open_;    ///< without headers: the messages that take parts
    std::vector<Frame> early_;        ///< without headers: the parts in front of the first message
    bool hasBegun_ = false;
};

} // namespace zint
