#pragma once

#include "sim/simulationOptions.h"

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <sstream>
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

/// A number, perhaps with "~" and its tolerance, words, or "-".
inline Figure figureIn(const std::string& text)
{
    char* end = nullptr;
    const double number = std::strtod(text.c_str(), &end);
    if (text == "-" || end == text.c_str() || (*end != '\0' && *end != '~'))
        return {.words = text == "-" ? "" : text};
    return {.number = number, .tolerance = *end == '~' ? std::strtod(end + 1, nullptr) : -1};
}

inline std::vector<ParameterFigures> readFigures()
{
    std::ifstream file(ZINT_FIGURES);
    std::vector<ParameterFigures> figures;
    for (std::string line; std::getline(file, line);) {
        std::istringstream stream(line);
        std::vector<std::string> texts;
        for (std::string text; std::getline(stream, text, '\t');)
            texts.push_back(text);
        if (line.starts_with('#'))
            continue;
        ParameterFigures& row = figures.emplace_back();
        row.pid = static_cast<std::uint8_t>(std::stoi(texts.at(0), nullptr, 16));
        row.banks = texts.at(1) == "two" ? Banks::two : texts.at(1) == "four" ? Banks::four : Banks::either;
        row.tolerance = std::stod(texts.at(2));
        for (std::size_t field = 3; field < texts.size(); ++field)
            row.fields.push_back(figureIn(texts[field]));
    }
    return figures;
}

inline const std::vector<ParameterFigures>& parameterFigures()
{
    static const std::vector<ParameterFigures> figures = readFigures();
    return figures;
}

} // namespace zint
