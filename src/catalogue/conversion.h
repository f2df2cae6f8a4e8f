#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

/// What a raw value from the vehicle reads as under a conversion.
namespace zint {

/// What becomes of a raw value.
namespace converted {
struct Hexadecimal {
    std::int32_t number; ///< shown as "&H1F40"
};
struct WithoutUnit {
    std::int32_t number; ///< shown with " ?" behind it, for nobody has chosen a unit
};
struct Rounded {
    double number;
    int decimals;
};
struct Words {
    std::string text;
    double number; ///< stands for them
};
using Placeholder = std::string_view; ///< stands for no number
using Value = std::variant<std::int32_t, double, Rounded, Hexadecimal, WithoutUnit, Words, Placeholder>;
} // namespace converted

/// A way of showing a raw value. Conversions of one class show the same quantity in different units; class 0
/// is no family.
struct Conversion {
    std::string_view name;
    std::int32_t conversionClass;
    std::string_view unit;
    converted::Value (*formula)(std::int32_t raw);
};

extern const std::array<Conversion, 25> ConversionTable; ///< by conversion code

/// The codes that the program refers to by name.
namespace conversionCode {
inline constexpr std::int32_t rpm = 5;
inline constexpr std::int32_t airFlow = 17;
inline constexpr std::int32_t displayHex = 20;
} // namespace conversionCode

/// The row for a conversion code; null for a number that is none.
const Conversion* findConversion(std::int32_t code);

/// The value alone, such as "55.935" or "&H1F40". Decimal values have up to 15 significant digits.
/// @param conversion a row of ConversionTable; any other number reads as an empty text
/// @param raw the data bytes as one number: A, or 256 * A + B
/// @throws RunTimeError 6 when the value exceeds the signed 32-bit range on its way; one or two bytes never
/// do
std::string convert(std::int32_t conversion, std::int32_t raw);

/// The same behind a text, which stays as it was when this throws.
void appendConverted(std::string& text, std::int32_t conversion, std::int32_t raw);

/// Adds a converted value to a text, as convert() gives it.
void appendValue(std::string& text, const converted::Value& value);

/// The unit alone, such as "mph"; empty for a number that is no conversion.
std::string_view unitText(std::int32_t conversion);

/// The value directly followed by its unit, such as "55.935mph".
std::string displayText(std::int32_t conversion, std::int32_t raw);

} // namespace zint
