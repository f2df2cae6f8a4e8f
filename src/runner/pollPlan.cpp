#include "runner/pollPlan.h"

#include "catalogue/eventValue.h"
#include "catalogue/ownParameter.h"
#include "parameters/standardParameters.h"
#include "shared/module1.h"
#include "vehicle/parameters.h"

#include <algorithm>
#include <numeric>

namespace zint {
namespace {

constexpr int manyMisses = 3; // in a row: too many to be by chance

BusAddress addressOf(const DesignEntry& event)
{
    return event.own != nullptr ? BusAddress{event.own->header, event.own->filter} : BusAddress{};
}

/// The parameter of mode 01 that an event asks for, and nothing else, if its length is known.
std::optional<std::uint8_t> sharedPid(const DesignEntry& event)
{
    const auto pid = requestedParameter(event.code);
    return pid && parameterLength(*pid) ? pid : std::nullopt;
}

/// Whether a parameter is among those of a request, or has still room there; it is then.
bool hasRoom(std::vector<std::uint8_t>& pids, std::uint8_t pid)
{
    if (std::ranges::find(pids, pid) != pids.end())
        return true;
    if (pids.size() == PollPlan::mostCombined)
        return false;
    pids.push_back(pid);
    return true;
}

} // namespace

PollPlan::PollPlan(const Design& design) : design_(design) { read(); }

void PollPlan::read()
{
    std::vector<BusAddress> kinds; // in the order in which they come first
    std::vector<std::size_t> kindOf;
    addresses_.clear();
    shares_.clear();
    for (const DesignEntry& event : design_.events) {
        addresses_.push_back(addressOf(event));
        const auto found = std::ranges::find(kinds, addresses_.back());
        kindOf.push_back(static_cast<std::size_t>(found - kinds.begin()));
        if (found == kinds.end())
            kinds.push_back(addresses_.back());
        shares_.push_back({.code = keepsRawValues(event.conversion) ? "" : comparedRequest(event.code),
                           .pid = sharedPid(event)});
    }
    order_.resize(design_.events.size());
    std::iota(order_.begin(), order_.end(), 0);
    std::ranges::stable_sort(order_, {}, [&](std::size_t event) { return kindOf[event]; });
    places_.resize(order_.size());
    for (std::size_t place = 0; place < order_.size(); ++place)
        places_[order_[place]] = place;
}

void PollPlan::combine(bool combines)
{
    combines_ = combines;
    for (Share& share : shares_)
        share = {share.code, share.pid};
}

Turn PollPlan::next(Turn after)
{
    const auto& events = design_.events;
    const std::size_t begin = after.event < places_.size() ? places_[after.event] + 1 : places_.size();
    for (std::size_t place = begin; place < order_.size(); ++place) {
        const std::size_t event = order_[place];
        if (isDue(events[event], after.loop) && !isTaken(event, after.loop))
            return {after.loop, event};
    }
    for (Share& share : shares_)
        share.takenIn = -1;
    const auto firstLoop = [&](std::size_t event) { return nextLoop(events[event], after.loop + 1); };
    const std::size_t first = *std::ranges::min_element(order_, {}, firstLoop); // of equals the first
    return {firstLoop(first), first};
}

PollRequest PollPlan::request(Turn turn)
{
    PollRequest request{
        .text = design_.events[turn.event].code, .events = {turn.event}, .address = addresses_[turn.event]};
    const Share& first = shares_[turn.event];
    std::vector<std::uint8_t> pids;
    if (mayShare(turn.event))
        pids.push_back(*first.pid);
    for (std::size_t place = places_[turn.event] + 1; place < order_.size(); ++place) {
        const std::size_t event = order_[place];
        if (addresses_[event] != request.address || isTaken(event, turn.loop) ||
            !isDue(design_.events[event], turn.loop))
            continue;
        const bool isSame = !first.code.empty() && shares_[event].code == first.code;
        if (!isSame && (pids.empty() || !mayShare(event) || !hasRoom(pids, *shares_[event].pid)))
            continue;
        request.events.push_back(event);
        shares_[event].takenIn = turn.loop;
    }
    if (pids.size() > 1) {
        request.parameters = pids.size();
        request.text = "01";
        for (const std::uint8_t pid : pids)
            request.text += hexText(pid, 2);
    }
    return request;
}

bool PollPlan::isTrial(const PollRequest& request) const
{
    return request.isCombined() && std::ranges::any_of(request.events, [this](std::size_t event) {
               return !shares_[event].isConfirmed;
           });
}

void PollPlan::confirm(std::size_t event)
{
    Share& share = shares_.at(event);
    share.isConfirmed = true;
    share.isParted = false;
    share.misses = 0;
}

void PollPlan::miss(std::size_t event)
{
    Share& share = shares_.at(event);
    share.isParted = ++share.misses >= manyMisses;
}

void PollPlan::answerAlone(std::size_t event)
{
    if (Share& share = shares_.at(event); share.misses >= manyMisses)
        share = {share.code, share.pid};
}

void PollPlan::leaveOut(std::size_t event)
{
    Share& share = shares_.at(event);
    share.takenIn = -1;
    if (share.isConfirmed)
        miss(event);
    else
        share.isParted = true;
}

std::size_t PollPlan::partedCount() const
{
    return static_cast<std::size_t>(std::ranges::count_if(shares_, &Share::isParted));
}

bool PollPlan::mayShare(std::size_t event) const
{
    const Share& share = shares_[event];
    return combines_ && share.pid && !share.isParted;
}

} // namespace zint
