#pragma once

#include "catalogue/ownParameter.h"

#include <cstddef>
#include <optional>
#include <string>

/// What an own parameter must be like.
namespace zint {

enum class ParameterField { name, shortName, request, header, filter, formula, unit, range };

/// What is wrong with a parameter.
struct ParameterFault {
    ParameterField field = ParameterField::name;
    std::size_t position = 0; ///< in the text of the field, in bytes from 0
    std::string text;         ///< in plain words: "the name is missing"

    bool operator==(const ParameterFault&) const = default;
};

/// The same for a reader who does not see the field: "formula, at character 4: there is no function VAL".
std::string faultText(const ParameterFault& fault);

/// The parameter in the form in which it is kept: texts without blanks at their ends, hexadecimal ones in
/// capitals without blanks and "0x", all in UTF-8, no range as 0 to 0. Its meaning stays.
OwnParameter normalised(OwnParameter parameter);

/// What is wrong with a normalised parameter alone; whether its name is free is up to OwnParameters.
std::optional<ParameterFault> faultOf(const OwnParameter& parameter);

/// Whether two parameters are the same but for their numbers.
bool isSameButNumber(const OwnParameter& one, OwnParameter other);

} // namespace zint
