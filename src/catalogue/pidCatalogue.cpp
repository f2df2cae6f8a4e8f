#include "catalogue/pidCatalogue.h"

#include "catalogue/conversion.h"

#include <algorithm>

namespace zint {

using conversionCode::displayHex;

// Set up for users in the US: temperatures in Fahrenheit, speed in miles per hour, manifold pressure in psi.
constexpr std::array<Pid, pidCount> PidNames = {{
    {"Supported PID", displayHex},
    {"MIL Status", displayHex},
    {"unused", 0},
    {"Fuel Sys Status", displayHex},
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
    {"Secondary Air Status", displayHex},
    {"O2 Sensor location", displayHex},
    {"O2 Sensor 1-1 Voltage", 15},
    {"O2 Sensor 1-2 Voltage", 15},
    {"O2 Sensor 1-3 Voltage", 15},
    {"O2 Sensor 1-4 Voltage", 15},
    {"O2 Sensor 1-5 Voltage", 15},
    {"O2 Sensor 1-6 Voltage", 15},
    {"O2 Sensor 1-7 Voltage", 15},
    {"O2 Sensor 1-8 Voltage", 15},
    {"OBD type", displayHex},
    {"unknown", 0},
    {"unknown", 0},
    {"unknown", 0},
}};

static_assert(std::ranges::all_of(PidNames, [](const Pid& pid) {
    return pid.defaultConversion >= 0 &&
           pid.defaultConversion < static_cast<std::int32_t>(ConversionTable.size());
}));

constexpr std::array<std::string_view, 14> PollChoices = {
    "   0>Do not poll", "   1>Every time", "   2>Every other", "   3>Every 3rd",   "   4>Every 4th",
    "   5>Every 5th",   "  15>about 5s",   "  90>about 30s",   " 180>about 1min",  " 270>about 90s",
    " 360>about 2min",  " 540>about 3min", " 900>about 5min",  "1800>about 10min",
};

} // namespace zint
