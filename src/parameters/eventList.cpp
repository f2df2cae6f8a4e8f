#include "parameters/eventList.h"

#include "parameters/designParameters.h"
#include "parameters/standardParameters.h"
#include "shared/module1.h"

#include <algorithm>
#include <iterator>

namespace zint {
namespace {

bool isHexadecimal(std::string_view text)
{
    return text.size() % 2 == 0 && std::ranges::all_of(text, [](char c) { return upperHexDigit(c) >= 0; });
}

DesignEntry inEachLoop(DesignEntry event)
{
    event.frequency = 1;
    return event;
}

/// Looks for what a text names, the closest meaning first.
class EventFinder {
public:
    EventFinder(const OwnParameters& own, UnitSystem units) : own_(own), units_(units) {}

    std::vector<DesignEntry> find(std::string_view text) const
    {
        const std::string_view name = trimmed(text);
        if (auto events = byName(name); !events.empty())
            return events;
        if (const std::string digits = upperCase(name); name.size() >= 2 && isHexadecimal(digits))
            return byRequest(digits.size() == 2 ? "01" + digits : digits);
        if (const auto comma = name.find(','); comma != std::string_view::npos)
            return byParts(name, comma);
        return byWords(name);
    }

private:
    std::vector<DesignEntry> byName(std::string_view name) const
    {
        if (const OwnParameterPointer own = own_.findName(name))
            return {inEachLoop(eventFor(own))};
        return where(
            [&](const StandardParameter& known) { return upperCase(known.field.name) == upperCase(name); });
    }

    std::vector<DesignEntry> byRequest(const std::string& request) const
    {
        std::vector<DesignEntry> events;
        for (const OwnParameterPointer& own : own_.all()) {
            if (own->request == request)
                events.push_back(inEachLoop(eventFor(own)));
        }
        if (events.empty())
            events = where([&](const StandardParameter& known) { return known.code == request; });
        if (events.empty())
            events.push_back({.code = request, .frequency = 1});
        return events;
    }

    std::vector<DesignEntry> byParts(std::string_view text, std::size_t comma) const
    {
        std::vector<DesignEntry> events = find(text.substr(0, comma));
        std::ranges::move(find(text.substr(comma + 1)), std::back_inserter(events));
        return events;
    }

    std::vector<DesignEntry> byWords(std::string_view words) const
    {
        if (words.empty())
            throw UnknownParameter("an event without a name");
        std::vector<DesignEntry> events =
            where([&](const StandardParameter& known) { return isFound(known, words, units_); });
        for (const OwnParameterPointer& own : own_.all()) {
            if (isFound({own->request, own->name, own->unit, own->shortName}, words))
                events.push_back(inEachLoop(eventFor(own)));
        }
        if (events.size() == 1)
            return events;
        const std::string quoted = '"' + std::string(words) + '"';
        if (events.empty())
            throw UnknownParameter("no parameter is called " + quoted +
                                   "; zint-obd parameters search finds them");
        throw UnknownParameter(quoted + " means " + std::to_string(events.size()) +
                               " parameters: " + namesOf(events));
    }

    static std::string namesOf(const std::vector<DesignEntry>& events)
    {
        constexpr std::size_t most = 5;
        std::string names;
        for (std::size_t i = 0; i < std::min(events.size(), most); ++i)
            names += (i == 0 ? "" : "; ") + events[i].description;
        return events.size() > most ? names + "; ..." : names;
    }

    template <typename Condition>
    std::vector<DesignEntry> where(const Condition& isMeant) const
    {
        std::vector<DesignEntry> events;
        for (const StandardParameter& known : standardParameters()) {
            if (isMeant(known))
                events.push_back(inEachLoop(eventFor(known, units_)));
        }
        return events;
    }

    const OwnParameters& own_;
    UnitSystem units_;
};

} // namespace

std::vector<DesignEntry> eventsNamed(const std::vector<std::string>& texts, const OwnParameters& own,
                                     UnitSystem units)
{
    std::vector<DesignEntry> events;
    for (const std::string& text : texts)
        std::ranges::move(EventFinder(own, units).find(text), std::back_inserter(events));
    if (events.size() > Design::maxEvents)
        throw UnknownParameter("these are " + std::to_string(events.size()) + " events; " +
                               std::to_string(Design::maxEvents) + " fit into a run");
    return events;
}

} // namespace zint
