#include "shared/module1.h"
#include "sim/vehicle.h"
#include "support/parameterFigures.h"
#include "vehicle/parameters.h"
#include "vehicle/unitsAndScaling.h"

#include <gtest/gtest.h>

#include <map>
#include <ranges>
#include <sstream>

namespace zint {
namespace {

using namespace std::chrono_literals;

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
        std::string_view bytes; ///< of the parameter's number and its data
        std::string_view expected;
        ParameterContext context = {};
    } rows[] = {
        {"0C 0B", ""},
        {"32 FFFC", "Evaporative system pressure -1 Pa"},
        {"A6 FFFFFFFF", "Odometer 4.29497e+08 km"},
        {"02 0000", "Code that stored the freeze frame none"},
        // words, and what the standard has no word for
        {"03 0003", "Fuel system 1 off; Fuel system 2 not defined (3)"},
        {"7D F0", "NOx control area none"},
        // the oxygen sensors of two banks or four; the second byte of fuel trims
        {"16 5AFF",
         "Oxygen sensor voltage, bank 2 sensor 1 0.45 V; Oxygen sensor trim, bank 2 sensor 1 not used for "
         "trim",
         fourBanks},
        {"06 40C0", "Short term fuel trim, bank 1 -50 %; Short term fuel trim, bank 3 50 %"},
        {"08 40C000", "Short term fuel trim, bank 2 -50 %; Short term fuel trim, bank 4 50 %", fourBanks},
        // the full scales of 4F and 50
        {"0B FF", "Intake manifold pressure (absolute) 510 kPa", rescaled},
        {"10 FFFF", "Mass air flow 1310 g/s", rescaled},
        {"2B FFFFFFFF",
         "Oxygen sensor equivalence ratio, bank 2 sensor 4 4 ratio; "
         "Oxygen sensor voltage, wide range, bank 2 sensor 4 16 V",
         rescaled},
        {"34 00004000",
         "Oxygen sensor equivalence ratio, bank 1 sensor 1 0 ratio; "
         "Oxygen sensor current, wide range, bank 1 sensor 1 -32 mA",
         rescaled},
        // support bits, data that are missing or too short
        {"66 02FFFF0040", "Mass air flow, sensor B 2 g/s"},
        {"6B 1840000030",
         "EGR temperature, bank 1 sensor 1, wide range 216 °C; EGR temperature, bank 2 sensor 2 8 °C"},
        {"83 230064FFFF00000000", "NOx, bank 1 sensor 1 100 ppm; NOx, bank 1 sensor 2 not available"},
        {"64 7D00", "Torque at point 1 (idle) 0 %; Torque at point 2 -125 %"},
        {"66 ", ""},
        {"81 01FFFFFFFF00010000",
         "Emission-increasing device 1, timer 1 not used; Emission-increasing device 1, timer 2 65536 s"},
        {"95 0102", ""},
    };
    for (const auto& [bytes, expected, context] : rows) {
        Bytes data;
        for (std::size_t at = 3; at < bytes.size(); at += 2)
            data.push_back(static_cast<std::uint8_t>(hexToNumber(bytes.substr(at, 2))));
        EXPECT_EQ(told(static_cast<std::uint8_t>(hexToNumber(bytes.substr(0, 2))), data, context), expected)
            << bytes;
    }
}

