#pragma once

#include "catalogue/design.h"
#include "catalogue/standardConversion.h"
#include "vehicle/parameters.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// All parameters of the standard (SAE J1979, mode 01), as designer and command line offer them.
namespace zint {

/// A field of a parameter, and how it is polled.
struct StandardParameter {
    std::uint8_t pid = 0;
    std::uint8_t place = 0;   ///< of the field among the parameter's, from 0
    std::string code;         ///< its request, "010C"
    FieldTraits field;        ///< name, unit and range in metric units
    std::string_view group;   ///< "Engine and speed"
    std::int32_t frequency{}; ///< that fits: once in so many loops

    StandardConversion conversion(UnitSystem units) const { return {pid, place, units}; }
    std::string_view unit(UnitSystem units) const { return scaleOf(field.unit, units).unit; }
    double minimum(UnitSystem units) const { return scaleOf(field.unit, units).of(field.minimum); }
    double maximum(UnitSystem units) const { return scaleOf(field.unit, units).of(field.maximum); }
};

/// The groups in their order.
std::span<const std::string_view> parameterGroups();

/// By parameter and field.
const std::vector<StandardParameter>& standardParameters();

/// How often a number is polled whose unit alone is known: temperatures seldom.
std::int32_t frequencyForUnit(std::string_view unit);

/// The event that polls a parameter in every so many loops as fits it.
DesignEntry eventFor(const StandardParameter& parameter, UnitSystem units);

/// The parameter that a request of mode 01 asks for, in capitals or small letters, with or without blanks;
/// nothing for any other request, and for one of several parameters.
std::optional<std::uint8_t> requestedParameter(std::string_view code);

/// What a user can look for in a list of parameters.
struct SearchedTexts {
    std::string_view code; ///< of the request
    std::string_view name;
    std::string_view unit;
    std::string_view group;
};

/// Whether all words of a text are found, in any case: in name, unit or group, or where the code begins, with
/// or without the service ("010C", "0C"). No words are found anywhere.
bool isFound(const SearchedTexts& texts, std::string_view words);

bool isFound(const StandardParameter& parameter, std::string_view words, UnitSystem units);

} // namespace zint
