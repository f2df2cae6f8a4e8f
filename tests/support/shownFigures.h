#pragma once

#include "parameters/standardParameters.h"
#include "shared/module1.h"
#include "support/parameterFigures.h"

#include <gtest/gtest.h>

#include <charconv>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What a run must show of a figured vehicle.
namespace zint {

struct ShownFigure {
    StandardParameter parameter;
    std::optional<double> number;
    std::string words;
    double tolerance = 0;

    /// Whether it has a sample. Words that stand for no number have none.
    bool isSampled() const { return number || parameter.field.hasWords; }

    std::string name() const { return parameter.code + " " + parameter.field.name; }

    /// @param text the value with its unit, or words
    void expectIn(const std::string& text) const
    {
        if (!number) {
            EXPECT_EQ(text, words) << name();
            return;
        }
        double shown = 0;
        const auto rest = std::from_chars(text.data(), text.data() + text.size(), shown).ptr - text.data();
        EXPECT_NEAR(shown, *number, tolerance) << name();
        const std::string unit(parameter.field.unit);
        EXPECT_EQ(text.substr(static_cast<std::size_t>(rest)), unit.empty() ? "" : " " + unit) << name();
    }
};

/// What a vehicle tells, by parameter.
using ToldFigures = std::map<std::uint8_t, const ParameterFigures*>;

/// What a bitmap lists.
inline std::string listedBy(std::uint8_t bitmap, const ToldFigures& told)
{
    constexpr int listed = 0x20;
    std::string words;
    for (int pid = bitmap + 1; pid <= bitmap + listed; ++pid) {
        const bool isNextBitmap = pid == bitmap + listed;
        if (isNextBitmap ? told.rbegin()->first > pid : told.contains(static_cast<std::uint8_t>(pid)))
            words += (words.empty() ? "" : " ") + hexText(pid, 2);
    }
    return words;
}

/// Nothing for what the vehicle does not have.
inline std::optional<ShownFigure> shownFigure(const StandardParameter& parameter, const ToldFigures& told)
{
    constexpr int bitmaps = 0x20;
    if (parameter.pid % bitmaps == 0) {
        const std::string words = listedBy(parameter.pid, told);
        return words.empty() ? std::nullopt : std::optional<ShownFigure>({parameter, std::nullopt, words});
    }
    const auto row = told.find(parameter.pid);
    if (row == told.end() || parameter.place >= row->second->fields.size())
        return std::nullopt;
    const Figure& figure = row->second->fields[parameter.place];
    const double exact = figure.tolerance < 0 ? row->second->tolerance : figure.tolerance;
    return ShownFigure{.parameter = parameter,
                       .number = figure.number,
                       .words = std::string(figure.isTold() ? figure.words : "not supported"),
                       .tolerance = exact * 1.7 + 1e-9}; // with what is rounded where it is shown
}

/// Parameters with all of their fields, as many together as a run takes, in the order of the table.
inline std::vector<std::vector<ShownFigure>> shownFigures(bool fourBanks)
{
    constexpr std::size_t many = 46; // leaves room for a parameter's fields, and for those that are not told
    ToldFigures told;
    for (const ParameterFigures& row : parameterFigures()) {
        if (row.banks != (fourBanks ? Banks::two : Banks::four))
            told[row.pid] = &row;
    }
    std::vector<std::vector<ShownFigure>> runs(1);
    for (const StandardParameter& parameter : standardParameters()) {
        if (parameter.place == 0 && runs.back().size() >= many)
            runs.emplace_back();
        if (const auto shown = shownFigure(parameter, told))
            runs.back().push_back(*shown);
    }
    return runs;
}

} // namespace zint
