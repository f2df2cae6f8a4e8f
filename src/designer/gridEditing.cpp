#include "designer/gridEditing.h"

#include "catalogue/chooser.h"
#include "catalogue/conversion.h"
#include "catalogue/designFile.h"
#include "catalogue/eventValue.h"
#include "catalogue/pidCatalogue.h"
#include "parameters/standardParameters.h"
#include "shared/module1.h"
#include "shared/runTimeError.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace zint {
namespace {

std::string ownText(const OwnParameter& own)
{
    return chooserText(own.number, own.name + (own.unit.empty() ? "" : ", " + own.unit));
}

std::string conversionText(const DesignEntry& row)
{
    if (row.own != nullptr && row.own->number == row.conversion)
        return ownText(*row.own);
    if (const auto standard = standardConversion(row.conversion))
        return chooserText(row.conversion, nameOf(*standard));
    if (const Conversion* conversion = findConversion(row.conversion))
        return chooserText(row.conversion, conversion->name);
    return chooserText(row.conversion, keepsRawValues(row.conversion) ? "" : "not defined here");
}

/// What is defined for a request: the fields of the standard's parameter, in the units of both systems where
/// these differ, or the user's own.
std::vector<std::string> fittingChoices(const std::string& code, const OwnParameters& own)
{
    std::vector<std::string> choices;
    const auto pid = requestedParameter(code);
    for (const StandardParameter& parameter : standardParameters()) {
        for (const UnitSystem units : {UnitSystem::metric, UnitSystem::imperial}) {
            const StandardConversion conversion = parameter.conversion(units);
            if (parameter.pid == pid &&
                (units == UnitSystem::metric || hasImperialUnit(parameter.field.unit)))
                choices.push_back(chooserText(numberOf(conversion), nameOf(conversion)));
        }
    }
    const std::string request = comparedRequest(code);
    for (const OwnParameterPointer& parameter : own.all()) {
        if (parameter->request == request)
            choices.push_back(ownText(*parameter));
    }
    return choices;
}

/// Two conversions of ConversionTable for one quantity.
struct UnitPair {
    std::int32_t metric;
    std::int32_t imperial;
};

constexpr std::array unitPairs = {
    UnitPair{3, 4},   // Celsius, Fahrenheit
    UnitPair{6, 7},   // KPH, MPH
    UnitPair{9, 11},  // kPa, psi of air
    UnitPair{18, 19}, // kPa, psi of fuel
};

std::int32_t inUnits(std::int32_t conversion, UnitSystem units)
{
    if (auto standard = standardConversion(conversion)) {
        const bool differs = hasImperialUnit(parameterField(standard->pid, standard->field)->unit);
        if (differs)
            standard->units = units;
        return numberOf(*standard);
    }
    for (const auto& [metric, imperial] : unitPairs) {
        if (conversion == metric || conversion == imperial)
            return units == UnitSystem::metric ? metric : imperial;
    }
    return conversion;
}

bool isTypedNumber(std::string_view text)
{
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    const auto isPart = [&](char c) { return isDigit(c) || c == '-' || c == ' '; };
    return std::ranges::all_of(text, isPart) && std::ranges::any_of(text, isDigit);
}

std::int32_t frequencyOf(std::string_view text)
{
    const std::int32_t frequency = isTypedNumber(text) ? toInteger(text) : chooserNumber(text);
    if (frequency < 0)
        throw RunTimeError::typeMismatch();
    return frequency;
}

/// What a column is sorted by: its number, then its text.
std::pair<std::int32_t, std::string> sortKey(const DesignEntry& row, GridColumn column)
{
    switch (column) {
    case GridColumn::code:
        return {0, upperCase(row.code)};
    case GridColumn::description:
        return {0, upperCase(row.description)};
    case GridColumn::conversion:
        return {row.conversion, {}};
    case GridColumn::frequency:
        return {row.frequency, {}};
    case GridColumn::offset:
        return {row.offset, {}};
    }
    return {};
}

/// The events of the catalogue that vehicles answer with data.
GridRows knownRows()
{
    GridRows rows;
    for (int pid = 1; pid < pidCount; ++pid) {
        if (PidNames.at(static_cast<std::size_t>(pid)).hasMeaning())
            rows.push_back(defaultEvent(pid));
    }
    return rows;
}

std::string choiceOf(const DesignEntry& row) { return row.code + " " + row.description; }

} // namespace

