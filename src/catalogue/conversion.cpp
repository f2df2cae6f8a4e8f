#include "catalogue/conversion.h"

#include "shared/module1.h"
#include "shared/runTimeError.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace zint {
namespace {

using converted::Hexadecimal;
using converted::Placeholder;
using converted::Rounded;
using converted::Value;
using converted::WithoutUnit;
using converted::Words;

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

} // namespace

// Clang-format would put several of these on a line.
// clang-format off
constexpr std::array<Conversion, 25> ConversionTable = {{
    {"No Conversion", 0, " ?", [](std::int32_t x) -> Value { return WithoutUnit{x}; }},
    {"Byte Percentage", 1, "%", [](std::int32_t x) -> Value { return bytePercentage(x); }},
    {"Trim % (+-100%)", 2, "%", [](std::int32_t x) -> Value { return plus(x, -128) * 0.78125; }},
    {"Celsius", 3, "C", [](std::int32_t x) -> Value { return plus(x, -40); }},
    {"Fahrenheit", 3, "F", [](std::int32_t x) -> Value { return plus(x, -40) * 1.8 + 32; }},
    {"RPM", 4, "rpm", [](std::int32_t x) -> Value { return x / 4; }},
    {"KPH (km/hour)", 5, "kph", [](std::int32_t x) -> Value { return x; }},
    {"MPH (miles/hour)", 5, "mph", [](std::int32_t x) -> Value { return x * 0.6215; }},
    {"m/s (meters/sec)", 5, "m/s", [](std::int32_t x) -> Value { return x * 0.27778; }},
    {"kPa pressure Air", 6, "kPa", [](std::int32_t x) -> Value { return x; }},
    {"Torr (mmHg) Air", 6, "Torr", [](std::int32_t x) -> Value { return x * 7.5; }},
    {"psi  Air", 6, "psi", [](std::int32_t x) -> Value { return x * 0.145; }},
    {"inHg  Air", 6, "inHg", [](std::int32_t x) -> Value { return x * 0.2953; }},
    {" --undef", 0, "", [](std::int32_t) -> Value { return Placeholder(); }},
    {"Timing Adv. Deg", 7, "Deg", [](std::int32_t x) -> Value { return x * 0.5 - 64; }},
    {"Volts O2 sensor", 8, "v", [](std::int32_t x) -> Value { return highByte(x) * 0.005; }},
    {"STFT O2 sensor", 9, "%", [](std::int32_t x) -> Value { return bytePercentage(x % 256); }},
    {"Air flow gm/sec", 10, "gm/sec", [](std::int32_t x) -> Value { return x * 0.01; }},
    {"kPa Gauge (fuel)", 11, "kPaG", [](std::int32_t x) -> Value { return times(x, 3); }},
    {"psi Gauge (fuel)", 11, "psiG", [](std::int32_t x) -> Value { return x * 0.435; }},
    {"Display Hex", 0, " ", [](std::int32_t x) -> Value { return Hexadecimal{x}; }},
    {"Fuel system stat", 12, " ", [](std::int32_t) -> Value { return "A:?????? B:??????"; }},
    {"~ fuel gm/sec", 10, "gm/sec", [](std::int32_t x) -> Value { return fuelFlow(x); }},
    {"~ fuel ml/sec", 10, "ml/sec", [](std::int32_t x) -> Value { return fuelFlow(x) * 0.73722; }},
    {"~ fuel gal/hour", 10, "gal/hour", [](std::int32_t x) -> Value { return fuelFlow(x) * 0.701110513582; }},
}};
// clang-format on

static_assert(ConversionTable[conversionCode::rpm].name == "RPM");
static_assert(ConversionTable[conversionCode::airFlow].name == "Air flow gm/sec");
static_assert(ConversionTable[conversionCode::displayHex].name == "Display Hex");

const Conversion* findConversion(std::int32_t code)
{
    const bool isRow = code >= 0 && code < static_cast<std::int32_t>(ConversionTable.size());
    return isRow ? &ConversionTable.at(static_cast<std::size_t>(code)) : nullptr;
}

namespace {

template <typename... Format>
void append(std::string& text, Format... valueAndFormat)
{
    std::array<char, 352> buffer{}; // the largest number has 309 digits
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), valueAndFormat...);
    text.append(buffer.data(), result.ptr);
}

struct Writer {
    std::string& text;

    void operator()(std::int32_t value) const { append(text, value); }
    void operator()(double value) const
    {
        constexpr int significantDigits = 15;
        append(text, value, std::chars_format::general, significantDigits);
    }
    void operator()(Rounded value) const
    {
        append(text, value.number, std::chars_format::fixed, value.decimals);
    }
    void operator()(const Words& words) const { text += words.text; }
    void operator()(Hexadecimal value) const { (text += "&H") += hexText(value.number, 1); }
    void operator()(WithoutUnit value) const
    {
        append(text, value.number);
        text += " ?"; // the unit says so once more
    }
    void operator()(Placeholder words) const { text += words; }
};

} // namespace

void appendConverted(std::string& text, std::int32_t conversion, std::int32_t raw)
{
    if (const Conversion* row = findConversion(conversion))
        appendValue(text, row->formula(raw));
}

void appendValue(std::string& text, const Value& value) { std::visit(Writer{text}, value); }

std::string convert(std::int32_t conversion, std::int32_t raw)
{
    std::string text;
    appendConverted(text, conversion, raw);
    return text;
}

std::string_view unitText(std::int32_t conversion)
{
    const Conversion* row = findConversion(conversion);
    return row != nullptr ? row->unit : std::string_view();
}

std::string displayText(std::int32_t conversion, std::int32_t raw)
{
    return convert(conversion, raw) + std::string(unitText(conversion));
}

} // namespace zint
