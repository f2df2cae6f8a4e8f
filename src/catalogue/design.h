#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zint {

struct OwnParameter;

/// An event of a polling design: a request, and how often it is sent.
struct DesignEntry {
    std::string code; ///< the request as typed, normally hexadecimal such as "0105"
    std::string description;
    std::int32_t conversion = 0; ///< a row of ConversionTable, or the number of an own parameter
    std::int32_t frequency = 0;  ///< requested once in so many loops; below 1: never
    std::int32_t offset = 0; ///< shifts the loop: requested in loop L when (offset + L) mod frequency is 0
    /// What the conversion's number stands for, if it is an own parameter's that is defined here. It is
    /// looked up and not saved, so that it makes no difference between two events.
    std::shared_ptr<const OwnParameter> own{};

    /// The description, or what stands for it.
    const std::string& name() const { return description.empty() ? code : description; }

    bool isPolled() const { return frequency >= 1; }

    /// Compares everything but the definition.
    bool operator==(const DesignEntry& other) const
    {
        return code == other.code && description == other.description && conversion == other.conversion &&
               frequency == other.frequency && offset == other.offset;
    }
};

/// A request as it is compared with others: in capitals, without blanks.
std::string comparedRequest(std::string_view code);

/// How long the adapter waits for the vehicle's answer; nothing: it decides by itself.
using SampleSpeed = std::optional<std::chrono::milliseconds>;

/// The polling design: its events, and how the adapter is prepared for them. The designer writes it, the
/// runner reads it.
struct Design {
    static constexpr std::size_t maxEvents = 64;
    static constexpr std::chrono::milliseconds defaultSpeed{200};

    /// Numbers that are kept and saved without a meaning here.
    struct Place {
        std::int32_t reserved1 = 0;
        std::int32_t reserved2 = 0;

        bool operator==(const Place&) const = default;
    };

    std::string title;
    std::vector<DesignEntry> events;       ///< at most maxEvents, but for a draft of the designer
    std::array<Place, maxEvents> places{}; ///< of the list of events: an event that moves leaves them behind
    std::string extraCommands;             ///< upper case, beginning with "AT", separated by ";"; or empty
    SampleSpeed sampleSpeed = defaultSpeed;

    std::size_t polledCount() const;

    /// Whether the design holds nothing but polled events, as it does once it was committed in the designer.
    bool isCommitted() const { return polledCount() == events.size(); }

    bool operator==(const Design&) const = default;
};

/// "title (N events)"
std::string summaryOf(const Design& design);

/// Whether an event is requested in a loop, counted from 0.
bool isDue(const DesignEntry& event, std::int64_t loop);

/// The loop of an event that is never due.
inline constexpr std::int64_t noLoop = std::numeric_limits<std::int64_t>::max();

/// The first loop from a given one on in which an event is due, or noLoop.
std::int64_t nextLoop(const DesignEntry& event, std::int64_t loop);

/// Leaves the polled events only.
void dropUnpolled(Design& design);

/// The built-in event for a PID from 1 to pidCount - 1; polled in every tenth loop if its value is readable.
DesignEntry defaultEvent(int pid);

/// Replaces the design's title, events and extra commands by the built-in default: the events of all PIDs but
/// 00. The sample speed belongs to the adapter and stays.
void loadDefaultDesign(Design& design);

} // namespace zint
