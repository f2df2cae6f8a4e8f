#pragma once

#include "catalogue/design.h"
#include "runner/schedule.h"

#include <cstddef>
#include <string>
#include <vector>

namespace zint {

/// Whom a request is for, and whose answers the adapter lets through. Empty: as the adapter has it.
struct BusAddress {
    std::string header;
    std::string filter;

    bool operator==(const BusAddress&) const = default;
};

/// What is asked at once.
struct PollRequest {
    std::string text;                ///< "010C", or "010C0D05" for several parameters
    std::vector<std::size_t> events; ///< that its reply tells of, in the order of the design
    BusAddress address;

    bool isCombined() const { return text.size() > 4 && events.size() > 1; }
};

/// In which order and in which requests a design's events are asked in a loop: in the design's order, those
/// with one address together. Events of mode 01 that are due in the same loop can share a request.
class PollPlan {
public:
    static constexpr std::size_t mostCombined = 6; ///< parameters, by ISO 15031-5 on CAN

    explicit PollPlan(const Design& design);

    /// Lets events share requests, or not. All of them are to be tried anew.
    void combine(bool combines);
    bool combines() const { return combines_; }

    /// The next event to ask, possibly many loops later, without those that the requests of this loop have
    /// taken in already. Takes the same time however far that is. Legal when an event is ever due.
    Turn next(Turn after);

    /// The request for an event; with it those that can share it. Legal for the turn that next() told, and
    /// for the first one of a run, whose event need not be due.
    PollRequest request(Turn turn);

    /// Whether a shared request has still to show that it is understood.
    bool isTrial(const PollRequest& request) const;

    /// Reads anew what the design's own parameters mean.
    void read();

    /// An event was answered in a shared request.
    void confirm(std::size_t event);

    /// An event was left out of the answer to a shared request; too often in a row, and it goes alone.
    void miss(std::size_t event);

    /// An event goes alone from now on, also in the loop that is on.
    void part(std::size_t event);
    bool isParted(std::size_t event) const { return shares_.at(event).isParted; }

    /// How many events share no request although they could.
    std::size_t partedCount() const;

private:
    struct Share {
        std::optional<std::uint8_t> pid; ///< what can be asked together; nothing: it goes alone
        bool isConfirmed = false;
        bool isParted = false;
        int misses = 0;            ///< in a row
        std::int64_t takenIn = -1; ///< the loop in which a request has taken it in
    };

    bool mayShare(std::size_t event) const;
    bool isTaken(std::size_t event, std::int64_t loop) const { return shares_[event].takenIn == loop; }

    const Design& design_;
    bool combines_ = false;
    std::vector<BusAddress> addresses_; ///< by event
    std::vector<std::size_t> order_;    ///< of the events in a loop
    std::vector<std::size_t> places_;   ///< of the events in that order
    std::vector<Share> shares_;         ///< by event
};

} // namespace zint
