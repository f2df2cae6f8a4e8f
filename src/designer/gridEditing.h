#pragma once

#include "designer/designGrid.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// What the user does to the designer's grid.
namespace zint {

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
std::string cellText(const GridRow& row, GridColumn column);

/// Writes what an editor holds into a cell. The code can't be edited and stays. As a frequency counts a
/// number that is typed, or the one of a chooser's entry; any other text is 0.
/// @throws RunTimeError 13 for a negative frequency or an offset that is no number, 6 for a number that is
/// too large; NotStorable; the row is then as it was
void setCell(GridRow& row, GridColumn column, std::string_view text);

/// The entries of the unit chooser for a row: its own conversion first, then those that may take its place.
std::vector<std::string> conversionChoices(std::int32_t conversion);

/// Sets the frequency, 0 or 1, in all rows, and no offset.
void setAllFrequencies(DesignGrid& grid, std::int32_t frequency);

/// What a cell takes, where it can be found, and what was typed: for the user whose text setCell() refused.
std::string cellAdvice(std::size_t row, GridColumn column, std::string_view text);

/// The requests that the catalogue knows: code, a blank, name.
std::vector<std::string> requestChoices();

/// Adds a row for a request: one of requestChoices() with its name and unit, any other as it was typed; its
/// description is left to be typed. @throws NotStorable
void addRow(DesignGrid& grid, const std::string& request);

/// Whether a request is hexadecimal, with or without blanks, as vehicles take them.
bool isHexadecimal(std::string_view request);

void removeRow(DesignGrid& grid, std::size_t row);
void duplicateRow(DesignGrid& grid, std::size_t row); ///< the copy stands behind it

/// Puts the row in front of the one that stands at `to` now, or at the end for `to` == row count.
void moveRow(DesignGrid& grid, std::size_t from, std::size_t to);

/// How the rows have been sorted.
struct GridSorting {
    GridColumn column;
    bool descending = false;

    bool operator==(const GridSorting&) const = default;
};

/// Sorts by a column: numbers as numbers, texts without regard to case; rows that are alike keep their order.
void sortRows(DesignGrid& grid, GridSorting by);

/// The steps back and forth over edits of the grid. The title is no part of them: its text box has its own.
class GridHistory {
public:
    using Rows = std::vector<GridRow>;

    /// Remembers the rows as they are before an edit; what was undone can't be done again then.
    void remember(const Rows& rows);

    void forget();

    bool canUndo() const { return !past_.empty(); }
    bool canRedo() const { return !future_.empty(); }

    void undo(Rows& rows); ///< without a step to take, nothing happens
    void redo(Rows& rows); ///< as undo()

private:
    static constexpr std::size_t mostSteps = 1000;

    static void step(std::vector<Rows>& from, std::vector<Rows>& to, Rows& rows);

    std::vector<Rows> past_;
    std::vector<Rows> future_;
};

} // namespace zint
