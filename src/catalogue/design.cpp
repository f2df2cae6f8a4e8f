#include "catalogue/design.h"

#include "catalogue/pidCatalogue.h"
#include "shared/module1.h"
#include "shared/runTimeError.h"

#include <string_view>
#include <utility>

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
        event.offset = (pid - 1) % defaultFrequency; // spreads the events over the passes
    }
    return event;
}

} // namespace

bool isDue(const DesignEntry& event, std::int64_t pass)
{
    if (event.frequency == 0)
        throw RunTimeError::divisionByZero();
    return (event.offset + pass) % event.frequency == 0;
}

void dropUnpolled(Design& design)
{
    std::int32_t kept = 0;
    for (DesignEntry event : design.events()) {
        if (event.frequency < 1)
            continue;
        DesignEntry& place = design.entries.at(static_cast<std::size_t>(++kept));
        event.reserved1 = place.reserved1;
        event.reserved2 = place.reserved2;
        place = std::move(event);
    }
    design.eventCount() = design.polledCount() = kept;
}

void loadDefaultDesign(Design& design)
{
    design.entries = {};
    design.title() = "Default Settings";
    design.eventCount() = pidCount - 1;
    for (int pid = 1; pid < pidCount; ++pid) {
        DesignEntry& event = design.entries.at(static_cast<std::size_t>(pid));
        event = defaultEvent(pid);
        if (event.frequency > 0)
            ++design.polledCount();
    }
    design.extraCommands.clear();
}

} // namespace zint
