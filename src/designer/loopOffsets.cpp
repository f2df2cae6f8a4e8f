#include "designer/loopOffsets.h"

#include "shared/runTimeError.h"

#include <algorithm>
#include <map>
#include <stdexcept>

namespace zint {
namespace {

constexpr std::int32_t fewestPasses = 10;
constexpr std::size_t longestTimeline = std::size_t{16} << 20; // bytes; more would only stop the program

std::int32_t passCount(const Design& design)
{
    std::int32_t passes = fewestPasses;
    for (const DesignEntry& event : design.events())
        passes = std::max(passes, event.frequency);
    return passes;
}

} // namespace

void spreadOffsets(Design& design)
{
    std::map<std::int32_t, std::int32_t> nextOffset; // by frequency
    for (DesignEntry& event : design.events()) {
        if (event.frequency < 1)
            continue;
        std::int32_t& next = nextOffset[event.frequency];
        event.offset = next;
        next = next == 0 ? event.frequency - 1 : next - 1;
    }
}

std::string timelineText(const Design& design)
{
    if (design.eventCount() == 0)
        throw RunTimeError::divisionByZero();
    const std::int32_t passes = passCount(design);
    std::string text = "----------\r\n   \r\n";
    std::int64_t pass = 0;
    for (std::size_t n = 1;; ++n) {
        if (n > design.events().size()) {
            n = 1;
            text += "---------- End Loop " + std::to_string(++pass) + "\r\n";
            if (text.size() > longestTimeline)
                throw std::length_error("A timeline of " + std::to_string(passes) +
                                        " passes is too long to show. Choose smaller frequencies.");
        }
        const DesignEntry& event = design.entries.at(n);
        if (!isDue(event, pass))
            continue;
        if (pass >= passes) // so late, empty passes may have followed the last
            break;
        text += "   "; // piece by piece: there may be 100,000 lines
        text += event.description;
        text += "\r\n";
    }
    return text;
}

} // namespace zint
