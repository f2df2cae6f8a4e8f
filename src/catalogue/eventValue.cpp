#include "catalogue/eventValue.h"

#include "catalogue/ownParameter.h"
#include "catalogue/standardConversion.h"
#include "shared/runTimeError.h"
#include "vehicle/parameters.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace zint {
namespace {

using converted::Rounded;
using converted::Value;
using converted::Words;

bool isRawNumber(double value)
{
    return value >= std::numeric_limits<std::int32_t>::min() &&
           value <= std::numeric_limits<std::int32_t>::max() && value == std::trunc(value);
}

/// @throws RunTimeError
std::int32_t rawNumber(double value)
{
    if (!isRawNumber(value))
        throw RunTimeError::overflow();
    return static_cast<std::int32_t>(value);
}

Value standardValue(const StandardConversion& conversion, double value)
{
    const FieldTraits* field = parameterField(conversion.pid, conversion.field);
    if (field->hasWords)
        return Words{fieldWords(conversion.pid, conversion.field, value), value};
    const Scale scale = scaleOf(field->unit, conversion.units);
    return Rounded{scale.of(value), decimalsFor(field->step * scale.times)};
}

/// A formula's result, whose steps are not known: six digits, and three decimals at most, but all digits in
/// front of the point.
double roundedOwn(double value)
{
    constexpr int digits = 6;
    constexpr int most = 3;
    const double size = std::abs(value);
    if (size == std::round(size))
        return value;
    const int decimals =
        size < 1 ? digits : std::clamp(digits - 1 - static_cast<int>(std::log10(size)), 0, most);
    const double scale = std::pow(10, decimals);
    return std::round(value * scale) / scale + 0.0; // no zero with a sign
}

} // namespace

bool isValueOf(const DesignEntry& event, double number)
{
    return keepsRawValues(event.conversion) ? isRawNumber(number) : std::isfinite(number);
}

Value convertedValue(const DesignEntry& event, double value)
{
    if (const Conversion* row = findConversion(event.conversion))
        return row->formula(rawNumber(value));
    if (const auto standard = standardConversion(event.conversion))
        return standardValue(*standard, value);
    if (event.conversion >= OwnParameter::firstNumber) // also one that is not defined here
        return roundedOwn(value);
    return converted::Placeholder();
}

void appendEventValue(std::string& text, const DesignEntry& event, double value)
{
    appendValue(text, convertedValue(event, value));
}

std::string_view unitOf(const DesignEntry& event)
{
    if (const auto standard = standardConversion(event.conversion))
        return scaleOf(parameterField(standard->pid, standard->field)->unit, standard->units).unit;
    return event.own != nullptr ? std::string_view(event.own->unit) : unitText(event.conversion);
}

std::string_view unitNameOf(const DesignEntry& event)
{
    const std::string_view unit = unitOf(event);
    return unit.substr(std::min(unit.find_first_not_of(' '), unit.size()));
}

std::string displayText(const DesignEntry& event, double value)
{
    std::string text;
    appendEventValue(text, event, value);
    const std::string_view unit = unitOf(event);
    if (!keepsRawValues(event.conversion) && !unit.empty())
        text += ' ';
    return text += unit;
}

std::string shownText(const DesignEntry& event, double value)
{
    try {
        return displayText(event, value);
    } catch (const RunTimeError& error) {
        return error.what();
    }
}

bool hasWords(const DesignEntry& event)
{
    const auto standard = standardConversion(event.conversion);
    return standard && parameterField(standard->pid, standard->field)->hasWords;
}

namespace {

struct Number {
    using Result = std::optional<double>;

    Result operator()(std::int32_t value) const { return value; }
    Result operator()(double value) const { return value; }
    Result operator()(Rounded value) const { return value.number; }
    Result operator()(const Words& words) const { return words.number; }
    Result operator()(converted::Hexadecimal value) const { return value.number; }
    Result operator()(converted::WithoutUnit value) const { return value.number; }
    Result operator()(converted::Placeholder /*words*/) const { return std::nullopt; }
};

} // namespace

std::optional<double> drawnNumber(const DesignEntry& event, double value)
{
    try {
        return std::visit(Number{}, convertedValue(event, value));
    } catch (const RunTimeError&) {
        return std::nullopt;
    }
}

} // namespace zint
