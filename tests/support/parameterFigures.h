#pragma once

#include "sim/simulationOptions.h"

#include <chrono>
#include <cstdint>
#include <fstream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

/// What each parameter of the standard tells of a simulated vehicle at one moment, field by field.
///
/// The figures are worked out by hand from the drive cycle and the model of the engine, in the units of the
/// standard; neither the vehicle's bytes nor the program's decoding had a part in them.
namespace zint {

inline constexpr std::chrono::milliseconds figuredMoment{634'500};

/// A vehicle that stands still at that moment, 84.5 s into a round, when it has begun to brake: that of
/// zint-sim --protocol can --all-parameters (or --four-banks) --moment 634500.
inline VehicleOptions figuredVehicle(bool fourBanks)
{
    return {.protocol = VehicleProtocol::can,
            .allParameters = true,
            .fourBanks = fourBanks,
            .moment = figuredMoment};
}

/// A field's value: a number, or words, or neither for one that the vehicle does not have.
struct Figure {
    bool isTold() const { return number || !words.empty(); }

    std::optional<double> number;
    std::string words;
    double tolerance = -1; ///< negative: that of the parameter
};

enum class Banks { either, two, four };

/// In the order of the table's rows.
struct ParameterFigures {
    std::uint8_t pid = 0;
    Banks banks = Banks::either; ///< of the vehicle that tells this
    double tolerance = 0;        ///< half a step of the raw value
    std::vector<Figure> fields;
};

inline Figure figureIn(const std::string& text)
{
    std::size_t length = 0;
    Figure figure;
    if (text == "-")
        return figure;
    try {
        figure.number = std::stod(text, &length);
    } catch (const std::invalid_argument&) {
    }
    if (length == text.size())
        return figure;
    if (length > 0 && text[length] == '~')
        figure.tolerance = std::stod(text.substr(length + 1));
    else
        figure = {.words = text};
    return figure;
}

inline std::vector<ParameterFigures> readFigures()
{
    std::ifstream file(ZINT_FIGURES);
    std::vector<ParameterFigures> figures;
    for (std::string line; std::getline(file, line);) {
        std::istringstream fields(line);
        std::string pid;
        std::string banks;
        std::string tolerance;
        if (line.starts_with('#') || !std::getline(fields, pid, '\t') || !std::getline(fields, banks, '\t') ||
            !std::getline(fields, tolerance, '\t'))
            continue;
        ParameterFigures& row = figures.emplace_back();
        row.pid = static_cast<std::uint8_t>(std::stoi(pid, nullptr, 16));
        row.banks = banks == "two" ? Banks::two : banks == "four" ? Banks::four : Banks::either;
        row.tolerance = std::stod(tolerance);
        for (std::string field; std::getline(fields, field, '\t');)
            row.fields.push_back(figureIn(field));
    }
    return figures;
}

inline const std::vector<ParameterFigures>& parameterFigures()
{
    static const std::vector<ParameterFigures> figures = readFigures();
    return figures;
}

} // namespace zint
