#include "catalogue/pidCatalogue.h"

#include <algorithm>
#include <iterator>
#include <type_traits>

namespace zint {
namespace {

struct Pid {
    std::string_view name;
    std::int32_t conversion;
};

// Set up for users in the US: temperatures in Fahrenheit, speed in miles per hour, manifold pressure in psi.
constexpr std::array<Pid, pidCount> pids = {{
    {"Supported PID", displayHexConversion},
    {"MIL Status", displayHexConversion},
    {"unused", 0},
    {"Fuel Sys Status", displayHexConversion},
    {"Calculated Engine Load", 1},
    {"Coolant Temp", 4},
    {"Short term fuel trim 1", 2},
    {"Long term fuel trim 1", 2},
    {"Short term fuel trim 2", 2},
    {"Long term fuel trim 2", 2},
    {"Fuel Pressure", 18},
    {"Manifold Air Pressure", 11},
    {"Engine RPM", 5},
    {"Vehicle Speed", 7},
    {"Ignition Advance", 14},
    {"Intake Air Temp", 4},
    {"Air Flow", 17},
    {"Throttle Position", 1},
    {"Secondary Air Status", displayHexConversion},
    {"O2 Sensor location", displayHexConversion},
    {"O2 Sensor 1-1 Voltage", 15},
    {"O2 Sensor 1-2 Voltage", 15},
    {"O2 Sensor 1-3 Voltage", 15},
    {"O2 Sensor 1-4 Voltage", 15},
    {"O2 Sensor 1-5 Voltage", 15},
    {"O2 Sensor 1-6 Voltage", 15},
    {"O2 Sensor 1-7 Voltage", 15},
    {"O2 Sensor 1-8 Voltage", 15},
    {"OBD type", displayHexConversion},
    {"unknown", 0},
    {"unknown", 0},
    {"unknown", 0},
}};

template <typename Column>
constexpr auto column(Column member)
{
    std::array<std::remove_cvref_t<decltype(pids[0].*member)>, pidCount> values{};
    for (std::size_t pid = 0; pid < values.size(); ++pid)
        values[pid] = pids[pid].*member;
    return values;
}

} // namespace

constexpr std::array<std::string_view, pidCount> PidNames = column(&Pid::name);
constexpr std::array<std::int32_t, pidCount> PidDefaultConversion = column(&Pid::conversion);

constexpr std::array<Conversion, 25> ConversionTable = {{
    {"No Conversion", 0},     {"Byte Percentage", 1},   {"Trim % (+-100%)", 2},
    {"Celsius", 3},           {"Fahrenheit", 3},        {"RPM", 4},
    {"KPH (km/hour)", 5},     {"MPH (miles/hour)", 5},  {"m/s (meters/sec)", 5},
    {"kPa pressure Air", 6},  {"Torr (mmHg) Air", 6},   {"psi  Air", 6},
    {"inHg  Air", 6},         {" --undef", 0},          {"Timing Adv. Deg", 7},
    {"Volts O2 sensor", 8},   {"STFT O2 sensor", 9},    {"Air flow gm/sec", 10},
    {"kPa Gauge (fuel)", 11}, {"psi Gauge (fuel)", 11}, {"Display Hex", 0},
    {"Fuel system stat", 12}, {"~ fuel gm/sec", 10},    {"~ fuel ml/sec", 10},
    {"~ fuel gal/hour", 10},
}};

static_assert(ConversionTable[displayHexConversion].name == "Display Hex");
static_assert(std::ranges::all_of(PidDefaultConversion, [](std::int32_t code) {
    return code >= 0 && code < std::ssize(ConversionTable);
}));

constexpr std::array<std::string_view, 14> PollChoices = {
    "   0>Do not poll", "   1>Every time", "   2>Every other", "   3>Every 3rd",   "   4>Every 4th",
    "   5>Every 5th",   "  15>about 5s",   "  90>about 30s",   " 180>about 1min",  " 270>about 90s",
    " 360>about 2min",  " 540>about 3min", " 900>about 5min",  "1800>about 10min",
};

const Conversion* findConversion(std::int32_t code)
{
    const bool isRow = code >= 0 && code < static_cast<std::int32_t>(ConversionTable.size());
    return isRow ? &ConversionTable.at(static_cast<std::size_t>(code)) : nullptr;
}

} // namespace zint
