#include "vehicle/monitorStatus.h"
#include "vehicle/parameterTable.h"
#include "vehicle/troubleCode.h"

#include <array>

namespace zint {
namespace {

std::string freezeFrameCode(std::uint32_t raw)
{
    return raw == 0 ? "none"
                    : troubleCode(static_cast<std::uint8_t>(raw >> 8), static_cast<std::uint8_t>(raw));
}

// One bit at a time. The first word is that of the first system, the last one that of the second.
constexpr std::array fuelSystemStates = {
    Word{0, "off"},
    Word{1, "open loop, not yet ready for closed loop"},
    Word{2, "closed loop"},
    Word{4, "open loop because of the driving conditions"},
    Word{8, "open loop because of a fault"},
    Word{16, "closed loop, fault of a sensor"},
    Word{32, "open loop on bank 2, not yet ready for closed loop"},
    Word{64, "open loop on bank 2 because of the driving conditions"},
    Word{128, "open loop on bank 2 because of a fault"},
    Word{0, "no second system"},
};
constexpr std::span firstSystemStates = std::span<const Word>(fuelSystemStates).first(9);
constexpr std::span secondSystemStates = std::span<const Word>(fuelSystemStates).last(9);

constexpr std::array secondaryAirStates = {
    Word{1, "ahead of the first catalyst"},
    Word{2, "behind the inlet of the first catalyst"},
    Word{4, "into the atmosphere, or off"},
    Word{8, "pump on for diagnosis"},
};

// 14 to 16 meant European emission levels until these got 5F.
constexpr std::array requirements = {
    Word{1, "OBD II (CARB)"},
    Word{2, "OBD (EPA)"},
    Word{3, "OBD and OBD II"},
    Word{4, "OBD I"},
    Word{5, "not OBD compliant"},
    Word{6, "EOBD"},
    Word{7, "EOBD and OBD II"},
    Word{8, "EOBD and OBD"},
    Word{9, "EOBD, OBD and OBD II"},
    Word{10, "JOBD"},
    Word{11, "JOBD and OBD II"},
    Word{12, "JOBD and EOBD"},
    Word{13, "JOBD, EOBD and OBD II"},
    Word{14, "OBD, EOBD and KOBD (formerly Euro IV B1)"},
    Word{15, "OBD, OBD II, EOBD and KOBD (formerly Euro V B2)"},
    Word{16, "Euro EEV C (later reserved)"},
    Word{17, "EMD"},
    Word{18, "EMD+"},
    Word{19, "HD OBD-C"},
    Word{20, "HD OBD"},
    Word{21, "WWH OBD"},
    Word{23, "HD EOBD-I"},
    Word{24, "HD EOBD-I N"},
    Word{25, "HD EOBD-II"},
    Word{26, "HD EOBD-II N"},
    Word{27, "HD ZEV"},
    Word{28, "OBDBr-1"},
    Word{29, "OBDBr-2"},
    Word{30, "KOBD"},
    Word{31, "IOBD I"},
    Word{32, "IOBD II"},
    Word{33, "HD EOBD-VI"},
    Word{34, "OBD, OBD II and HD OBD"},
    Word{35, "OBDBr-3"},
    Word{36, "MC EOBD-I"},
    Word{37, "MC EOBD-II"},
    Word{38, "MC COBD-I"},
    Word{39, "MC TOBD-I"},
    Word{40, "MC JOBD-I"},
    Word{41, "CN-OBD-6"},
    Word{42, "OBDBr-P7"},
    Word{43, "CN-HDOBD-VI"},
    Word{44, "IOBD-I BS6"},
    Word{45, "IOBD-II BS6"},
    Word{46, "IHDOBD BSVI"},
    Word{47, "OBDBr-P8"},
    Word{48, "HD JOBD-II"},
    Word{49, "HD KOBD-II"},
    Word{50, "CN-OROBD-IV"},
    Word{51, "CARB ACC-II"},
    Word{52, "MC JOBD-II"},
    Word{53, "MC CARB OBD"},
    Word{54, "MC EPA OBD"},
    Word{55, "MC CARB and EPA OBD"},
    Word{56, "HD ZEV CARB ZEP"},
    Word{57, "CARB ACC-II and EPA Tier 4"},
    Word{58, "EPA Tier 4"},
    Word{59, "EPA HD OBD"},
};

constexpr std::array offActive = {Word{0, "off"}, Word{1, "active"}};
constexpr std::array ignitions = {Word{0, "spark"}, Word{1, "compression"}};

constexpr std::array fuelTypes = {
    Word{0, "not available"},
    Word{1, "gasoline"},
    Word{2, "methanol"},
    Word{3, "ethanol"},
    Word{4, "diesel"},
    Word{5, "LPG"},
    Word{6, "CNG"},
    Word{7, "propane"},
    Word{8, "battery/electric"},
    Word{9, "bi-fuel on gasoline"},
    Word{10, "bi-fuel on methanol"},
    Word{11, "bi-fuel on ethanol"},
    Word{12, "bi-fuel on LPG"},
    Word{13, "bi-fuel on CNG"},
    Word{14, "bi-fuel on propane"},
    Word{15, "bi-fuel on battery"},
    Word{16, "bi-fuel on battery and engine"},
    Word{17, "hybrid on gasoline"},
    Word{18, "hybrid on ethanol"},
    Word{19, "hybrid on diesel"},
    Word{20, "hybrid on battery"},
    Word{21, "hybrid on battery and engine"},
    Word{22, "hybrid in regeneration"},
    Word{23, "bi-fuel on diesel"},
    Word{24, "bi-fuel on natural gas"},
    Word{25, "bi-fuel on diesel"},
    Word{26, "natural gas"},
    Word{27, "dual fuel, diesel and CNG"},
    Word{28, "dual fuel, diesel and LNG"},
    Word{29, "hydrogen fuel cell"},
    Word{30, "hydrogen engine"},
    Word{31, "kerosene"},
    Word{32, "heavy fuel oil"},
};

constexpr std::array emissionLevels = {
    Word{14, "Euro IV B1"},
    Word{15, "Euro V B2"},
    Word{16, "Euro EEV C"},
    Word{17, "Euro VI"},
};

constexpr FullScale largestPressure{&ParameterContext::largestValues, 3, 10, 255};
constexpr FullScale largestFlow{&ParameterContext::largestAirFlow, 0, 10, 65535};

constexpr Formula manifoldPressure{.unit = "kPa", .fullScale = &largestPressure};
constexpr Formula quarterTurns{.unit = "rpm", .over = 4};
constexpr Formula sparkAngle{.unit = "°", .over = 2, .plus = -64};
constexpr Formula injectionAngle{.unit = "°", .over = 128, .plus = -210};
constexpr Formula airFlow{.unit = "g/s", .over = 100, .fullScale = &largestFlow};
constexpr Formula absoluteLoad{.unit = "%", .times = 100, .over = 255};

constexpr std::array basicGroups = {
    ParameterGroup{0x00, 4, "Supported parameters 01 to 20"},
    ParameterGroup{0x01, 4, "Check engine light, code count and monitors since clearing"},
    ParameterGroup{0x03, 2, "Fuel system status"},
    ParameterGroup{0x06, 1, "Short term fuel trim, banks 1 and 3"},
    ParameterGroup{0x07, 1, "Long term fuel trim, banks 1 and 3"},
    ParameterGroup{0x08, 1, "Short term fuel trim, banks 2 and 4"},
    ParameterGroup{0x09, 1, "Long term fuel trim, banks 2 and 4"},
    ParameterGroup{0x20, 4, "Supported parameters 21 to 40"},
    ParameterGroup{0x40, 4, "Supported parameters 41 to 60"},
    ParameterGroup{0x41, 4, "Monitors in this drive cycle"},
    ParameterGroup{0x4F, 4, "Full scales of ratio, oxygen sensors and manifold pressure"},
    ParameterGroup{0x50, 4, "Full scale of mass air flow"},
    ParameterGroup{0x55, 1, "Short term secondary oxygen sensor trim, banks 1 and 3"},
    ParameterGroup{0x56, 1, "Long term secondary oxygen sensor trim, banks 1 and 3"},
    ParameterGroup{0x57, 1, "Short term secondary oxygen sensor trim, banks 2 and 4"},
    ParameterGroup{0x58, 1, "Long term secondary oxygen sensor trim, banks 2 and 4"},
    ParameterGroup{0x60, 4, "Supported parameters 61 to 80"},
};

constexpr Field inFourBanks(Field field)
{
    field.needsFourBanks = true;
    return field;
}

/// The monitors of 01 and 41 that are not complete. @param raw B to D
std::string unfinishedMonitors(std::uint32_t raw)
{
    const std::array<std::uint8_t, 4> status{0, static_cast<std::uint8_t>(raw >> 16),
                                             static_cast<std::uint8_t>(raw >> 8),
                                             static_cast<std::uint8_t>(raw)};
    std::string names;
    for (const auto& [name, state] : readinessIn(status).monitors) {
        if (state == MonitorState::incomplete)
            names += (names.empty() ? "" : ", ") + monitorText(name);
    }
    return names.empty() ? "none" : names;
}

constexpr std::array basicFields = {
    Field{0x00, "Supported parameters 01 to 20", "A-D", &supportedParameters<0x00>},
    Field{0x01, "Check engine light", "A7", OneOf{offOn}},
    Field{0x01, "Stored codes", "A6-0", plainCount},
    Field{0x01, "Ignition", "B3", OneOf{ignitions}},
    Field{0x01, "Monitors not complete since codes cleared", "B-D", &unfinishedMonitors},
    Field{0x02, "Code that stored the freeze frame", "AB", &freezeFrameCode},
    Field{0x03, "Fuel system 1", "A", OneOf{firstSystemStates}},
    Field{0x03, "Fuel system 2", "B", OneOf{secondSystemStates}},
    Field{0x04, "Calculated engine load", "A", percent},
    Field{0x05, "Coolant temperature", "A", celsius},
    Field{0x06, "Short term fuel trim, bank 1", "A", trimPercent},
    inFourBanks({0x06, "Short term fuel trim, bank 3", "B", trimPercent}),
    Field{0x07, "Long term fuel trim, bank 1", "A", trimPercent},
    inFourBanks({0x07, "Long term fuel trim, bank 3", "B", trimPercent}),
    Field{0x08, "Short term fuel trim, bank 2", "A", trimPercent},
    inFourBanks({0x08, "Short term fuel trim, bank 4", "B", trimPercent}),
    Field{0x09, "Long term fuel trim, bank 2", "A", trimPercent},
    inFourBanks({0x09, "Long term fuel trim, bank 4", "B", trimPercent}),
    Field{0x0A, "Fuel pressure (gauge)", "A", Formula{.unit = "kPa", .times = 3}},
    Field{0x0B, "Intake manifold pressure (absolute)", "A", manifoldPressure},
    Field{0x0C, "Engine speed", "AB", quarterTurns},
    Field{0x0D, "Vehicle speed", "A", Formula{.unit = "km/h"}},
    Field{0x0E, "Ignition advance, cylinder 1", "A", sparkAngle},
    Field{0x0F, "Intake air temperature", "A", celsius},
    Field{0x10, "Mass air flow", "AB", airFlow},
    Field{0x11, "Throttle position", "A", percent},
    Field{0x12, "Commanded secondary air", "A", OneOf{secondaryAirStates}},
    Field{0x1C, "OBD requirements met", "A", OneOf{requirements}},
    Field{0x1E, "Power take-off", "A0", OneOf{offActive}},
    Field{0x1F, "Time since engine start", "AB", inSeconds},
    Field{0x20, "Supported parameters 21 to 40", "A-D", &supportedParameters<0x20>},
    Field{0x21, "Distance with check engine light on", "AB", inKilometres},
    Field{0x22, "Fuel rail pressure (above manifold vacuum)", "AB", Formula{.unit = "kPa", .times = 0.079}},
    Field{0x23, "Fuel rail pressure (gauge)", "AB", tenKilopascals},
    Field{0x2C, "Commanded EGR", "A", percent},
    Field{0x2D, "EGR error", "A", trimPercent},
    Field{0x2E, "Commanded evaporative purge", "A", percent},
    Field{0x2F, "Fuel level", "A", percent},
    Field{0x30, "Warm-ups since codes cleared", "A", plainCount},
    Field{0x31, "Distance since codes cleared", "AB", inKilometres},
    Field{0x32, "Evaporative system pressure", "AB", Formula{.unit = "Pa", .over = 4, .isSigned = true}},
    Field{0x33, "Barometric pressure", "A", inKilopascals},
    Field{0x3C, "Catalyst temperature, bank 1 sensor 1", "AB", fineCelsius},
    Field{0x3D, "Catalyst temperature, bank 2 sensor 1", "AB", fineCelsius},
    Field{0x3E, "Catalyst temperature, bank 1 sensor 2", "AB", fineCelsius},
    Field{0x3F, "Catalyst temperature, bank 2 sensor 2", "AB", fineCelsius},
    Field{0x40, "Supported parameters 41 to 60", "A-D", &supportedParameters<0x40>},
    Field{0x41, "Monitors not complete in this drive cycle", "B-D", &unfinishedMonitors},
    Field{0x42, "Control module voltage", "AB", Formula{.unit = "V", .over = 1000}},
    Field{0x43, "Absolute load", "AB", absoluteLoad},
    Field{0x44, "Commanded equivalence ratio", "AB", equivalenceRatio},
    Field{0x45, "Relative throttle position", "A", percent},
    Field{0x46, "Ambient air temperature", "A", celsius},
    Field{0x47, "Throttle position B", "A", percent},
    Field{0x48, "Throttle position C", "A", percent},
    Field{0x49, "Accelerator pedal position D", "A", percent},
    Field{0x4A, "Accelerator pedal position E", "A", percent},
    Field{0x4B, "Accelerator pedal position F", "A", percent},
    Field{0x4C, "Commanded throttle actuator", "A", percent},
    Field{0x4D, "Engine run time with check engine light on", "AB", inMinutes},
    Field{0x4E, "Engine run time since codes cleared", "AB", inMinutes},
    Field{0x4F, "Full scale of equivalence ratio", "A", Formula{.unit = "ratio"}},
    Field{0x4F, "Full scale of oxygen sensor voltage", "B", Formula{.unit = "V"}},
    Field{0x4F, "Full scale of oxygen sensor current", "C", Formula{.unit = "mA"}},
    Field{0x4F, "Full scale of intake manifold pressure", "D", tenKilopascals},
    Field{0x50, "Full scale of mass air flow", "A", Formula{.unit = "g/s", .times = 10}},
    Field{0x51, "Fuel in use", "A", OneOf{fuelTypes}},
    Field{0x52, "Alcohol in fuel", "A", percent},
    Field{0x53, "Evaporative system pressure (absolute)", "AB", Formula{.unit = "kPa", .over = 200}},
    Field{0x54, "Evaporative system pressure, wide range", "AB", Formula{.unit = "Pa", .isSigned = true}},
    Field{0x55, "Short term secondary oxygen sensor trim, bank 1", "A", trimPercent},
    inFourBanks({0x55, "Short term secondary oxygen sensor trim, bank 3", "B", trimPercent}),
    Field{0x56, "Long term secondary oxygen sensor trim, bank 1", "A", trimPercent},
    inFourBanks({0x56, "Long term secondary oxygen sensor trim, bank 3", "B", trimPercent}),
    Field{0x57, "Short term secondary oxygen sensor trim, bank 2", "A", trimPercent},
    inFourBanks({0x57, "Short term secondary oxygen sensor trim, bank 4", "B", trimPercent}),
    Field{0x58, "Long term secondary oxygen sensor trim, bank 2", "A", trimPercent},
    inFourBanks({0x58, "Long term secondary oxygen sensor trim, bank 4", "B", trimPercent}),
    Field{0x59, "Fuel rail pressure (absolute)", "AB", tenKilopascals},
    Field{0x5A, "Relative accelerator pedal position", "A", percent},
    Field{0x5B, "Charge of hybrid battery", "A", percent},
    Field{0x5C, "Engine oil temperature", "A", celsius},
    Field{0x5D, "Fuel injection timing", "AB", injectionAngle},
    Field{0x5E, "Engine fuel rate", "AB", Formula{.unit = "L/h", .over = 20}},
    Field{0x5F, "Emission level", "A", OneOf{emissionLevels}},
    Field{0x60, "Supported parameters 61 to 80", "A-D", &supportedParameters<0x60>},
};

} // namespace

ParameterTable basicParameters() { return {basicGroups, basicFields}; }

} // namespace zint
