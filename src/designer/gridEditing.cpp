#include "designer/gridEditing.h"

#include "catalogue/chooser.h"
#include "catalogue/conversion.h"
#include "catalogue/designFile.h"
#include "catalogue/pidCatalogue.h"
#include "shared/module1.h"
#include "shared/runTimeError.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace zint {
namespace {

std::string conversionText(std::int32_t conversion)
{
    const Conversion* row = findConversion(conversion);
    return chooserText(conversion, row != nullptr ? row->name : std::string_view());
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
        return conversionText(row.conversion);
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
        break;
    case GridColumn::frequency:
        row.frequency = frequencyOf(text);
        break;
    case GridColumn::offset:
        row.offset = toInteger(text);
        break;
    }
}

std::vector<std::string> conversionChoices(std::int32_t conversion)
{
    std::vector<std::string> choices{conversionText(conversion)};
    const Conversion* own = findConversion(conversion);
    const std::int32_t family = own != nullptr ? own->conversionClass : 0;
    for (std::int32_t code = 0; const Conversion& other : ConversionTable) {
        if (code != conversion && (family == 0 || other.conversionClass == family))
            choices.push_back(chooserText(code, other.name));
        ++code;
    }
    return choices;
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
