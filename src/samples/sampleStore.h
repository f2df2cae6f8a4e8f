#pragma once

#include "catalogue/design.h"

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <span>
#include <vector>

namespace zint {

/// One record of the sample store: a sample, or the header that stands before the first sample of an event.
struct SampleRecord {
    static constexpr std::int32_t headerLink = -1;

    double value = 0;      ///< as eventValue.h has it; in a header the event's number, from 1
    std::int32_t time = 0; ///< whole seconds since the first start of polling; 0 in a header
    std::int32_t link = 0; ///< the event's next sample, 0 while there is none; headerLink in a header
    std::uint16_t milliseconds = 0; ///< of that second
    std::uint8_t event = 0;         ///< from 0
    bool isFirst = false;           ///< of its event since polling was started, see SampleStore::startRun()

    bool isHeader() const { return link == headerLink; }
    double seconds() const { return time + milliseconds / 1000.0; } ///< since the first start of polling
};

static_assert(sizeof(SampleRecord) == 24, "a run has millions of them");
static_assert(Design::maxEvents <= std::numeric_limits<std::uint8_t>::max());

/// When a sample came, since the first start of polling.
struct SampleTime {
    std::int32_t seconds = 0;
    std::uint16_t milliseconds = 0; ///< below 1000
};

/// When one of several samples of a second came of which no more is known: they are spread evenly over it.
/// @param place of the sample among them, from 0
inline SampleTime timeWithin(std::int32_t second, std::size_t place, std::size_t samples)
{
    constexpr std::size_t milliseconds = 1000;
    return {second, static_cast<std::uint16_t>(place * milliseconds / samples)};
}

/// What is known of one event of the design.
struct EventTotals {
    static constexpr std::int32_t none = -1;

    std::int32_t sampleCount = 0; ///< good replies
    double current = 0;
    double maximum = 0;
    double minimum = 255;
    std::int32_t errorCount = 0; ///< bad replies
    bool errorFlag = false;      ///< there was a bad reply
    std::int32_t header = none;  ///< the record before the first sample
    std::int32_t lastSample = none;
};

/// All that was sampled, in the order in which it came. Each event's samples are a chain that begins behind
/// its header and follows the links.
///
/// Records stand in blocks that never move, so that growing costs the same at any size.
class SampleStore {
public:
    /// The links could not tell more records apart.
    static constexpr std::size_t mostRecords = std::numeric_limits<std::int32_t>::max();

    SampleStore() = default;

    /// @param limit how many records there is room for, headers included; at most mostRecords
    explicit SampleStore(std::size_t limit) : limit_(limit) {}

    /// Empties the store and makes it ready for the design's events.
    void reset(const Design& design);

    /// Changes with each reset(): what was read before it is no longer there.
    std::uint64_t generation() const { return generation_; }

    /// Stores a good value. @param event from 0
    /// @throws std::bad_alloc when there is no room; the store is then as it was
    void add(std::size_t event, double value, SampleTime time);

    /// The same for a sample out of a file, which does not tell where polling was stopped: polling is never
    /// silent for so long.
    void addSaved(std::size_t event, double value, SampleTime time);

    /// Polling starts: the samples that come are not joined to those before.
    void startRun() { start_ = size_; }

    /// Holds what another store holds, in place of its own.
    void take(SampleStore other);

    /// Counts a bad reply. @param event from 0
    void addError(std::size_t event);

    std::size_t size() const { return size_; } ///< records in use, headers included
    bool isEmpty() const { return size_ == 0; }

    /// @param index a record's place, such as a link tells it
    const SampleRecord& operator[](std::integral auto index) const
    {
        const auto place = static_cast<std::size_t>(index);
        return (*blocks_[place / blockSize])[place % blockSize];
    }

    std::span<const EventTotals> events() const { return events_; }

private:
    static constexpr std::size_t blockSize = 65536;    // records
    static constexpr std::int32_t longestSilence = 10; // seconds

    using Block = std::array<SampleRecord, blockSize>;

    SampleRecord& at(std::int32_t index);
    void makeRoom(std::size_t records);

    std::vector<std::unique_ptr<Block>> blocks_;
    std::size_t limit_ = mostRecords;
    std::size_t size_ = 0;
    std::size_t start_ = 0; ///< the first record since polling was started
    std::uint64_t generation_ = 0;
    std::vector<EventTotals> events_;
};

} // namespace zint
