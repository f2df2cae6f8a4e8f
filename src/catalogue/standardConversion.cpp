#include "catalogue/standardConversion.h"

#include "vehicle/parameters.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace zint {
namespace {

constexpr std::int32_t firstMetric = 1000;
constexpr std::int32_t firstImperial = 5000;
constexpr std::int32_t fieldsOfParameter = 10;
constexpr std::int32_t numbers = 256 * fieldsOfParameter;

struct ImperialUnit {
    std::string_view metric;
    Scale scale;
};

// International foot, pound and inch; US gallon; water at 4 °C.
constexpr std::array imperialUnits = {
    ImperialUnit{"°C", {"°F", 1.8, 32}},          ImperialUnit{"km/h", {"mph", 1 / 1.609344}},
    ImperialUnit{"km", {"mi", 1 / 1.609344}},     ImperialUnit{"kPa", {"psi", 0.1450377377}},
    ImperialUnit{"Pa", {"inH2O", 0.00401463}},    ImperialUnit{"g/s", {"lb/min", 0.1322773573}},
    ImperialUnit{"kg/h", {"lb/h", 2.2046226218}}, ImperialUnit{"L/h", {"gal/h", 0.2641720524}},
    ImperialUnit{"L", {"gal", 0.2641720524}},     ImperialUnit{"N·m", {"lb·ft", 0.7375621493}},
};

const ImperialUnit* imperialUnit(std::string_view metric)
{
    const auto* const found = std::ranges::find(imperialUnits, metric, &ImperialUnit::metric);
    return found != imperialUnits.end() ? found : nullptr;
}

} // namespace

std::optional<StandardConversion> standardConversion(std::int32_t conversion)
{
    const bool isImperial = conversion >= firstImperial;
    if (conversion < firstMetric || conversion >= firstImperial + numbers)
        return std::nullopt;
    const std::int32_t number = conversion - (isImperial ? firstImperial : firstMetric);
    if (number >= numbers)
        return std::nullopt;
    const StandardConversion found{.pid = static_cast<std::uint8_t>(number / fieldsOfParameter),
                                   .field = static_cast<std::uint8_t>(number % fieldsOfParameter),
                                   .units = isImperial ? UnitSystem::imperial : UnitSystem::metric};
    if (!parameterField(found.pid, found.field))
        return std::nullopt;
    return found;
}

std::int32_t numberOf(const StandardConversion& conversion)
{
    const std::int32_t first = conversion.units == UnitSystem::metric ? firstMetric : firstImperial;
    return first + conversion.pid * fieldsOfParameter + conversion.field;
}

Scale scaleOf(std::string_view metricUnit, UnitSystem units)
{
    const ImperialUnit* other = units == UnitSystem::imperial ? imperialUnit(metricUnit) : nullptr;
    return other != nullptr ? other->scale : Scale{metricUnit};
}

bool hasImperialUnit(std::string_view metricUnit) { return imperialUnit(metricUnit) != nullptr; }

int decimalsFor(double step)
{
    constexpr double most = 6;
    constexpr double justBelow = 1e-9; // a step of 0.1 is not quite a tenth
    return static_cast<int>(std::clamp(std::ceil(-std::log10(step) - justBelow), 0.0, most));
}

std::string nameOf(const StandardConversion& conversion)
{
    const FieldTraits* field = parameterField(conversion.pid, conversion.field);
    if (!field)
        return {};
    const std::string_view unit = scaleOf(field->unit, conversion.units).unit;
    return field->name + (unit.empty() ? "" : ", " + std::string(unit));
}

} // namespace zint
