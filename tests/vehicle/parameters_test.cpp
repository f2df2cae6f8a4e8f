#include "vehicle/parameters.h"
#include "vehicle/unitsAndScaling.h"

#include <gtest/gtest.h>

#include <sstream>

namespace zint {
namespace {

/// "Engine speed 864 rpm; ..." for the values of a parameter.
std::string told(std::uint8_t pid, const Bytes& data, const ParameterContext& context = {})
{
    std::ostringstream text;
    for (const ParameterValue& value : parameterValues(pid, data, context)) {
        text << (text.tellp() > 0 ? "; " : "") << value.name << " " << value.text;
        if (value.number)
            text << *value.number << " " << value.unit;
    }
    return text.str();
}

const ParameterContext fourBanks{.hasFourBanks = true, .largestValues = {}, .largestAirFlow = {}};
const ParameterContext rescaled{
    .hasFourBanks = false, .largestValues = {4, 16, 64, 51}, .largestAirFlow = {131, 0, 0, 0}};

TEST(ParametersTest, ReadsEachKindOfField)
{
    const struct {
        std::uint8_t pid;
        Bytes data;
        std::string_view expected;
        ParameterContext context = {};
    } rows[] = {
        {0x05, {0x00}, "Coolant temperature -40 °C"},
        {0x0C, {0x0B}, ""},
        {0x32, {0xFF, 0xFC}, "Evaporative system pressure -1 Pa"},
        {0x54, {0x80, 0x00}, "Evaporative system pressure, wide range -32768 Pa"},
        {0xA6, {0xFF, 0xFF, 0xFF, 0xFF}, "Odometer 4.29497e+08 km"},
        {0x02, {0x01, 0x33}, "Code that stored the freeze frame P0133"},
        {0x02, {0x00, 0x00}, "Code that stored the freeze frame none"},
        // words, and what the standard has no word for
        {0x03, {0x02, 0x00}, "Fuel system 1 closed loop; Fuel system 2 no second system"},
        {0x03, {0x00, 0x03}, "Fuel system 1 off; Fuel system 2 not defined (3)"},
        {0x90,
         {0x7B, 0x00, 0x02},
         "Display strategy of the malfunction indicator not available; Malfunction indicator of the vehicle "
         "error; Emission monitors not complete; Time with continuous malfunction indicator 2 h"},
        {0x13, {0x21}, "Oxygen sensors, two banks bank 1 sensor 1, bank 2 sensor 2"},
        {0x7D, {0xF0}, "NOx control area none"},
        // the oxygen sensors of two banks or four; the second byte of fuel trims
        {0x16,
         {0x5A, 0x80},
         "Oxygen sensor voltage, bank 1 sensor 3 0.45 V; Oxygen sensor trim, bank 1 sensor 3 0 %"},
        {0x16,
         {0x5A, 0xFF},
         "Oxygen sensor voltage, bank 2 sensor 1 0.45 V; Oxygen sensor trim, bank 2 sensor 1 not used for "
         "trim",
         fourBanks},
        {0x06, {0x40, 0x00, 0x00}, "Short term fuel trim, bank 1 -50 %"},
        {0x06, {0x40, 0xC0}, "Short term fuel trim, bank 1 -50 %; Short term fuel trim, bank 3 50 %"},
        {0x08,
         {0x40, 0xC0, 0x00},
         "Short term fuel trim, bank 2 -50 %; Short term fuel trim, bank 4 50 %",
         fourBanks},
        // the full scales of 4F and 50
        {0x0B, {0xFF}, "Intake manifold pressure (absolute) 255 kPa"},
        {0x0B, {0xFF}, "Intake manifold pressure (absolute) 510 kPa", rescaled},
        {0x10, {0xFF, 0xFF}, "Mass air flow 1310 g/s", rescaled},
        {0x44, {0x80, 0x00}, "Commanded equivalence ratio 1 ratio"},
        {0x2B,
         {0xFF, 0xFF, 0xFF, 0xFF},
         "Oxygen sensor equivalence ratio, bank 2 sensor 4 4 ratio; "
         "Oxygen sensor voltage, wide range, bank 2 sensor 4 16 V",
         rescaled},
        {0x34,
         {0x80, 0x00, 0x40, 0x00},
         "Oxygen sensor equivalence ratio, bank 1 sensor 1 1 ratio; "
         "Oxygen sensor current, wide range, bank 1 sensor 1 -64 mA"},
        {0x34,
         {0x00, 0x00, 0x40, 0x00},
         "Oxygen sensor equivalence ratio, bank 1 sensor 1 0 ratio; "
         "Oxygen sensor current, wide range, bank 1 sensor 1 -32 mA",
         rescaled},
        // support bits, data that are missing or too short
        {0x66, {0x02, 0xFF, 0xFF, 0x00, 0x40}, "Mass air flow, sensor B 2 g/s"},
        {0x6B,
         {0x18, 0x40, 0x00, 0x00, 0x30},
         "EGR temperature, bank 1 sensor 1, wide range 216 °C; EGR temperature, bank 2 sensor 2 8 °C"},
        {0x83,
         {0x23, 0x00, 0x64, 0xFF, 0xFF, 0x00, 0x00, 0x00, 0x00},
         "NOx, bank 1 sensor 1 100 ppm; NOx, bank 1 sensor 2 not available"},
        {0x64, {0x7D, 0x00}, "Torque at point 1 (idle) 0 %; Torque at point 2 -125 %"},
        {0x66, {}, ""},
        {0x81,
         {0x01, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x01, 0x00, 0x00},
         "Emission-increasing device 1, timer 1 not used; Emission-increasing device 1, timer 2 65536 s"},
        {0x95, {0x01, 0x02}, ""},
    };
    for (const auto& [pid, data, expected, context] : rows)
        EXPECT_EQ(told(pid, data, context), expected) << int{pid};
}

/// A wrong place or length of a row shows: its last byte is told, one that follows is not. 50 has bytes
/// without a meaning.
TEST(ParametersTest, EachParameterIsAsLongAsItsFields)
{
    std::size_t fieldCount = 0;
    for (int number = 0; number < 256; ++number) {
        const auto pid = static_cast<std::uint8_t>(number);
        const std::optional<std::size_t> length = parameterLength(pid, fourBanks);
        EXPECT_EQ(length.has_value(), !parameterName(pid).empty()) << number;
        const Bytes data(length.value_or(0), 0xFF);
        const std::vector<ParameterValue> values = parameterValues(pid, data, fourBanks);
        fieldCount += values.size();
        if (values.empty() || pid == 0x50)
            continue;
        const BytesView shorter = BytesView(data).first(*length - 1);
        EXPECT_LT(parameterValues(pid, shorter, fourBanks).size(), values.size()) << number;
    }
    EXPECT_EQ(fieldCount, 399U);
    EXPECT_EQ(parameterLength(0x06), 1U);
    EXPECT_EQ(parameterLength(0x1B), 2U);
    EXPECT_EQ(parameterLength(0x8A), 41U);
    EXPECT_EQ(parameterLength(0xE0), 4U);
}

TEST(UnitsAndScalingTest, KnowsTheIdsOfTheStandard)
{
    EXPECT_EQ(scalingOf(0x0A), (Scaling{0.122, 0, "mV", false}));
    EXPECT_EQ(scalingOf(0x16), (Scaling{0.1, -40, "°C", false}));
    EXPECT_EQ(scalingOf(0x8D), (Scaling{0.00390625, 0, "mA", true}));
    EXPECT_EQ(scalingOf(0xFE), (Scaling{0.25, 0, "Pa", true}));
    for (const std::uint8_t id : Bytes{0x00, 0x44, 0x80, 0x88, 0xFF})
        EXPECT_FALSE(scalingOf(id)) << int{id};
}

} // namespace
} // namespace zint
