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

inline constexpr std::array<const char*, 5> gridHeadings = {"Code", "Code Description", "Unit Conversion",
                                                            "Poll Frequency", "Offset"};

/// A cell's text: choosers as number + ">" + name, numbers in decimal.
std::string cellText(const GridRow& row, GridColumn column);

/// Writes what an editor holds into a cell. The code can't be edited and stays.
/// @throws RunTimeError 13 or 6 for a number that can't be read; the row is then as it was
void setCell(GridRow& row, GridColumn column, std::string_view text);

/// The entries of the unit chooser for a row: its own conversion first, then those that may take its place.
std::vector<std::string> conversionChoices(std::int32_t conversion);

/// Sets frequency (0 or 1) and offset "0" in all rows.
void setAllFrequencies(DesignGrid& grid, std::int32_t frequency);

/// Adds a row for a request; its description is left to be typed.
void addRow(DesignGrid& grid, std::string code);

/// Puts the row in front of the one that stands at `to` now, or at the end for `to` == row count.
void moveRow(DesignGrid& grid, std::size_t from, std::size_t to);

/// Sorts by a column: numbers as numbers, texts without regard to case; rows that are alike keep their order.
void sortRows(DesignGrid& grid, GridColumn column, bool descending);

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
