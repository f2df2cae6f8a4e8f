#pragma once

#include <cstdint>
#include <string>

namespace zint {

/// A parameter that the user has defined: a request, and a formula for what comes back.
struct OwnParameter {
    static constexpr std::int32_t firstNumber = 10000;

    std::int32_t number = 0; ///< its conversion's, from firstNumber on; 0: it has none yet
    std::string name;        ///< "Transmission oil temperature"
    std::string shortName;   ///< "Trans temp"; may be empty
    std::string request;     ///< hexadecimal, such as "221940"
    std::string header;      ///< of the request, such as "7E1"; empty: the adapter's usual one
    std::string filter;      ///< of the replies, such as "7E9"; empty: the adapter's usual one
    std::string formula;     ///< over the data bytes A, B, ... Z, AA, AB, which follow the repeated request
    std::string unit;        ///< "°C"; may be empty
    double minimum = 0;      ///< in the unit, for gauges and plausibility
    double maximum = 0;      ///< not above the minimum: there is no range

    bool operator==(const OwnParameter&) const = default;
};

} // namespace zint
