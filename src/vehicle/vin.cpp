#include "vehicle/vin.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace zint {
namespace {

constexpr std::size_t vinLength = 17;
constexpr std::size_t checkDigitPlace = 8;

/// What a character counts for; -1 for one that no VIN has.
int valueOf(char character)
{
    constexpr std::string_view digits = "0123456789";
    constexpr std::string_view letters = "ABCDEFGHJKLMNPRSTUVWXYZ";
    constexpr std::string_view letterValues = "12345678123457923456789";
    if (digits.find(character) != std::string_view::npos)
        return character - '0';
    const std::size_t place = letters.find(character);
    return place != std::string_view::npos ? letterValues[place] - '0' : -1;
}

bool fitsCheckDigit(std::string_view vin)
{
    constexpr std::array<int, vinLength> weights = {8, 7, 6, 5, 4, 3, 2, 10, 0, 9, 8, 7, 6, 5, 4, 3, 2};
    int sum = 0;
    for (std::size_t i = 0; i < vinLength; ++i)
        sum += weights.at(i) * valueOf(vin[i]);
    return vin[checkDigitPlace] == "0123456789X"[sum % 11];
}

} // namespace

VinCheck checkVin(std::string_view vin)
{
    VinCheck check;
    check.isLengthRight = vin.size() == vinLength;
    check.areLettersRight = std::ranges::all_of(vin, [](char character) { return valueOf(character) >= 0; });
    check.doesCheckDigitFit = check.isWellFormed() && fitsCheckDigit(vin);
    return check;
}

} // namespace zint
