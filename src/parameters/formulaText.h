#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <string_view>

/// Formulas as users type them, and the one form in which they are computed.
namespace zint {

/// What is wrong with a formula, and where.
struct FormulaFault {
    std::size_t position = 0; ///< in the text as typed, in bytes from 0; its size: behind the end
    std::string text;         ///< in plain words: "there is no function VAL"

    bool operator==(const FormulaFault&) const = default;
};

/// What a spreadsheet calls the column of an index from 0: "A", "Z", "AA".
std::string byteName(std::size_t index);

/// A formula without anything that only a user's text has: parts have a blank behind them, names have one
/// form, and "{A:3}" is a function.
struct FormulaText {
    std::string text;
    std::set<std::size_t> bytes;       ///< that it uses, from 0
    std::optional<FormulaFault> fault; ///< the first one; then the rest means nothing

    static constexpr std::size_t longest = 1000;  ///< characters of a typed text
    static constexpr std::size_t mostBytes = 256; ///< A to IV
};

/// Reads a formula as typed. Names may be in any case. What it finds no fault with can be computed.
FormulaText readFormula(std::string_view typed);

} // namespace zint
