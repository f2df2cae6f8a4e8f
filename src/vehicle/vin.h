#pragma once

#include <string_view>

namespace zint {

/// How a vehicle identification number is made. It is shown as it was read, whatever this says.
struct VinCheck {
    bool isLengthRight = false;   ///< 17 characters
    bool areLettersRight = false; ///< digits and capital letters without I, O and Q
    /// Only a hint: vehicles for other markets than North America need not have a check digit.
    bool doesCheckDigitFit = false;

    bool isWellFormed() const { return isLengthRight && areLettersRight; }
    bool operator==(const VinCheck&) const = default;
};

VinCheck checkVin(std::string_view vin);

} // namespace zint
