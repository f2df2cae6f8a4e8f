// What the designer does with the standard's parameters and the user's own.
#include "designer/designer.h"
#include "parameters/carSupport.h"
#include "parameters/standardParameters.h"
#include "shared/fileError.h"

#include <algorithm>
#include <utility>

namespace zint {
namespace {

constexpr std::string_view imperialWord = "imperial";

} // namespace

UnitSystem chosenUnits(const ProgramValues& values)
{
    return values.parmUnits == imperialWord ? UnitSystem::imperial : UnitSystem::metric;
}

void keepUnits(ProgramValues& values, UnitSystem units)
{
    values.parmUnits = units == UnitSystem::imperial ? imperialWord : "metric";
}

std::vector<std::string> Designer::conversionChoices(std::size_t row) const
{
    return zint::conversionChoices(panel_.obdGrid.at(row), definitions_.table());
}

void Designer::addEvents(const std::vector<DesignEntry>& events)
{
    Design more = draft();
    more.events.insert(more.events.end(), events.begin(), events.end());
    if (more.polledCount() > Design::maxEvents)
        throw TooManyEvents(more.polledCount(), "would have");
    edit([&](GridRows& rows) { rows = std::move(more.events); });
    panel_.statusBox =
        std::to_string(events.size()) + (events.size() == 1 ? " event added" : " events added");
    changed();
}

void Designer::useUnits(UnitSystem units)
{
    keepUnits(values_, units);
    std::size_t count = 0;
    edit([&](GridRows& rows) { count = changeUnits(rows, units); });
    panel_.statusBox = (units == UnitSystem::metric ? "Metric units: " : "Imperial units: ") +
                       std::to_string(count) + (count == 1 ? " row" : " rows") + " changed";
    changed();
}

void Designer::takeParameters()
{
    definitions_.reload();
    definitions_.define(panel_.obdGrid);
    edited();
}

void Designer::saveWithDefinitions(bool with)
{
    panel_.savesDefinitions = with;
    changed();
}

std::size_t Designer::usesOf(std::int32_t number) const
{
    return static_cast<std::size_t>(std::ranges::count(panel_.obdGrid, number, &DesignEntry::conversion));
}

/// A design has come in: takes over what defines its events, and tells which are not defined.
void Designer::settleDefinitions()
{
    if (!std::exchange(isNew_, false))
        return;
    Design design = draft();
    bool isRenumbered = false;
    try {
        isRenumbered = definitions_.takeOver(design, files_.path());
    } catch (const FileError& error) {
        prompts_.message("The definitions beside this design can't be used: " + std::string(error.what()));
    }
    if (isRenumbered)
        edit([&](GridRows& rows) { rows = design.events; });
    changed();
    definitions_.tellUndefined(draft());
}

void Designer::learnSupport(std::string_view reply)
{
    learn(values_.carSupport,
          carSupport(readExchange("0100", reply, BusProtocol::unknown).units, "support check"));
}

} // namespace zint
