#include "vehicle/parameterTable.h"

#include <array>

namespace zint {
namespace {

constexpr std::array twoBankSensors = {
    Word{0, "bank 1 sensor 1"}, Word{1, "bank 1 sensor 2"}, Word{2, "bank 1 sensor 3"},
    Word{3, "bank 1 sensor 4"}, Word{4, "bank 2 sensor 1"}, Word{5, "bank 2 sensor 2"},
    Word{6, "bank 2 sensor 3"}, Word{7, "bank 2 sensor 4"},
};
constexpr std::array fourBankSensors = {
    Word{0, "bank 1 sensor 1"}, Word{1, "bank 1 sensor 2"}, Word{2, "bank 2 sensor 1"},
    Word{3, "bank 2 sensor 2"}, Word{4, "bank 3 sensor 1"}, Word{5, "bank 3 sensor 2"},
    Word{6, "bank 4 sensor 1"}, Word{7, "bank 4 sensor 2"},
};

constexpr FullScale largestVoltage{&ParameterContext::largestValues, 1, 1, 65535};
constexpr FullScale largestCurrent{&ParameterContext::largestValues, 2, 1, 32768};

constexpr Formula narrowVoltage{.unit = "V", .over = 200};
constexpr Formula sensorTrim{
    .unit = "%", .times = 100, .over = 128, .plus = -100, .whenAllOnes = "not used for trim"};
constexpr Formula wideVoltage{.unit = "V", .times = 8, .over = 65536, .fullScale = &largestVoltage};
constexpr Formula wideCurrent{
    .unit = "mA", .times = 128, .over = 32768, .plus = -128, .fullScale = &largestCurrent};
constexpr Formula concentration{.unit = "%", .times = 0.001526};
constexpr Formula measuredRatio{.unit = "ratio", .times = 0.000122};

constexpr std::array oxygenGroups = {
    ParameterGroup{{0x14, 8}, 2, "Oxygen sensor voltage and trim"},
    ParameterGroup{{0x24, 8}, 4, "Wide-range oxygen sensor, ratio and voltage"},
    ParameterGroup{{0x34, 8}, 4, "Wide-range oxygen sensor, ratio and current"},
    ParameterGroup{0x8C, 17, "Oxygen concentration and ratio, sensors 1 and 2"},
    ParameterGroup{0x9C, 17, "Oxygen concentration and ratio, sensors 3 and 4"},
};

constexpr std::array oxygenFields = {
    Field{0x13, "Oxygen sensors, two banks", "A", AnyOf{twoBankSensors}},
    Field{{0x14, 8}, "Oxygen sensor voltage", "A", narrowVoltage},
    Field{{0x14, 8}, "Oxygen sensor trim", "B", sensorTrim},
    Field{0x1D, "Oxygen sensors, four banks", "A", AnyOf{fourBankSensors}},
    Field{{0x24, 8}, "Oxygen sensor equivalence ratio", "AB", equivalenceRatio},
    Field{{0x24, 8}, "Oxygen sensor voltage, wide range", "CD", wideVoltage},
    Field{{0x34, 8}, "Oxygen sensor equivalence ratio", "AB", equivalenceRatio},
    Field{{0x34, 8}, "Oxygen sensor current, wide range", "CD", wideCurrent},
    Field{0x8C, "Oxygen concentration, bank 1 sensor 1", "BC", concentration, 0},
    Field{0x8C, "Oxygen concentration, bank 1 sensor 2", "DE", concentration, 1},
    Field{0x8C, "Oxygen concentration, bank 2 sensor 1", "FG", concentration, 2},
    Field{0x8C, "Oxygen concentration, bank 2 sensor 2", "HI", concentration, 3},
    Field{0x8C, "Lambda, bank 1 sensor 1", "JK", measuredRatio, 4},
    Field{0x8C, "Lambda, bank 1 sensor 2", "LM", measuredRatio, 5},
    Field{0x8C, "Lambda, bank 2 sensor 1", "NO", measuredRatio, 6},
    Field{0x8C, "Lambda, bank 2 sensor 2", "PQ", measuredRatio, 7},
    Field{0x9C, "Oxygen concentration, bank 1 sensor 3", "BC", concentration, 0},
    Field{0x9C, "Oxygen concentration, bank 1 sensor 4", "DE", concentration, 1},
    Field{0x9C, "Oxygen concentration, bank 2 sensor 3", "FG", concentration, 2},
    Field{0x9C, "Oxygen concentration, bank 2 sensor 4", "HI", concentration, 3},
    Field{0x9C, "Lambda, bank 1 sensor 3", "JK", measuredRatio, 4},
    Field{0x9C, "Lambda, bank 1 sensor 4", "LM", measuredRatio, 5},
    Field{0x9C, "Lambda, bank 2 sensor 3", "NO", measuredRatio, 6},
    Field{0x9C, "Lambda, bank 2 sensor 4", "PQ", measuredRatio, 7},
};

} // namespace

ParameterTable oxygenParameters() { return {oxygenGroups, oxygenFields}; }

std::string_view oxygenSensor(std::size_t location, bool hasFourBanks)
{
    return (hasFourBanks ? fourBankSensors : twoBankSensors).at(location).text;
}

} // namespace zint
