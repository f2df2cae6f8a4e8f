#include "designer/loopOffsets.h"

#include "shared/runTimeError.h"

#include <algorithm>
#include <map>
#include <span>

namespace zint {
namespace {

constexpr std::int32_t fewestPasses = 10;

std::span<DesignEntry> eventsOf(Design& design)
{
    return std::span(design.entries).subspan(1, static_cast<std::size_t>(design.eventCount()));
}

std::int32_t passCount(Design& design)
{
    std::int32_t passes = fewestPasses;
    for (const DesignEntry& event : eventsOf(design))
        passes = std::max(passes, event.frequency);
    return passes;
}

} // namespace

bool isDue(const DesignEntry& event, std::int32_t pass)
{
    if (event.frequency == 0)
        throw RunTimeError::divisionByZero();
    return (std::int64_t{event.offset} + pass) % event.frequency == 0;
}

void spreadOffsets(Design& design)
{
    std::map<std::int32_t, std::int32_t> nextOffset; // by frequency
    for (DesignEntry& event : eventsOf(design)) {
        if (event.frequency < 1)
            continue;
        std::int32_t& next = nextOffset[event.frequency];
        event.offset = next;
        next = next == 0 ? event.frequency - 1 : next - 1;
    }
}

std::string timelineText(Design& design)
{
    const std::int32_t passes = passCount(design);
    design.title().clear();
    std::string text = "----------\r\n";
    std::int32_t pass = 0;
    for (std::size_t entry = 0; pass < passes;) {
        text += "   " + design.entries.at(entry).description + "\r\n";
        do { // the passes end with the first event that is due after them, so that empty ones may follow the
             // last
            if (++entry > static_cast<std::size_t>(design.eventCount())) {
                entry = 1;
                text += "---------- End Loop " + std::to_string(++pass) + "\r\n";
            }
        } while (!isDue(design.entries.at(entry), pass));
    }
    return text;
}

} // namespace zint
