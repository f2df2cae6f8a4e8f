#include "runner/schedule.h"

#include <algorithm>
#include <span>

namespace zint {

bool isEverDue(const Design& design) { return std::ranges::any_of(design.events, &DesignEntry::isPolled); }

Turn nextTurn(const Design& design, Turn after)
{
    const std::span events = design.events;
    for (std::size_t event = after.event + 1; event < events.size(); ++event) {
        if (isDue(events[event], after.loop))
            return {after.loop, event};
    }
    const auto firstLoop = [&after](const DesignEntry& event) { return nextLoop(event, after.loop + 1); };
    const auto next = std::ranges::min_element(events, {}, firstLoop); // of equals the first
    return {firstLoop(*next), static_cast<std::size_t>(next - events.begin())};
}

std::int64_t requestsBetween(const Design& design, Turn after, std::int64_t endLoop)
{
    std::int64_t requests = 0;
    for (std::size_t event = 0; event < design.events.size(); ++event) {
        const DesignEntry& entry = design.events[event];
        const std::int64_t first = nextLoop(entry, after.loop + (event > after.event ? 0 : 1));
        if (first < endLoop)
            requests += (endLoop - 1 - first) / entry.frequency + 1;
    }
    return requests;
}

} // namespace zint