/// Files keep the numbers of conversions: no parameter may lose or exchange a field, and none has room for
/// more than ten.
TEST(ParametersTest, KeepTheirPlaces)
{
    std::string counts;
    for (int pid = 0; pid < 256; ++pid) {
        std::size_t fields = 0;
        while (parameterField(static_cast<std::uint8_t>(pid), fields))
            ++fields;
        ASSERT_LE(fields, 10U) << pid;
        counts += fields < 10 ? std::to_string(fields) : "X";
    }
    EXPECT_EQ(counts.substr(0, 0xA8), "14121122221111111111222222221111"
                                      "11112222222211111111222222221111"
                                      "11111111111111141111122221111111"
                                      "11115522664846446642244444334113"
                                      "1XX41422XXX781144381900044448218"
                                      "14142210");
    EXPECT_EQ(counts.find_first_not_of('0', 0xA8), 0xC0U);
    EXPECT_EQ(parameterField(0x0C, 0)->name, "Engine speed");
    EXPECT_EQ(parameterField(0x15, 1)->name, "Oxygen sensor trim, bank 1 sensor 2");
    EXPECT_EQ(parameterField(0xA5, 1)->name, "Diesel exhaust fluid used in this drive cycle");
    EXPECT_EQ(fieldWords(0x03, 0, 2), "closed loop");
    EXPECT_EQ(fieldWords(0x01, 3, 0x076504), "Evaporative system");
    EXPECT_EQ(readField(0x66, 0, Bytes{2, 0, 0, 0, 64}), (FieldReading{.words = "not supported"}));
    EXPECT_EQ(readField(0x06, 1, Bytes{0x80, 0xA0})->number, 25);
    EXPECT_EQ(readField(0x06, 1, Bytes{0x80, 0xAA, 0xAA}), (FieldReading{.words = "not supported"}))
        << "padding";
    EXPECT_EQ(readField(0x15, 1, Bytes{0x80, 0xFF}), (FieldReading{.words = "not used for trim"}));
}

/// The data that the vehicle answers, by parameter.
std::map<std::uint8_t, Bytes> allTold(Vehicle& vehicle)
{
    std::map<std::uint8_t, Bytes> parameters;
    for (int pid = 0; pid < 256; ++pid) {
        const Message request{0x01, static_cast<std::uint8_t>(pid)};
        for (const Message& answer : vehicle.answer(request, 0s))
            parameters[request[1]].assign(answer.begin() + 2, answer.end());
    }
    return parameters;
}

void expectFigures(const ParameterFigures& expected, const std::vector<ParameterValue>& values)
{
    auto value = values.begin();
    for (const Figure& figure : expected.fields) {
        if (!figure.isTold())
            continue;
        ASSERT_NE(value, values.end());
        EXPECT_EQ(value->text, figure.words) << value->name;
        EXPECT_EQ(value->number.has_value(), figure.number.has_value()) << value->name;
        const double tolerance = figure.tolerance < 0 ? expected.tolerance : figure.tolerance;
        EXPECT_NEAR(value->number.value_or(0), figure.number.value_or(0), tolerance + 1e-9) << value->name;
        ++value;
    }
    EXPECT_EQ(value, values.end()) << "more fields than expected";
}

// A wrong scaling or place shows on either side.
TEST(ParametersTest, EachOfTheStandardHasTheRightFigure)
{
    for (const bool isV : {false, true}) {
        Vehicle vehicle(figuredVehicle(isV));
        auto parameters = allTold(vehicle);
        const ParameterContext context{
            .hasFourBanks = isV, .largestValues = parameters[0x4F], .largestAirFlow = parameters[0x50]};
        std::map<std::uint8_t, std::vector<ParameterValue>> values;
        for (const auto& [pid, data] : parameters) {
            EXPECT_EQ(data.size(), parameterLength(pid, context)) << "parameter " << int{pid};
            values[pid] = parameterValues(pid, data, context);
        }
        std::erase_if(values,
                      [](const auto& entry) { return entry.second.empty() || entry.first % 0x20 == 0; });
        for (const ParameterFigures& expected : parameterFigures()) {
            if (expected.banks == (isV ? Banks::two : Banks::four))
                continue;
            SCOPED_TRACE("parameter " + std::to_string(expected.pid) + (isV ? ", four banks" : ""));
            expectFigures(expected, values[expected.pid]);
            values.erase(expected.pid);
        }
        EXPECT_TRUE(values.empty()) << "nobody has expected parameter " << int{values.begin()->first};
        for (const int pid : std::views::iota(0, 0xC0)) {
            const bool isOfOtherBanks = pid == (isV ? 0x13 : 0x1D);
            const bool isKnown = parameterLength(static_cast<std::uint8_t>(pid)).has_value();
            EXPECT_EQ(parameters.contains(static_cast<std::uint8_t>(pid)), isKnown && !isOfOtherBanks) << pid;
        }
    }
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
