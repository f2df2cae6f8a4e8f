#include "runner/schedule.h"

#include <algorithm>

namespace zint {

bool isEverDue(const Design& design) { return std::ranges::any_of(design.events, &DesignEntry::isPolled); }

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
