#include "vehicle/parameterTable.h"

#include <array>

namespace zint {
namespace {

constexpr std::array noYes = {Word{0, "no"}, Word{1, "yes"}};
constexpr std::array noRunning = {Word{0, "no"}, Word{1, "in progress"}};
constexpr std::array passiveActive = {Word{0, "passive"}, Word{1, "active"}};
constexpr std::array adsorberStates = {Word{0, "adsorbing"}, Word{1, "desorbing"}};
constexpr std::array inactiveActive = {Word{0, "inactive"}, Word{1, "active"}};
constexpr std::array completeness = {Word{0, "all monitors complete"}, Word{1, "not complete"}};

constexpr std::array inducementReasons = {
    Word{0, "reagent low"},  Word{1, "wrong reagent"},     Word{2, "consumption deviates"},
    Word{3, "NOx too high"}, Word{7, "inducement active"},
};
constexpr std::array inducementLevels = {
    Word{0, "inactive"},
    Word{1, "enabled"},
    Word{2, "active"},
    Word{3, "not supported"},
};
constexpr std::array particulateSensorStates = {Word{0, "measuring"}, Word{1, "regenerating"}};
constexpr std::array displayStrategies = {
    Word{0, "non-discriminatory"},
    Word{1, "discriminatory"},
    Word{3, "not available"},
};
constexpr std::array indicatorStates = {
    Word{0, "off"},        Word{1, "on demand"}, Word{2, "short"},
    Word{3, "continuous"}, Word{14, "error"},    Word{15, "not available"},
};
constexpr std::array hybridModes = {Word{0, "charge sustaining"}, Word{1, "charge depleting"}};
constexpr std::array enhancedHybridModes = {
    Word{0, "charge sustaining"},
    Word{1, "charge depleting"},
    Word{2, "charge increasing"},
};

constexpr Formula timer{.unit = "s", .whenAllOnes = "not used"};
constexpr Formula supportedHours{.unit = "h", .whenAllOnes = "not supported"};
constexpr Formula partsPerMillion{.unit = "ppm"};
constexpr Formula reagentRate{.unit = "L/h", .over = 200};
constexpr Formula particulateMass{.unit = "mg/m³", .over = 80};
constexpr Formula sensorOutput{.unit = "%", .over = 100, .isSigned = true};
constexpr Formula massRate{.unit = "g/s", .over = 50};
constexpr Formula vapourPressure{.unit = "Pa", .over = 4, .isSigned = true};
constexpr Formula wideVapourPressure{.unit = "Pa", .times = 2, .isSigned = true};
constexpr Formula batteryCurrent{.unit = "A", .over = 10, .isSigned = true};

constexpr std::array aftertreatmentGroups = {
    ParameterGroup{0x81, 41, "Run times of emission-increasing devices 1 to 5"},
    ParameterGroup{0x82, 41, "Run times of emission-increasing devices 6 to 10"},
    ParameterGroup{0x83, 9, "NOx sensors"},
    ParameterGroup{0x85, 10, "Reagent system"},
    ParameterGroup{0x86, 5, "Particulate mass sensors"},
    ParameterGroup{0x87, 5, "Intake manifold pressure sensors"},
    ParameterGroup{0x88, 13, "Reagent inducement"},
    ParameterGroup{0x89, 41, "Run times of emission-increasing devices 11 to 15"},
    ParameterGroup{0x8A, 41, "Run times of emission-increasing devices 16 to 20"},
    ParameterGroup{0x8B, 7, "Diesel aftertreatment"},
    ParameterGroup{0x8F, 7, "Particulate sensors"},
    ParameterGroup{0x90, 3, "Malfunction indicator of the vehicle (WWH)"},
    ParameterGroup{0x91, 5, "Malfunction indicator of the control unit (WWH)"},
    ParameterGroup{0x92, 2, "Fuel system control"},
    ParameterGroup{0x93, 3, "Malfunction indicator hours (WWH)"},
    ParameterGroup{0x94, 12, "NOx warning and inducement"},
    ParameterGroup{0x98, 9, "Exhaust gas temperatures, bank 1, sensors 5 to 8"},
    ParameterGroup{0x99, 9, "Exhaust gas temperatures, bank 2, sensors 5 to 8"},
    ParameterGroup{0x9A, 6, "Hybrid or electric drive"},
    ParameterGroup{0x9B, 4, "Diesel exhaust fluid sensor"},
    ParameterGroup{0x9D, 4, "Fuel rate by mass"},
    ParameterGroup{0x9F, 9, "Shares of the fuel systems"},
    ParameterGroup{0xA0, 4, "Supported parameters A1 to C0"},
    ParameterGroup{0xA1, 9, "NOx sensors, corrected"},
    ParameterGroup{0xA3, 9, "Evaporative system pressures"},
    ParameterGroup{0xA4, 4, "Transmission"},
    ParameterGroup{0xA5, 4, "Diesel exhaust fluid dosing"},
    ParameterGroup{0xC0, 4, "Supported parameters C1 to E0"},
    ParameterGroup{0xE0, 4, "Supported parameters E1 to FF"},
};

constexpr std::array aftertreatmentFields = {
    Field{0x81, "Emission-increasing device 1, timer 1", "B-E", timer, 0},
    Field{0x81, "Emission-increasing device 1, timer 2", "F-I", timer, 0},
    Field{0x81, "Emission-increasing device 2, timer 1", "J-M", timer, 1},
    Field{0x81, "Emission-increasing device 2, timer 2", "N-Q", timer, 1},
    Field{0x81, "Emission-increasing device 3, timer 1", "R-U", timer, 2},
    Field{0x81, "Emission-increasing device 3, timer 2", "V-Y", timer, 2},
    Field{0x81, "Emission-increasing device 4, timer 1", "Z-AC", timer, 3},
    Field{0x81, "Emission-increasing device 4, timer 2", "AD-AG", timer, 3},
    Field{0x81, "Emission-increasing device 5, timer 1", "AH-AK", timer, 4},
    Field{0x81, "Emission-increasing device 5, timer 2", "AL-AO", timer, 4},
    Field{0x82, "Emission-increasing device 6, timer 1", "B-E", timer, 0},
    Field{0x82, "Emission-increasing device 6, timer 2", "F-I", timer, 0},
    Field{0x82, "Emission-increasing device 7, timer 1", "J-M", timer, 1},
    Field{0x82, "Emission-increasing device 7, timer 2", "N-Q", timer, 1},
    Field{0x82, "Emission-increasing device 8, timer 1", "R-U", timer, 2},
    Field{0x82, "Emission-increasing device 8, timer 2", "V-Y", timer, 2},
    Field{0x82, "Emission-increasing device 9, timer 1", "Z-AC", timer, 3},
    Field{0x82, "Emission-increasing device 9, timer 2", "AD-AG", timer, 3},
    Field{0x82, "Emission-increasing device 10, timer 1", "AH-AK", timer, 4},
    Field{0x82, "Emission-increasing device 10, timer 2", "AL-AO", timer, 4},
    Field{0x83, "NOx, bank 1 sensor 1", "BC", partsPerMillion, 0, 4},
    Field{0x83, "NOx, bank 1 sensor 2", "DE", partsPerMillion, 1, 5},
    Field{0x83, "NOx, bank 2 sensor 1", "FG", partsPerMillion, 2, 6},
    Field{0x83, "NOx, bank 2 sensor 2", "HI", partsPerMillion, 3, 7},
    Field{0x84, "Manifold surface temperature", "A", celsius},
    Field{0x85, "Reagent consumption, average", "BC", reagentRate, 0},
    Field{0x85, "Reagent consumption, demanded average", "DE", reagentRate, 1},
    Field{0x85, "Reagent tank level", "F", percent, 2},
    Field{0x85, "Run time with NOx warning", "G-J", inSeconds, 3},
    Field{0x86, "Particulate mass, bank 1 sensor 1", "BC", particulateMass, 0},
    Field{0x86, "Particulate mass, bank 2 sensor 1", "DE", particulateMass, 1},
    Field{0x87, "Intake manifold pressure A (absolute)", "BC", finePressure, 0},
    Field{0x87, "Intake manifold pressure B (absolute)", "DE", finePressure, 1},
    Field{0x88, "Reagent inducement", "A", AnyOf{inducementReasons}},
    Field{0x88, "Reagent inducement, 0 to 10000 km", "B3-0", AnyOf{inducementReasons}},
    Field{0x88, "Reagent inducement, 10000 to 20000 km", "B7-4", AnyOf{inducementReasons}},
    Field{0x88, "Reagent inducement, 20000 to 30000 km", "C3-0", AnyOf{inducementReasons}},
    Field{0x88, "Reagent inducement, 30000 to 40000 km", "C7-4", AnyOf{inducementReasons}},
    Field{0x88, "Distance with inducement, this block of 10000 km", "DE", inKilometres},
    Field{0x88, "Distance in this block of 10000 km", "FG", inKilometres},
    Field{0x88, "Distance with inducement, 10000 to 20000 km", "HI", inKilometres},
    Field{0x88, "Distance with inducement, 20000 to 30000 km", "JK", inKilometres},
    Field{0x88, "Distance with inducement, 30000 to 40000 km", "LM", inKilometres},
    Field{0x89, "Emission-increasing device 11, timer 1", "B-E", timer, 0},
    Field{0x89, "Emission-increasing device 11, timer 2", "F-I", timer, 0},
    Field{0x89, "Emission-increasing device 12, timer 1", "J-M", timer, 1},
    Field{0x89, "Emission-increasing device 12, timer 2", "N-Q", timer, 1},
    Field{0x89, "Emission-increasing device 13, timer 1", "R-U", timer, 2},
    Field{0x89, "Emission-increasing device 13, timer 2", "V-Y", timer, 2},
    Field{0x89, "Emission-increasing device 14, timer 1", "Z-AC", timer, 3},
    Field{0x89, "Emission-increasing device 14, timer 2", "AD-AG", timer, 3},
    Field{0x89, "Emission-increasing device 15, timer 1", "AH-AK", timer, 4},
    Field{0x89, "Emission-increasing device 15, timer 2", "AL-AO", timer, 4},
    Field{0x8A, "Emission-increasing device 16, timer 1", "B-E", timer, 0},
    Field{0x8A, "Emission-increasing device 16, timer 2", "F-I", timer, 0},
    Field{0x8A, "Emission-increasing device 17, timer 1", "J-M", timer, 1},
    Field{0x8A, "Emission-increasing device 17, timer 2", "N-Q", timer, 1},
    Field{0x8A, "Emission-increasing device 18, timer 1", "R-U", timer, 2},
    Field{0x8A, "Emission-increasing device 18, timer 2", "V-Y", timer, 2},
    Field{0x8A, "Emission-increasing device 19, timer 1", "Z-AC", timer, 3},
    Field{0x8A, "Emission-increasing device 19, timer 2", "AD-AG", timer, 3},
    Field{0x8A, "Emission-increasing device 20, timer 1", "AH-AK", timer, 4},
    Field{0x8A, "Emission-increasing device 20, timer 2", "AL-AO", timer, 4},
    Field{0x8B, "Particulate filter regeneration", "B0", OneOf{noRunning}, 0},
    Field{0x8B, "Regeneration type", "B1", OneOf{passiveActive}, 1},
    Field{0x8B, "NOx adsorber", "B2", OneOf{adsorberStates}, 2},
    Field{0x8B, "NOx adsorber desulphurisation", "B3", OneOf{noRunning}, 3},
    Field{0x8B, "Trigger of regeneration (100 % is due)", "C", percent, 4},
    Field{0x8B, "Time between regenerations, average", "DE", inMinutes, 5},
    Field{0x8B, "Distance between regenerations, average", "FG", inKilometres, 6},
    Field{0x8D, "Throttle position G", "A", percent},
    Field{0x8E, "Engine friction torque", "A", torquePercent},
    Field{0x8F, "Particulate sensor, bank 1 sensor 1", "B1-0", AnyOf{particulateSensorStates}, 0},
    Field{0x8F, "Particulate sensor output, bank 1 sensor 1", "CD", sensorOutput, 1},
    Field{0x8F, "Particulate sensor, bank 2 sensor 1", "E1-0", AnyOf{particulateSensorStates}, 2},
    Field{0x8F, "Particulate sensor output, bank 2 sensor 1", "FG", sensorOutput, 3},
    Field{0x90, "Display strategy of the malfunction indicator", "A1-0", OneOf{displayStrategies}},
    Field{0x90, "Malfunction indicator of the vehicle", "A5-2", OneOf{indicatorStates}},
    Field{0x90, "Emission monitors", "A6", OneOf{completeness}},
    Field{0x90, "Time with continuous malfunction indicator", "BC", inHours},
    Field{0x91, "Malfunction indicator of the control unit", "A3-0", OneOf{indicatorStates}},
    Field{0x91, "Time with continuous malfunction indicator, control unit", "BC", inHours},
    Field{0x91, "Highest B1 counter", "DE", inHours},
    Field{0x92, "Closed loop of fuel pressure 1", "B0", OneOf{noYes}, 0},
    Field{0x92, "Closed loop of injection quantity 1", "B1", OneOf{noYes}, 1},
    Field{0x92, "Closed loop of injection timing 1", "B2", OneOf{noYes}, 2},
    Field{0x92, "Closed loop of idle fuel balance 1", "B3", OneOf{noYes}, 3},
    Field{0x92, "Closed loop of fuel pressure 2", "B4", OneOf{noYes}, 4},
    Field{0x92, "Closed loop of injection quantity 2", "B5", OneOf{noYes}, 5},
    Field{0x92, "Closed loop of injection timing 2", "B6", OneOf{noYes}, 6},
    Field{0x92, "Closed loop of idle fuel balance 2", "B7", OneOf{noYes}, 7},
    Field{0x93, "Cumulative time with continuous malfunction indicator", "BC", inHours, 0},
    Field{0x94, "NOx warning", "B0", OneOf{inactiveActive}, 0},
    Field{0x94, "Inducement level 1", "B2-1", OneOf{inducementLevels}, 0},
    Field{0x94, "Inducement level 2", "B4-3", OneOf{inducementLevels}, 0},
    Field{0x94, "Inducement level 3", "B6-5", OneOf{inducementLevels}, 0},
    Field{0x94, "Counter of reagent quality", "CD", supportedHours, 1},
    Field{0x94, "Counter of reagent consumption", "EF", supportedHours, 2},
    Field{0x94, "Counter of dosing", "GH", supportedHours, 3},
    Field{0x94, "Counter of the EGR valve", "IJ", supportedHours, 4},
    Field{0x94, "Counter of the monitoring system", "KL", supportedHours, 5},
    Field{0x98, "Exhaust gas temperature, bank 1 sensor 5", "BC", fineCelsius, 0},
    Field{0x98, "Exhaust gas temperature, bank 1 sensor 6", "DE", fineCelsius, 1},
    Field{0x98, "Exhaust gas temperature, bank 1 sensor 7", "FG", fineCelsius, 2},
    Field{0x98, "Exhaust gas temperature, bank 1 sensor 8", "HI", fineCelsius, 3},
    Field{0x99, "Exhaust gas temperature, bank 2 sensor 5", "BC", fineCelsius, 0},
    Field{0x99, "Exhaust gas temperature, bank 2 sensor 6", "DE", fineCelsius, 1},
    Field{0x99, "Exhaust gas temperature, bank 2 sensor 7", "FG", fineCelsius, 2},
    Field{0x99, "Exhaust gas temperature, bank 2 sensor 8", "HI", fineCelsius, 3},
    Field{0x9A, "Hybrid mode", "B0", OneOf{hybridModes}, 0},
    Field{0x9A, "Hybrid mode, enhanced", "B2-1", OneOf{enhancedHybridModes}, 3},
    Field{0x9A, "Traction battery voltage", "CD", Formula{.unit = "V", .over = 64}, 1},
    Field{0x9A, "Traction battery current", "EF", batteryCurrent, 2},
    Field{0x9B, "Diesel exhaust fluid type", "A7-4", plainCount, 0},
    Field{0x9B, "Diesel exhaust fluid concentration", "B", Formula{.unit = "%", .over = 4}, 1},
    Field{0x9B, "Diesel exhaust fluid temperature", "C", celsius, 2},
    Field{0x9B, "Diesel exhaust fluid level", "D", percent, 3},
    Field{0x9D, "Engine fuel rate by mass", "AB", massRate},
    Field{0x9D, "Vehicle fuel rate by mass", "CD", massRate},
    Field{0x9E, "Exhaust mass flow", "AB", Formula{.unit = "kg/h", .over = 5}},
    Field{0x9F, "Share of fuel system A, bank 1", "B", percent, 0},
    Field{0x9F, "Share of fuel system B, bank 1", "C", percent, 1},
    Field{0x9F, "Share of fuel system A, bank 2", "D", percent, 2},
    Field{0x9F, "Share of fuel system B, bank 2", "E", percent, 3},
    Field{0x9F, "Share of fuel system A, bank 3", "F", percent, 4},
    Field{0x9F, "Share of fuel system B, bank 3", "G", percent, 5},
    Field{0x9F, "Share of fuel system A, bank 4", "H", percent, 6},
    Field{0x9F, "Share of fuel system B, bank 4", "I", percent, 7},
    Field{0xA0, "Supported parameters A1 to C0", "A-D", &supportedParameters<0xA0>},
    Field{0xA1, "NOx, corrected, bank 1 sensor 1", "BC", partsPerMillion, 0, 4},
    Field{0xA1, "NOx, corrected, bank 1 sensor 2", "DE", partsPerMillion, 1, 5},
    Field{0xA1, "NOx, corrected, bank 2 sensor 1", "FG", partsPerMillion, 2, 6},
    Field{0xA1, "NOx, corrected, bank 2 sensor 2", "HI", partsPerMillion, 3, 7},
    Field{0xA2, "Fuel rate of a cylinder", "AB", Formula{.unit = "mg/stroke", .over = 32}},
    Field{0xA3, "Evaporative system pressure A", "BC", vapourPressure, 0},
    Field{0xA3, "Evaporative system pressure A, wide range", "DE", wideVapourPressure, 1},
    Field{0xA3, "Evaporative system pressure B", "FG", vapourPressure, 2},
    Field{0xA3, "Evaporative system pressure B, wide range", "HI", wideVapourPressure, 3},
    Field{0xA4, "Actual gear", "B7-4", plainCount, 0},
    Field{0xA4, "Actual gear ratio", "CD", Formula{.unit = "ratio", .over = 1000}, 1},
    Field{0xA5, "Commanded diesel exhaust fluid dosing", "B", Formula{.unit = "%", .over = 2}, 0},
    Field{0xA5, "Diesel exhaust fluid used in this drive cycle", "CD", Formula{.unit = "L", .times = 0.0005},
          1},
    Field{0xA6, "Odometer", "A-D", Formula{.unit = "km", .over = 10}},
    Field{0xC0, "Supported parameters C1 to E0", "A-D", &supportedParameters<0xC0>},
    Field{0xE0, "Supported parameters E1 to FF", "A-D", &supportedParameters<0xE0>},
};

} // namespace

ParameterTable aftertreatmentParameters() { return {aftertreatmentGroups, aftertreatmentFields}; }

} // namespace zint
