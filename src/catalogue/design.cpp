#include "catalogue/design.h"

#include "catalogue/pidCatalogue.h"
#include "shared/module1.h"

#include <algorithm>
#include <string_view>

namespace zint {
namespace {

constexpr std::int32_t defaultFrequency = 10;

bool isPolledByDefault(std::string_view name, std::int32_t conversion)
{
    return name != "unused" && name != "unknown" && conversion != displayHexConversion;
}

std::string requestCode(int pid) { return "01" + hexText(pid, 2); }

DesignEntry defaultEvent(int pid)
{
    const auto row = static_cast<std::size_t>(pid);
    DesignEntry event{
        .code = requestCode(pid),
        .description = std::string(PidNames[row]),
        .conversion = PidDefaultConversion[row],
    };
    if (isPolledByDefault(event.description, event.conversion)) {
        event.frequency = defaultFrequency;
        event.offset = (pid - 1) % defaultFrequency; // spreads the events over the loops
    }
    return event;
}

} // namespace

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

void dropUnpolled(Design& design)
{
    std::erase_if(design.events, [](const DesignEntry& event) { return !event.isPolled(); });
}

void loadDefaultDesign(Design& design)
{
    design = {.title = "Default Settings", .sampleSpeed = design.sampleSpeed};
    for (int pid = 1; pid < pidCount; ++pid)
        design.events.push_back(defaultEvent(pid));
}

} // namespace zint
