#pragma once

#include "catalogue/pidCatalogue.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// What a raw value from the vehicle reads as under a conversion.
namespace zint {

/// The value alone, such as "55.935" or "&H1F40". Decimal values have up to 15 significant digits.
/// @param conversion a row of ConversionTable; any other number reads as an empty text
/// @param raw the data bytes as one number: A, or 256 * A + B
/// @throws RunTimeError 6 when the value exceeds the signed 32-bit range on its way; one or two bytes never
/// do
std::string convert(std::int32_t conversion, std::int32_t raw);

/// The same behind a text, which stays as it was when this throws.
void appendConverted(std::string& text, std::int32_t conversion, std::int32_t raw);

/// The unit alone, such as "mph"; empty for a number that is no conversion.
std::string_view unitText(std::int32_t conversion);

/// The value directly followed by its unit, such as "55.935mph".
std::string displayText(std::int32_t conversion, std::int32_t raw);

/// The value as a number, for drawing and averaging; nothing where the conversion shows no number.
/// @throws RunTimeError 6 as convert()
std::optional<double> convertedNumber(std::int32_t conversion, std::int32_t raw);

} // namespace zint
