#include "sim/pidTable.h"

#include "sim/completePids.h"
#include "sim/supportBits.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

namespace zint {
namespace {

using namespace scaled;

template <std::uint64_t number, int byteCount = 1>
PidData always(const EngineData&)
{
    return {number, byteCount};
}

PidData fuelSystem(const EngineData& e)
{
    constexpr std::uint8_t openCold = 0x01;
    constexpr std::uint8_t closedLoop = 0x02;
    constexpr std::uint8_t openByDriving = 0x04;
    const bool isPushed = std::abs(e.drive.acceleration) > 1.2;
    return byte(e.drive.coolant < 50 ? openCold : isPushed ? openByDriving : closedLoop, 0);
}

double distance(const EngineData& e) { return std::round(e.sinceClearing * 0.012); } // 43 km/h
double minutes(const EngineData& e) { return e.sinceClearing / 60; }

constexpr PidScale sparkAngle{.times = 2, .offset = 64};
constexpr PidScale volts{.byteCount = 2, .times = 1000};
constexpr PidScale absoluteLoad{.byteCount = 2, .times = 255, .over = 100};
constexpr PidScale ratio{.byteCount = 2, .times = 32768};
constexpr PidScale litresPerHour{.byteCount = 2, .times = 20};

constexpr UnitKinds compressionOnly = only(UnitKind::diesel);

PidData monitors(const EngineData& e) { return {e.monitorStatus, 4}; }
PidData cycleMonitors(const EngineData& e) { return {e.monitorStatus & 0x00FFFFFF, 4}; } // without the codes

constexpr auto commonPids = std::to_array<VehiclePid>({
    {0x01, allUnits, fixed, monitors},
    {0x03, sparkEngines, measured, fuelSystem},
    {0x04, engines, measured, [](const EngineData& e) { return percent(e.drive.load); }},
    {0x05, engines, measured, [](const EngineData& e) { return celsius(e.drive.coolant); }},
    {0x06, sparkEngines, measured, [](const EngineData& e) { return trim(e.drive.shortTrim); }},
    {0x07, sparkEngines, measured, [](const EngineData& e) { return trim(e.drive.longTrim); }},
    {0x0B, engines, measured, [](const EngineData& e) { return byte(e.drive.manifold); }},
    {0x0C, allUnits, measured,
               [](const EngineData& e) { return turns(e.drive.engineSpeed); }},
    {0x0D, allUnits, measured, [](const EngineData& e) { return byte(e.drive.speed); }},
    {0x0E, sparkEngines, measured,
               [](const EngineData& e) { return sparkAngle(e.drive.ignitionAdvance); }},
    {0x0F, engines, measured, [](const EngineData& e) { return celsius(e.drive.intakeAir); }},
    {0x10, engines, measured, [](const EngineData& e) { return centi(e.drive.airFlow); }},
    {0x11, engines, measured, [](const EngineData& e) { return percent(e.drive.throttle); }},
    {0x13, UnitKind::spark | UnitKind::sparkNewer, fixed, always<0x03>}, // both sensors of bank 1
    {0x14, sparkEngines, fixed,
               [](const EngineData& e) { return sensorVolts(e.drive.sensorBefore) + trim(e.drive.shortTrim); }},
    {0x15, sparkEngines, fixed,
               [](const EngineData& e) { return sensorVolts(e.drive.sensorBehind) + byte(0xFF); }}, // not used for trim
    {0x1C, engines, fixed, always<0x01>},
    {0x1F, engines, fixed,
               [](const EngineData& e) { return word(std::floor(e.drive.seconds)); }},
    {0x21, newerEngines, fixed, [](const EngineData& e) { return word(lampOn(e) ? distance(e) : 0); }},
    {0x23, dieselTellers, measured,
               [](const EngineData& e) { return tenKilopascals(30000 + 1300 * e.drive.load); }},
    {0x2C, newerEngines, measured,
               [](const EngineData& e) { return percent(e.drive.load < 60 ? 12 : 0); }},
    {0x2D, newerEngines, measured, [](const EngineData&) { return trim(-1.6); }},
    {0x2E, newerSparkEngines, measured, [](const EngineData&) { return percent(18); }},
    {0x2F, engines, fixed, [](const EngineData& e) { return percent(e.drive.fuelLevel); }},
    {0x30, newerEngines, fixed,
               [](const EngineData& e) { return byte(e.sinceClearing / 14400); }},
    {0x31, newerEngines, fixed, [](const EngineData& e) { return word(distance(e)); }},
    {0x32, newerSparkEngines, fixed,
               [](const EngineData&) { return quarterPascals(-120.5); }},
    {0x33, engines, fixed, always<99>},
    {0x3C, newerEngines, measured,
               [](const EngineData& e) { return fineCelsius(420 + 3 * e.drive.load); }},
    {0x41, newerEngines | UnitKind::transmission, fixed, cycleMonitors},
    {0x42, newerEngines | UnitKind::transmission, measured,
               [](const EngineData& e) { return volts(13.95 + 0.002 * e.drive.load); }},
    {0x43, newerSparkEngines, measured,
               [](const EngineData& e) { return absoluteLoad(e.drive.load * 0.9); }},
    {0x44, newerSparkEngines, measured,
               [](const EngineData& e) { return ratio(1 - e.drive.shortTrim / 400); }},
    {0x45, newerSparkEngines, measured,
               [](const EngineData& e) { return percent(e.drive.throttle - 11); }},
    {0x46, newerEngines, measured, [](const EngineData&) { return celsius(21); }},
    {0x49, newerEngines, measured,
               [](const EngineData& e) { return percent(e.drive.throttle); }},
    {0x4A, newerEngines, measured,
               [](const EngineData& e) { return percent(e.drive.throttle / 2); }},
    {0x4C, newerSparkEngines, measured,
               [](const EngineData& e) { return percent(e.drive.throttle); }},
    {0x4D, newerEngines, fixed, [](const EngineData& e) { return word(lampOn(e) ? minutes(e) : 0); }},
    {0x4E, newerEngines, fixed, [](const EngineData& e) { return word(minutes(e)); }},
    {0x51, newerSparkEngines, fixed, always<1>},
    {0x51, compressionOnly, fixed, always<4>},
    {0x5C, newerEngines, measured,
               [](const EngineData& e) { return celsius(e.drive.coolant + 6); }},
    {0x5E, newerEngines, measured,
               [](const EngineData& e) { return litresPerHour(e.drive.airFlow * 0.3); }},
    {0x61, dieselTellers, measured,
               [](const EngineData& e) { return torque(e.drive.load - 12); }},
    {0x62, dieselTellers, measured,
               [](const EngineData& e) { return torque(e.drive.load - 15); }},
    {0x63, dieselTellers, fixed, always<350, 2>},
    {0x64, dieselTellers, fixed, [](const EngineData&) { return torque(15, 35, 75, 95, 100); }},
    {0x66, compressionOnly, measured,
        [](const EngineData& e) { return byte(0x01) + airFlowSensor(e.drive.airFlow, 0); }},
    {0x67, newerEngines, measured,
               [](const EngineData& e) {
                   return byte(0x03) + celsius(e.drive.coolant, e.drive.coolant - 9);
               }},
    {0x7A, compressionOnly, measured,
               [](const EngineData& e) {
                   return byte(0x03) + signedCenti(0.08 * e.drive.load) + centi(101.4 + 0.08 * e.drive.load) + word(0);
               }},
    {0xA6, newerEngines, fixed, [](const EngineData& e) { return fourBytes(1234567 + distance(e) * 10); }},
});

/// Those of a complete engine come first, for it does some of the others better.
std::span<const std::span<const VehiclePid>> pidTables()
{
    static const std::array<std::span<const VehiclePid>, 4> tables{completeBasicPids(), completeEnginePids(),
                                                                   completeExhaustPids(), commonPids};
    return tables;
}

} // namespace

const VehiclePid* findPid(UnitKind unit, std::uint8_t number)
{
    for (const std::span<const VehiclePid> table : pidTables()) {
        const auto found = std::ranges::find_if(
            table, [=](const VehiclePid& pid) { return pid.number == number && contains(pid.units, unit); });
        if (found != table.end())
            return &*found;
    }
    return nullptr;
}

std::uint32_t supportMask(UnitKind unit, std::uint8_t number, bool freezeFrame)
{
    std::uint32_t mask = 0;
    for (const std::span<const VehiclePid> table : pidTables()) {
        for (const VehiclePid& pid : table) {
            const bool shown = contains(pid.units, unit) && (pid.inFreezeFrame || !freezeFrame);
            mask |= shown ? supportBit(number, pid.number) : 0;
        }
    }
    return mask;
}

} // namespace zint
