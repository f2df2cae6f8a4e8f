#pragma once

#include <array>
#include <cstdint>
#include <string_view>

/// The mode-01 parameters that the program knows by name, and the ways of showing and polling them.
namespace zint {

inline constexpr int pidCount = 32; ///< PIDs 00 to 1F

/// Conversion codes that the code refers to by name; a code is a row of ConversionTable.
inline constexpr std::int32_t displayHexConversion = 20;

/// Conversions of one class show the same quantity in different units. Class 0 is no family.
struct Conversion {
    std::string_view name;
    std::int32_t conversionClass;
};

extern const std::array<std::string_view, pidCount> PidNames;         ///< by PID
extern const std::array<std::int32_t, pidCount> PidDefaultConversion; ///< by PID; rows of ConversionTable
extern const std::array<Conversion, 25> ConversionTable;              ///< by conversion code
/// The row for a conversion code; null for a number that is none.
const Conversion* findConversion(std::int32_t code);

extern const std::array<std::string_view, 14> PollChoices; ///< entries of the frequency chooser

} // namespace zint
