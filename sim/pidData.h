#pragma once

#include "sim/message.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

/// The data bytes of a parameter, written as the standard (SAE J1979) scales physical values.
namespace zint {

/// The bytes of one or more fields, in their order.
class PidData {
public:
    PidData() = default;

    /// The lowest bytes of a number, the most significant first.
    PidData(std::uint64_t number, int byteCount) { appendNumber(bytes_, number, byteCount); }

    const Message& bytes() const { return bytes_; }

    PidData& operator+=(const PidData& next)
    {
        bytes_.insert(bytes_.end(), next.bytes_.begin(), next.bytes_.end());
        return *this;
    }

    friend PidData operator+(PidData first, const PidData& second) { return first += second; }

private:
    Message bytes_;
};

/// How a physical value becomes a raw one: (value + offset) * times / over, to the nearest that its bytes
/// hold. Called with values, it writes one field after the other.
struct PidScale {
    int byteCount = 1;
    double times = 1;
    double over = 1;
    double offset = 0;
    bool isSigned = false; ///< in two's complement

    template <typename... Values>
    PidData operator()(Values... values) const
    {
        PidData data;
        ((data += field(static_cast<double>(values))), ...);
        return data;
    }

private:
    PidData field(double value) const
    {
        const double end = std::ldexp(1, 8 * byteCount);
        const double least = isSigned ? -end / 2 : 0;
        const double raw = std::round(std::clamp((value + offset) * times / over, least, least + end - 1));
        return {static_cast<std::uint64_t>(static_cast<std::int64_t>(raw)), byteCount};
    }
};

/// By what they stand for. A name that tells no size is one byte; "fine" and "word" are two.
namespace scaled {

inline constexpr PidScale byte{};
inline constexpr PidScale word{.byteCount = 2};
inline constexpr PidScale signedWord{.byteCount = 2, .isSigned = true};
inline constexpr PidScale fourBytes{.byteCount = 4};
inline constexpr PidScale percent{.times = 255, .over = 100};
inline constexpr PidScale trim{.times = 128, .over = 100, .offset = 100};
inline constexpr PidScale torque{.offset = 125};
inline constexpr PidScale celsius{.offset = 40};
inline constexpr PidScale fineCelsius{.byteCount = 2, .times = 10, .offset = 40};
inline constexpr PidScale finePressure{.byteCount = 2, .times = 32};                   ///< kPa
inline constexpr PidScale tenKilopascals{.byteCount = 2, .over = 10};                  ///< kPa
inline constexpr PidScale centi{.byteCount = 2, .times = 100};                         ///< kPa, g/s
inline constexpr PidScale signedCenti{.byteCount = 2, .times = 100, .isSigned = true}; ///< kPa, percent
inline constexpr PidScale airFlowSensor{.byteCount = 2, .times = 32};                  ///< g/s
inline constexpr PidScale quarterPascals{.byteCount = 2, .times = 4, .isSigned = true};
inline constexpr PidScale turns{.byteCount = 2, .times = 4}; ///< 1/min
inline constexpr PidScale sensorVolts{.times = 200};
inline constexpr PidScale concentration{.byteCount = 2, .over = 0.001526}; ///< percent
inline constexpr PidScale measuredRatio{.byteCount = 2, .over = 0.000122};

} // namespace scaled
} // namespace zint