std::string cellText(const DesignEntry& row, GridColumn column)
{
    switch (column) {
    case GridColumn::code:
        return row.code;
    case GridColumn::description:
        return row.description;
    case GridColumn::conversion:
        return conversionText(row);
    case GridColumn::frequency:
        return std::to_string(row.frequency);
    case GridColumn::offset:
        return std::to_string(row.offset);
    }
    return {};
}

void enterText(DesignEntry& row, GridColumn column, std::string_view text)
{
    if (text == cellText(row, column))
        return; // closed as it was opened, which changes nothing, not even what could not be typed
    switch (column) {
    case GridColumn::code:
        break;
    case GridColumn::description:
        requireStorable(text);
        row.description = text;
        break;
    case GridColumn::conversion:
        row.conversion = chooserNumber(text);
        row.own.reset();
        break;
    case GridColumn::frequency:
        row.frequency = frequencyOf(text);
        break;
    case GridColumn::offset:
        row.offset = toInteger(text);
        break;
    }
}

std::vector<std::string> conversionChoices(const DesignEntry& row, const OwnParameters& own)
{
    std::vector<std::string> choices{conversionText(row)};
    for (std::string& choice : fittingChoices(row.code, own)) {
        if (chooserNumber(choice) != row.conversion)
            choices.push_back(std::move(choice));
    }
    const Conversion* present = findConversion(row.conversion);
    const std::int32_t family = present != nullptr ? present->conversionClass : 0;
    for (std::int32_t code = 0; const Conversion& other : ConversionTable) {
        if (code != row.conversion && (family == 0 || other.conversionClass == family))
            choices.push_back(chooserText(code, other.name));
        ++code;
    }
    return choices;
}

std::size_t changeUnits(GridRows& rows, UnitSystem units)
{
    std::size_t changed = 0;
    for (DesignEntry& row : rows) {
        const std::int32_t before = std::exchange(row.conversion, inUnits(row.conversion, units));
        changed += row.conversion != before ? 1 : 0;
    }
    return changed;
}

void setAllFrequencies(GridRows& rows, std::int32_t frequency)
{
    for (DesignEntry& row : rows) {
        row.frequency = frequency;
        row.offset = 0;
    }
}

std::string cellAdvice(std::size_t row, GridColumn column, std::string_view text)
{
    const bool isFrequency = column == GridColumn::frequency;
    return "Row " + std::to_string(row + 1) + ": " + (isFrequency ? "the poll frequency" : "the offset") +
           " takes a whole number" + (isFrequency ? " from 0 on, or an entry of its list" : ", such as 3") +
           ". \"" + std::string(text) + "\" is none, or too large; the cell stays as it was.";
}

std::vector<std::string> requestChoices()
{
    std::vector<std::string> choices;
    for (const DesignEntry& row : knownRows())
        choices.push_back(choiceOf(row));
    return choices;
}

void addRow(GridRows& rows, const std::string& request)
{
    requireStorable(request);
    const GridRows known = knownRows();
    const auto found = std::ranges::find(known, request, &choiceOf);
    rows.push_back(found != known.end() ? *found : DesignEntry{.code = request});
    rows.back().frequency = defaultFrequency;
    rows.back().offset = 0;
}

bool isHexadecimal(std::string_view request)
{
    return std::ranges::all_of(request, [](char c) { return hexToNumber({&c, 1}) >= 0; });
}

void shiftRow(GridRows& rows, std::size_t from, std::size_t to)
{
    const auto at = [&rows](std::size_t row) { return rows.begin() + static_cast<std::ptrdiff_t>(row); };
    if (from < to)
        std::rotate(at(from), at(from + 1), at(to));
    else
        std::rotate(at(to), at(from), at(from + 1));
}

void sortRows(GridRows& rows, GridSorting by)
{
    std::ranges::stable_sort(rows, [by](const DesignEntry& a, const DesignEntry& b) {
        return by.descending ? sortKey(b, by.column) < sortKey(a, by.column)
                             : sortKey(a, by.column) < sortKey(b, by.column);
    });
}

void GridHistory::remember(GridRows rows)
{
    past_.push_back(std::move(rows));
    future_.clear();
    if (past_.size() > mostSteps)
        past_.erase(past_.begin());
}

void GridHistory::forget()
{
    past_.clear();
    future_.clear();
}

void GridHistory::undo(GridRows& rows) { step(past_, future_, rows); }

void GridHistory::redo(GridRows& rows) { step(future_, past_, rows); }

void GridHistory::step(std::vector<GridRows>& from, std::vector<GridRows>& to, GridRows& rows)
{
    if (from.empty())
        return;
    to.push_back(std::exchange(rows, std::move(from.back())));
    from.pop_back();
}

} // namespace zint
