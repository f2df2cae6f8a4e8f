#include "catalogue/design.h"

#include "catalogue/conversion.h"
#include "catalogue/pidCatalogue.h"
#include "shared/module1.h"

#include <algorithm>

namespace zint {

std::string comparedRequest(std::string_view code)
{
    std::string compared = upperCase(code);
    std::erase(compared, ' ');
    return compared;
}

std::size_t Design::polledCount() const
{
    return static_cast<std::size_t>(std::ranges::count_if(events, &DesignEntry::isPolled));
}

std::string summaryOf(const Design& design)
{
    return design.title + " (" + std::to_string(design.events.size()) + " events)";
}

bool isDue(const DesignEntry& event, std::int64_t loop)
{
    return event.isPolled() && (event.offset + loop) % event.frequency == 0;
}

std::int64_t nextLoop(const DesignEntry& event, std::int64_t loop)
{
    if (!event.isPolled())
        return noLoop;
    const std::int64_t past = (event.offset + loop) % event.frequency;
    return past > 0 ? loop + event.frequency - past : loop - past;
}

void dropUnpolled(Design& design)
{
    std::erase_if(design.events, [](const DesignEntry& event) { return !event.isPolled(); });
}

DesignEntry defaultEvent(int pid)
{
    const Pid& known = PidNames.at(static_cast<std::size_t>(pid));
    DesignEntry event{
        .code = "01" + hexText(pid, 2),
        .description = std::string(known.name),
        .conversion = known.defaultConversion,
    };
    if (known.hasMeaning() && known.defaultConversion != conversionCode::displayHex) {
        event.frequency = defaultFrequency;
        event.offset = (pid - 1) % defaultFrequency; // spreads the events over the loops
    }
    return event;
}

void loadDefaultDesign(Design& design)
{
    design = {.title = "Default Settings", .sampleSpeed = design.sampleSpeed};
    for (int pid = 1; pid < pidCount; ++pid)
        design.events.push_back(defaultEvent(pid));
}

} // namespace zint
