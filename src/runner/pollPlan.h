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
    std::size_t parameters = 1; ///< that are asked for

    bool isCombined() const { return parameters > 1; }
};

/// In which order and in which requests a design's events are asked in a loop: in the design's order, those
/// with one address together. Events that ask the same in the same loop share a request, unless raw values
/// are kept of them; and where that is wanted, several parameters of mode 01 are asked in one.
class PollPlan {
public:
    static constexpr std::size_t mostCombined = 6; ///< parameters, by ISO 15031-5 on CAN

    explicit PollPlan(const Design& design);

    /// Lets requests ask for several parameters, or not. All of them are to be tried anew.
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

    /// An event was left out of the answer to a shared request. Too often in a row, and it goes alone until
    /// it is answered so: the vehicle may have kept silent altogether.
    void miss(std::size_t event);
    void answerAlone(std::size_t event);

    /// A trial has left an event out. It is to be asked again in the loop that is on, and alone from now on
    /// unless it was told in a shared request before.
    void leaveOut(std::size_t event);

    /// How many events share no request although they could.
    std::size_t partedCount() const;

private:
    struct Share {
        std::string code; ///< of the request in one form; empty: it is asked for this event alone
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
