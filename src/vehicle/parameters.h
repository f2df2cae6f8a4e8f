#pragma once

#include "vehicle/bytes.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The parameters of modes 01 and 02 (SAE J1979): one table of names, units, formulas and words.
namespace zint {

/// One thing that a parameter tells: a number with its unit, or words.
struct ParameterValue {
    std::string name;             ///< "Engine speed"
    std::optional<double> number; ///< in the unit
    std::string unit;             ///< "rpm"; empty for words and counts without one
    std::string text;             ///< of an enumeration, bits or texts; empty for numbers

    bool operator==(const ParameterValue&) const = default;
};

/// What other parameters of the same control unit change in the reading of one.
struct ParameterContext {
    bool hasFourBanks = false; ///< it supports 1D, not 13: the oxygen sensors are numbered over four banks
    Bytes largestValues;       ///< the data of 4F; empty: not read
    Bytes largestAirFlow;      ///< the data of 50
};

/// How many data bytes a parameter has; nothing for one that the standard does not define.
/// Fuel trims (06 to 09, 55 to 58) have a second byte only in vehicles with four banks.
std::optional<std::size_t> parameterLength(std::uint8_t pid, const ParameterContext& context = {});

/// What a parameter is called as a whole; empty for one that the standard does not define.
std::string_view parameterName(std::uint8_t pid);

/// What the data bytes tell, in the order of the table, without fields that their own support bits rule out.
/// @param data may be longer (padding); shorter data tell only what they hold
std::vector<ParameterValue> parameterValues(std::uint8_t pid, BytesView data,
                                            const ParameterContext& context = {});

/// What a field of the table can tell.
struct FieldTraits {
    std::string name;      ///< "Engine speed"
    std::string_view unit; ///< "rpm"; empty for words and counts without one
    bool hasWords = false; ///< its numbers stand for words
    double minimum = 0;    ///< in the unit; for words the smallest number
    double maximum = 0;
    double step = 1; ///< between two numbers
    /// The parameter whose data change the scale of this one, where a vehicle has it; 0: none.
    std::uint8_t scaledBy = 0;
};

/// A field of a parameter. Files keep the place: it must not change.
/// @param field its place among the parameter's, from 0
/// @return null where there is none
const FieldTraits* parameterField(std::uint8_t pid, std::size_t field);

/// What data say of one field: a number, or words in place of one.
struct FieldReading {
    std::optional<double> number; ///< in the unit; of words what stands for them
    std::string words;            ///< why there is no number, such as "not available"

    bool operator==(const FieldReading&) const = default;
};

/// Reads one field. @return nothing where there is no such field, or the data are too short for it
std::optional<FieldReading> readField(std::uint8_t pid, std::size_t field, BytesView data,
                                      const ParameterContext& context = {});

/// The words that a field's number stands for; empty for fields that have none.
std::string fieldWords(std::uint8_t pid, std::size_t field, double number);

} // namespace zint
