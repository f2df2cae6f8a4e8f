#pragma once

#include "catalogue/design.h"
#include "catalogue/standardConversion.h"
#include "parameters/ownParameters.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// What the user does to the designer's grid.
namespace zint {

/// The grid's rows: events, polled or not, of any number. The design changes when they are committed.
using GridRows = std::vector<DesignEntry>;

/// The grid's columns, from the left.
enum class GridColumn { code, description, conversion, frequency, offset };

struct GridHeading {
    GridColumn column;
    std::string_view text; ///< with blanks, which set the width of its column
    bool alignedRight = false;
};

inline constexpr std::array<GridHeading, 5> gridHeadings = {{
    {GridColumn::code, "Code"},
    {GridColumn::description, "Code Description                   "},
    {GridColumn::conversion, "Unit Conversion                      "},
    {GridColumn::frequency, " Poll Frequency "},
    {GridColumn::offset, "Offset", true},
}};

/// A cell's text: choosers as number + ">" + name, numbers in decimal.
std::string cellText(const DesignEntry& row, GridColumn column);

/// Writes what an editor holds into a cell. The code can't be edited and stays. As a frequency counts a
/// number that is typed, or the one of a chooser's entry; any other text is 0.
/// @throws RunTimeError 13 for a negative frequency or an offset that is no number, 6 for a number that is
/// too large; NotStorable; the row is then as it was. A new conversion has no definition yet.
void enterText(DesignEntry& row, GridColumn column, std::string_view text);

/// The entries of the unit chooser for a row: its own conversion first, then what fits its request, then
/// those of ConversionTable that may take its place. @param own the user's parameters
std::vector<std::string> conversionChoices(const DesignEntry& row, const OwnParameters& own = {});

/// Turns the conversions of all rows into those of a system of units, where it has one for the quantity.
/// @return how many have changed
std::size_t changeUnits(GridRows& rows, UnitSystem units);

/// Sets the frequency, 0 or 1, in all rows, and no offset.
void setAllFrequencies(GridRows& rows, std::int32_t frequency);

/// What a cell takes, where it can be found, and what was typed: for the user whose text enterText() refused.
std::string cellAdvice(std::size_t row, GridColumn column, std::string_view text);

/// The requests that the catalogue knows: code, a blank, name.
std::vector<std::string> requestChoices();

/// Adds a row for a request: one of requestChoices() with its name and unit, any other as it was typed; its
/// description is left to be typed. @throws NotStorable
void addRow(GridRows& rows, const std::string& request);

/// Whether a request is hexadecimal, with or without blanks, as vehicles take them.
bool isHexadecimal(std::string_view request);

/// Puts a row in front of the one that stands at `to` now, or at the end for `to` == row count.
void shiftRow(GridRows& rows, std::size_t from, std::size_t to);

/// How the rows have been sorted.
struct GridSorting {
    GridColumn column;
    bool descending = false;

    bool operator==(const GridSorting&) const = default;
};

/// Sorts by a column: numbers as numbers, texts without regard to case; rows that are alike keep their order.
void sortRows(GridRows& rows, GridSorting by);

/// The steps back and forth over edits of the grid. The title is no part of them: its text box has its own.
class GridHistory {
public:
    /// Remembers the rows as they are before an edit; what was undone can't be done again then.
    void remember(GridRows rows);

    void forget();

    bool canUndo() const { return !past_.empty(); }
    bool canRedo() const { return !future_.empty(); }

    void undo(GridRows& rows); ///< without a step to take, nothing happens
    void redo(GridRows& rows); ///< as undo()

private:
    static constexpr std::size_t mostSteps = 1000;

    static void step(std::vector<GridRows>& from, std::vector<GridRows>& to, GridRows& rows);

    std::vector<GridRows> past_;
    std::vector<GridRows> future_;
};

} // namespace zint
