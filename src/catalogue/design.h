#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace zint {

/// One entry of a polling design. Entry 0 is the design's header and uses the fields as Design's accessors
/// say.
struct DesignEntry {
    std::string code; ///< the request as typed, normally hexadecimal such as "0105"
    std::string description;
    std::int32_t conversion = 0; ///< a row of ConversionTable
    std::int32_t frequency = 0;  ///< requested once in so many passes; 0: never
    std::int32_t offset = 0;    ///< shifts the pass: requested in pass L when (offset + L) mod frequency is 0
    std::int32_t reserved1 = 0; ///< kept and saved with the event, without a meaning here
    std::int32_t reserved2 = 0; ///< as reserved1
};

/// The polling design: a header, up to 64 events, and how the adapter is prepared for them. The designer
/// writes it, the runner reads it.
struct Design {
    static constexpr int maxEvents = 64;
    static constexpr std::int16_t automaticSpeed = -1;
    static constexpr std::int16_t defaultSpeed = 200;

    std::array<DesignEntry, maxEvents + 1> entries; ///< [0] the header, [1] to [eventCount()] the events
    std::string extraCommands;               ///< upper case, beginning with "AT", separated by ";"; or empty
    std::int16_t sampleSpeed = defaultSpeed; ///< the adapter's time-out in ms, or automaticSpeed

    std::string& title() { return entries[0].description; }
    const std::string& title() const { return entries[0].description; }
    std::int32_t& eventCount() { return entries[0].frequency; } ///< 0 to maxEvents
    std::int32_t eventCount() const { return entries[0].frequency; }
    std::int32_t& polledCount() { return entries[0].offset; } ///< events with a frequency above 0
    std::int32_t polledCount() const { return entries[0].offset; }

    std::span<DesignEntry> events() { return std::span(entries).subspan(1, count()); }
    std::span<const DesignEntry> events() const { return std::span(entries).subspan(1, count()); }

    /// Whether the design holds nothing but polled events, as it does once it was committed in the designer.
    bool isCommitted() const { return eventCount() == polledCount(); }

private:
    std::size_t count() const { return static_cast<std::size_t>(eventCount()); }
};

/// Whether an event is requested in a pass of the polling loop, counted from 0.
/// @throws RunTimeError 11 for frequency 0
bool isDue(const DesignEntry& event, std::int64_t pass);

/// Leaves the polled events only, in their order. The reserved numbers stay with the places in the list.
void dropUnpolled(Design& design);

/// Replaces the design's header, events and extra commands by the built-in default: every parameter of the
/// catalogue but PID 00, of which those with a readable value are polled in every tenth pass.
void loadDefaultDesign(Design& design);

} // namespace zint
