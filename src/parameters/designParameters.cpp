#include "parameters/designParameters.h"

#include "parameters/standardParameters.h"
#include "shared/module1.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace zint {
namespace {

/// The last number that is taken over. What others have numbered must not use up the table's numbers.
constexpr std::int32_t lastTaken = OwnParameters::lastNumber / 2;

/// Whether an event asks for a parameter; the number of answers to wait for may stand behind the request.
bool asksFor(const DesignEntry& event, const OwnParameter& parameter)
{
    const std::string code = comparedRequest(event.code);
    return code.starts_with(parameter.request) && code.size() <= parameter.request.size() + 1;
}

void insertOnce(std::vector<std::int32_t>& numbers, std::int32_t number)
{
    if (std::ranges::find(numbers, number) == numbers.end())
        numbers.push_back(number);
}

/// Whether a parameter of the table is what a definition says, if under a name that had to be another one.
bool isDefinedBy(const OwnParameter& parameter, OwnParameter definition)
{
    const bool isNumbered =
        parameter.name.starts_with(definition.name + " ") &&
        parameter.name.find_first_not_of("0123456789", definition.name.size() + 1) == std::string::npos;
    if (isNumbered)
        definition.name = parameter.name;
    return isSameButNumber(parameter, std::move(definition));
}

/// The number that a definition has in the table, where it is added if need be.
std::int32_t numberIn(OwnParameters& table, OwnParameter definition, TakenDefinitions& taken)
{
    const auto same = std::ranges::find_if(table.all(), [&](const OwnParameterPointer& parameter) {
        return isDefinedBy(*parameter, definition);
    });
    if (same != table.all().end())
        return (*same)->number;
    if (definition.number < table.nextNumber() || definition.number > lastTaken)
        definition.number = 0;
    definition.name = table.freeName(definition.name);
    const StoredParameter stored = table.put(definition);
    if (!stored.parameter)
        return definition.number;
    taken.added.push_back(stored.parameter);
    return stored.parameter->number;
}

} // namespace

DesignEntry eventFor(const OwnParameterPointer& own)
{
    return {.code = own->request,
            .description = own->name,
            .conversion = own->number,
            .frequency = frequencyForUnit(own->unit),
            .own = own};
}

Undefined define(Design& design, const OwnParameters& table)
{
    Undefined undefined;
    for (std::size_t i = 0; i < design.events.size(); ++i) {
        DesignEntry& event = design.events[i];
        event.own = isOwnConversion(event.conversion) ? table.find(event.conversion) : nullptr;
        if (!isOwnConversion(event.conversion))
            continue;
        if (!event.own) {
            insertOnce(undefined.missing, event.conversion);
        } else if (!asksFor(event, *event.own)) {
            event.own = nullptr;
            undefined.differing.push_back(i);
        }
    }
    return undefined;
}

std::string definitionsPath(const std::string& designPath)
{
    constexpr std::string_view ending = ".OBC";
    const bool isNamed =
        upperCase(designPath).ends_with(ending) && fileNamePart(designPath).size() > ending.size();
    return designPath.substr(0, designPath.size() - (isNamed ? ending.size() : 0)) + ".parameters.json";
}

OwnParameters definitionsOf(const Design& design)
{
    OwnParameters definitions;
    for (const DesignEntry& event : design.events) {
        if (event.own)
            definitions.put(*event.own);
    }
    return definitions;
}

TakenDefinitions takeDefinitions(const Design& design, const OwnParameters& definitions, OwnParameters& table)
{
    TakenDefinitions taken;
    for (const DesignEntry& event : design.events) {
        const OwnParameterPointer definition = definitions.find(event.conversion);
        if (definition && asksFor(event, *definition) && !taken.numbers.contains(event.conversion))
            taken.numbers[event.conversion] = numberIn(table, *definition, taken);
    }
    return taken;
}

void renumber(Design& design, const std::map<std::int32_t, std::int32_t>& numbers)
{
    for (DesignEntry& event : design.events) {
        if (const auto found = numbers.find(event.conversion); found != numbers.end())
            event.conversion = found->second;
    }
}

} // namespace zint
