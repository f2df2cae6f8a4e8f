#pragma once

#include "parameters/ownParameters.h"

#include <cstddef>
#include <istream>
#include <ostream>
#include <string>
#include <vector>

/// Own parameters as phone programs exchange them: a spreadsheet's text with the columns Name, ShortName,
/// ModeAndPID, Equation, Min Value, Max Value, Units, Header.
namespace zint {

/// A line of which something is to be told.
struct CsvLine {
    std::size_t number = 0; ///< from 1
    std::string name;       ///< of the parameter; empty where there is none
    std::string why;        ///< in plain words: "formula, at character 3: there is no function VAL"

    bool operator==(const CsvLine&) const = default;
};

/// "line 7, \"Oil\": ..."
std::string lineText(const CsvLine& line);

/// What has become of the lines of a file. Empty ones, comments and the head are none.
struct CsvImport {
    std::vector<OwnParameterPointer> added;
    std::vector<OwnParameterPointer> replaced; ///< as they are now
    std::vector<CsvLine> present;              ///< the table has the same already
    std::vector<CsvLine> refused;

    std::size_t lines() const { return added.size() + replaced.size() + present.size() + refused.size(); }
};

/// "12 parameters added, 1 replaced, 2 already there, 1 refused"
std::string importText(const CsvImport& import);

/// What becomes of a parameter whose name the table has with another meaning.
enum class SameName {
    keep,    ///< the table's stays, and the line is refused
    replace, ///< the line's takes its place, with the same number and filter
};

/// Adds the parameters of a file to a table. Columns may stand in any order, between commas, semicolons or
/// tabs; without a head they stand in the usual one. What can't be read of a file is told as a line.
CsvImport importCsv(std::istream& stream, OwnParameters& table, SameName sameName = SameName::keep);

/// Writes all parameters; lines end with CR LF.
/// @return how many have a receive filter, for which the form has no column
std::size_t exportCsv(std::ostream& stream, const OwnParameters& table);

} // namespace zint
