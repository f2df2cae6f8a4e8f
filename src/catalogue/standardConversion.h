#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// The conversions that stand for the fields of the standard's parameters (SAE J1979). Designs and logs keep
/// their numbers: 1000 + 10 * parameter + field, in imperial units 5000 + 10 * parameter + field.
namespace zint {

enum class UnitSystem { metric, imperial };

/// Which field a conversion shows, and how.
struct StandardConversion {
    std::uint8_t pid;
    std::uint8_t field; ///< its place among the parameter's, from 0
    UnitSystem units = UnitSystem::metric;

    bool operator==(const StandardConversion&) const = default;
};

/// The field behind a conversion's number; nothing for a number that stands for none.
std::optional<StandardConversion> standardConversion(std::int32_t conversion);

std::int32_t numberOf(const StandardConversion& conversion);

/// A unit, and how values in the metric one become values in it: value * times + plus.
struct Scale {
    std::string_view unit;
    double times = 1;
    double plus = 0;

    double of(double value) const { return value * times + plus; }
};

/// What a metric unit is in a system. What both share stays as it is.
Scale scaleOf(std::string_view metricUnit, UnitSystem units);

/// Whether imperial countries have a unit of their own for it.
bool hasImperialUnit(std::string_view metricUnit);

/// How many decimals a number needs that comes in such steps; at most 6.
int decimalsFor(double step);

/// A conversion as a chooser names it: "Coolant temperature, °C".
std::string nameOf(const StandardConversion& conversion);

} // namespace zint
