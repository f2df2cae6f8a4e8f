#include "designer/gridEditing.h"

#include "catalogue/chooser.h"
#include "catalogue/pidCatalogue.h"
#include "designer/designFile.h"
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
std::pair<std::int32_t, std::string> sortKey(const GridRow& row, GridColumn column)
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

} // namespace

std::string cellText(const GridRow& row, GridColumn column)
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

void setCell(GridRow& row, GridColumn column, std::string_view text)
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

void setAllFrequencies(DesignGrid& grid, std::int32_t frequency)
{
    for (GridRow& row : grid.rows) {
        row.frequency = frequency;
        row.offset = 0;
    }
}

void addRow(DesignGrid& grid, std::string code)
{
    constexpr std::int32_t usualFrequency = 10;
    requireStorable(code);
    grid.rows.push_back({.code = std::move(code), .frequency = usualFrequency});
}

void moveRow(DesignGrid& grid, std::size_t from, std::size_t to)
{
    const auto at = [&grid](std::size_t row) { return grid.rows.begin() + static_cast<std::ptrdiff_t>(row); };
    if (from < to)
        std::rotate(at(from), at(from + 1), at(to));
    else
        std::rotate(at(to), at(from), at(from + 1));
}

void sortRows(DesignGrid& grid, GridColumn column, bool descending)
{
    std::ranges::stable_sort(grid.rows, [column, descending](const GridRow& a, const GridRow& b) {
        return descending ? sortKey(b, column) < sortKey(a, column) : sortKey(a, column) < sortKey(b, column);
    });
}

void GridHistory::remember(const Rows& rows)
{
    past_.push_back(rows);
    future_.clear();
    if (past_.size() > mostSteps)
        past_.erase(past_.begin());
}

void GridHistory::forget()
{
    past_.clear();
    future_.clear();
}

void GridHistory::undo(Rows& rows) { step(past_, future_, rows); }

void GridHistory::redo(Rows& rows) { step(future_, past_, rows); }

void GridHistory::step(std::vector<Rows>& from, std::vector<Rows>& to, Rows& rows)
{
    if (from.empty())
        return;
    to.push_back(std::exchange(rows, std::move(from.back())));
    from.pop_back();
}

} // namespace zint
