#include "designer/designDifference.h"

#include "designer/sampleSpeed.h"

#include <algorithm>
#include <utility>

namespace zint {
namespace {

using Events = std::vector<DesignEntry>;

/// The events that have no equal among the others.
Events without(Events list, const Events& others)
{
    for (const DesignEntry& other : others) {
        if (const auto found = std::ranges::find(list, other); found != list.end())
            list.erase(found);
    }
    return list;
}

std::string named(const std::string& what, const Events& events)
{
    constexpr std::size_t mostNames = 2;
    std::string text;
    for (std::size_t i = 0; i < std::min(events.size(), mostNames); ++i)
        text += (i == 0 ? what + ": " : ", ") + events[i].code + " " + events[i].description;
    if (events.size() > mostNames)
        text += " and " + std::to_string(events.size() - mostNames) + " more";
    return text;
}

std::string eventDifference(const Events& events, const Events& from)
{
    if (const Events changed = without(events, from); !changed.empty())
        return named("other rows", changed);
    if (const Events missing = without(from, events); !missing.empty())
        return named("without", missing);
    return events == from ? "" : "another order";
}

std::string commandDifference(const std::string& commands, const std::string& from)
{
    if (commands == from)
        return {};
    return commands.empty() ? "no init commands" : "init commands " + commands;
}

} // namespace

std::string differenceText(const Design& design, const Design& from)
{
    std::string text;
    for (const std::string& part :
         {eventDifference(design.events, from.events),
          commandDifference(design.extraCommands, from.extraCommands),
          design.sampleSpeed == from.sampleSpeed ? "" : "sample speed " + speedText(design.sampleSpeed)}) {
        if (!part.empty())
            text += (text.empty() ? "" : "; ") + part;
    }
    return text.empty() ? "the same rows" : text;
}

} // namespace zint
