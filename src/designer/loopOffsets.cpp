#include "designer/loopOffsets.h"

#include "shared/runTimeError.h"

#include <algorithm>
#include <map>
#include <stdexcept>

namespace zint {
namespace {

constexpr std::int32_t fewestLoops = 10;
constexpr std::size_t longestTimeline = std::size_t{16} << 20; // bytes; more would only stop the program

std::int32_t loopCount(const Design& design)
{
    std::int32_t loops = fewestLoops;
    for (const DesignEntry& event : design.events)
        loops = std::max(loops, event.frequency);
    return loops;
}

} // namespace

void spreadOffsets(Design& design)
{
    std::map<std::int32_t, std::int32_t> nextOffset; // by frequency
    for (DesignEntry& event : design.events) {
        if (!event.isPolled())
            continue;
        std::int32_t& next = nextOffset[event.frequency];
        event.offset = next;
        next = next == 0 ? event.frequency - 1 : next - 1;
    }
}

std::string timelineText(const Design& design)
{
    if (design.events.empty() || !design.isCommitted())
        throw RunTimeError::divisionByZero();
    const std::int32_t loops = loopCount(design);
    std::string text = "----------\r\n   \r\n";
    for (std::int64_t loop = 0;;) {
        for (const DesignEntry& event : design.events) {
            if (!isDue(event, loop))
                continue;
            if (loop >= loops) // so late, empty loops may have followed the last
                return text;
            text += "   "; // piece by piece: there may be 100,000 lines
            text += event.description;
            text += "\r\n";
        }
        text += "---------- End Loop " + std::to_string(++loop) + "\r\n";
        if (text.size() > longestTimeline)
            throw std::length_error("A timeline of " + std::to_string(loops) +
                                    " passes is too long to show. Choose smaller frequencies.");
    }
}

} // namespace zint
