#include "catalogue/conversion.h"

#include "shared/module1.h"
#include "shared/runTimeError.h"

#include <array>
#include <charconv>
#include <limits>
#include <variant>

namespace zint {
namespace {

/// A whole number, a decimal one, or a text that stands for no number.
using Value = std::variant<std::int32_t, double, std::string_view>;

struct Rule {
    Value (*value)(std::int32_t raw);
    std::string_view unit;
};

constexpr std::int32_t narrow(std::int64_t value)
{
    if (value < std::numeric_limits<std::int32_t>::min() || value > std::numeric_limits<std::int32_t>::max())
        throw RunTimeError::overflow();
    return static_cast<std::int32_t>(value);
}

constexpr std::int32_t plus(std::int32_t a, std::int32_t b) { return narrow(std::int64_t{a} + b); }
constexpr std::int32_t times(std::int32_t a, std::int32_t b) { return narrow(std::int64_t{a} * b); }

/// Percent of 255, cut off (not rounded) behind the second decimal place.
constexpr double bytePercentage(std::int32_t raw)
{
    const std::int32_t hundredths = times(raw, 10000) / 255;
    return hundredths * 0.01;
}

constexpr std::int32_t highByte(std::int32_t raw) { return raw / 256; }

/// Fuel from air flow. The stoichiometric ratio multiplies here; users have come to compare these figures.
constexpr double fuelFlow(std::int32_t raw) { return raw * 0.01 * 14.2; }

// Clang-format would put several of these on a line.
// clang-format off
constexpr std::array<Rule, ConversionTable.size()> rules = {{
    {[](std::int32_t x) -> Value { return x; }, " ?"},
    {[](std::int32_t x) -> Value { return bytePercentage(x); }, "%"},
    {[](std::int32_t x) -> Value { return plus(x, -128) * 0.78125; }, "%"},
    {[](std::int32_t x) -> Value { return plus(x, -40); }, "C"},
    {[](std::int32_t x) -> Value { return plus(x, -40) * 1.8 + 32; }, "F"},
    {[](std::int32_t x) -> Value { return x / 4; }, "rpm"},
    {[](std::int32_t x) -> Value { return x; }, "kph"},
    {[](std::int32_t x) -> Value { return x * 0.6215; }, "mph"},
    {[](std::int32_t x) -> Value { return x * 0.27778; }, "m/s"},
    {[](std::int32_t x) -> Value { return x; }, "kPa"},
    {[](std::int32_t x) -> Value { return x * 7.5; }, "Torr"},
    {[](std::int32_t x) -> Value { return x * 0.145; }, "psi"},
    {[](std::int32_t x) -> Value { return x * 0.2953; }, "inHg"},
    {[](std::int32_t) -> Value { return ""; }, ""},
    {[](std::int32_t x) -> Value { return x * 0.5 - 64; }, "Deg"},
    {[](std::int32_t x) -> Value { return highByte(x) * 0.005; }, "v"},
    {[](std::int32_t x) -> Value { return bytePercentage(x % 256); }, "%"},
    {[](std::int32_t x) -> Value { return x * 0.01; }, "gm/sec"},
    {[](std::int32_t x) -> Value { return times(x, 3); }, "kPaG"},
    {[](std::int32_t x) -> Value { return x * 0.435; }, "psiG"},
    {[](std::int32_t x) -> Value { return x; }, " "},
    {[](std::int32_t) -> Value { return "A:?????? B:??????"; }, " "},
    {[](std::int32_t x) -> Value { return fuelFlow(x); }, "gm/sec"},
    {[](std::int32_t x) -> Value { return fuelFlow(x) * 0.73722; }, "ml/sec"},
    {[](std::int32_t x) -> Value { return fuelFlow(x) * 0.701110513582; }, "gal/hour"},
}};
// clang-format on

// Rows that stand where ConversionTable has their names: Fahrenheit, RPM, STFT O2 sensor, kPa Gauge (fuel).
static_assert(std::get<double>(rules[4].value(40)) == 32 && ConversionTable.size() == rules.size());
static_assert(std::get<std::int32_t>(rules[5].value(8000)) == 2000);
static_assert(std::get<double>(rules[16].value(0x5AFF)) == 100);
static_assert(std::get<std::int32_t>(rules[18].value(100)) == 300);

const Rule& ruleOf(std::int32_t conversion) { return rules.at(static_cast<std::size_t>(conversion)); }

template <typename... Format>
void append(std::string& text, Format... valueAndFormat)
{
    std::array<char, 64> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), valueAndFormat...);
    text.append(buffer.data(), result.ptr);
}

std::string hexDigits(std::int32_t raw)
{
    std::string digits;
    append(digits, static_cast<std::uint32_t>(raw), 16); // a negative value as its 32 bits
    return upperCase(digits);
}

struct Writer {
    std::string& text;

    void operator()(std::int32_t value) const { append(text, value); }
    void operator()(std::string_view words) const { text += words; }
    void operator()(double value) const
    {
        constexpr int significantDigits = 15;
        append(text, value, std::chars_format::general, significantDigits);
    }
};

constexpr std::int32_t noConversion = 0;

} // namespace

void appendConverted(std::string& text, std::int32_t conversion, std::int32_t raw)
{
    if (findConversion(conversion) == nullptr)
        return;
    if (conversion == displayHexConversion) {
        (text += "&H") += hexDigits(raw);
        return;
    }
    std::visit(Writer{text}, ruleOf(conversion).value(raw));
    if (conversion == noConversion)
        text += " ?"; // and once more as the unit: it marks a value that nobody has chosen a unit for
}

std::string convert(std::int32_t conversion, std::int32_t raw)
{
    std::string text;
    appendConverted(text, conversion, raw);
    return text;
}

std::string_view unitText(std::int32_t conversion)
{
    return findConversion(conversion) != nullptr ? ruleOf(conversion).unit : std::string_view();
}

std::string displayText(std::int32_t conversion, std::int32_t raw)
{
    return convert(conversion, raw) + std::string(unitText(conversion));
}

std::optional<double> convertedNumber(std::int32_t conversion, std::int32_t raw)
{
    if (findConversion(conversion) == nullptr)
        return std::nullopt;
    const Value value = ruleOf(conversion).value(raw);
    if (const auto* whole = std::get_if<std::int32_t>(&value))
        return *whole;
    if (const auto* decimal = std::get_if<double>(&value))
        return *decimal;
    return std::nullopt;
}

} // namespace zint
