#include "sim/completePids.h"
#include "sim/supportBits.h"

#include <algorithm>
#include <array>

namespace zint {
namespace {

using namespace scaled;

constexpr UnitKinds fourBanksOnly = only(UnitKind::completeV);

// The full scales that an engine with four banks tells in 4F and 50; another one has those of the standard.
constexpr double largestRatio = 4;
constexpr double largestSensorVoltage = 16; // V
constexpr double largestSensorCurrent = 64; // mA
constexpr double largestPressure = 510;     // kPa
constexpr double largestAirFlow = 1310;     // g/s

constexpr PidScale threeKilopascals{.over = 3};
constexpr PidScale railPressure{.byteCount = 2, .over = 0.079};  // kPa
constexpr PidScale absoluteVapour{.byteCount = 2, .times = 200}; // kPa
constexpr PidScale wideVapour{.byteCount = 2, .isSigned = true}; // Pa
constexpr PidScale injectionAngle{.byteCount = 2, .times = 128, .offset = 210};
constexpr PidScale largerPressure{.times = 255, .over = largestPressure};
constexpr PidScale largerAirFlow{.byteCount = 2, .times = 65535, .over = largestAirFlow};
constexpr PidScale usualRatio{.byteCount = 2, .times = 65536, .over = 2};
constexpr PidScale largerRatio{.byteCount = 2, .times = 65535, .over = largestRatio};
constexpr PidScale usualVoltage{.byteCount = 2, .times = 65536, .over = 8};
constexpr PidScale largerVoltage{.byteCount = 2, .times = 65535, .over = largestSensorVoltage};
constexpr PidScale usualCurrent{.byteCount = 2, .times = 32768, .over = 128, .offset = 128};
constexpr PidScale smallerCurrent{
    .byteCount = 2, .times = 32768, .over = largestSensorCurrent, .offset = largestSensorCurrent};

/// Only where there are banks 3 and 4 is there a second byte.
PidData trims(const EngineData& e, double first, double second)
{
    return e.hasFourBanks ? trim(first, second) : trim(first);
}

/// A sensor by its place, 0 to 7. The first of each half stands ahead of a catalyst and is used for trim.
template <int place>
PidData narrowSensor(const EngineData& e)
{
    if constexpr (place == 4)
        return sensorVolts(0.9 - e.drive.sensorBefore) + trim(-e.drive.shortTrim);
    else
        return sensorVolts(e.drive.sensorBehind + 0.02 * place) + byte(0xFF);
}

template <int place>
PidData sensorRatio(const EngineData& e)
{
    return (e.hasFourBanks ? largerRatio : usualRatio)(mixtureRatio(e) + 0.01 * place);
}

template <int place>
PidData wideSensorVoltage(const EngineData& e)
{
    const PidScale& scaling = e.hasFourBanks ? largerVoltage : usualVoltage;
    return sensorRatio<place>(e) + scaling(2 + 0.3 * place + e.drive.shortTrim / 10);
}

template <int place>
PidData wideSensorCurrent(const EngineData& e)
{
    const PidScale& scaling = e.hasFourBanks ? smallerCurrent : usualCurrent;
    return sensorRatio<place>(e) + scaling(0.4 * place - 2 - e.drive.shortTrim / 4);
}

constexpr auto basicPids = std::to_array<VehiclePid>({
    {0x02, completeEngines, fixed, [](const EngineData& e) { return word(e.frozenCode); }},
    {0x06, fourBanksOnly, measured,
     [](const EngineData& e) { return trim(e.drive.shortTrim, e.drive.shortTrim + 3.9); }},
    {0x07, fourBanksOnly, measured, [](const EngineData& e) { return trim(e.drive.longTrim, 5.5); }},
    {0x08, completeEngines, measured,
     [](const EngineData& e) { return trims(e, -e.drive.shortTrim, -4.7 - e.drive.shortTrim); }},
    {0x09, completeEngines, measured, [](const EngineData& e) { return trims(e, -1.6, -3.9); }},
    {0x0A, completeEngines, measured,
     [](const EngineData& e) { return threeKilopascals(350 + 0.5 * e.drive.load); }},
    {0x0B, fourBanksOnly, measured, [](const EngineData& e) { return largerPressure(e.drive.manifold); }},
    {0x10, fourBanksOnly, measured, [](const EngineData& e) { return largerAirFlow(e.drive.airFlow); }},
    {0x12, completeEngines, measured,
     [](const EngineData& e) { return byte(e.drive.coolant < 50 ? 0x01 : 0x04); }}, // into the exhaust, or off
    {0x13, only(UnitKind::complete), fixed, [](const EngineData&) { return byte(0xFF); }},
    {0x16, completeEngines, fixed, narrowSensor<2>},
    {0x17, completeEngines, fixed, narrowSensor<3>},
    {0x18, completeEngines, fixed, narrowSensor<4>},
    {0x19, completeEngines, fixed, narrowSensor<5>},
    {0x1A, completeEngines, fixed, narrowSensor<6>},
    {0x1B, completeEngines, fixed, narrowSensor<7>},
    {0x1D, fourBanksOnly, fixed, [](const EngineData&) { return byte(0xFF); }},
    {0x1E, completeEngines, fixed, [](const EngineData&) { return byte(0); }},
    {0x22, completeEngines, measured,
     [](const EngineData& e) { return railPressure(450 - e.drive.manifold); }},
    {0x24, completeEngines, fixed, wideSensorVoltage<0>},
    {0x25, completeEngines, fixed, wideSensorVoltage<1>},
    {0x26, completeEngines, fixed, wideSensorVoltage<2>},
    {0x27, completeEngines, fixed, wideSensorVoltage<3>},
    {0x28, completeEngines, fixed, wideSensorVoltage<4>},
    {0x29, completeEngines, fixed, wideSensorVoltage<5>},
    {0x2A, completeEngines, fixed, wideSensorVoltage<6>},
    {0x2B, completeEngines, fixed, wideSensorVoltage<7>},
    {0x34, completeEngines, fixed, wideSensorCurrent<0>},
    {0x35, completeEngines, fixed, wideSensorCurrent<1>},
    {0x36, completeEngines, fixed, wideSensorCurrent<2>},
    {0x37, completeEngines, fixed, wideSensorCurrent<3>},
    {0x38, completeEngines, fixed, wideSensorCurrent<4>},
    {0x39, completeEngines, fixed, wideSensorCurrent<5>},
    {0x3A, completeEngines, fixed, wideSensorCurrent<6>},
    {0x3B, completeEngines, fixed, wideSensorCurrent<7>},
    {0x3D, completeEngines, measured,
     [](const EngineData& e) { return fineCelsius(410 + 3 * e.drive.load); }},
    {0x3E, completeEngines, measured,
     [](const EngineData& e) { return fineCelsius(360 + 3 * e.drive.load); }},
    {0x3F, completeEngines, measured,
     [](const EngineData& e) { return fineCelsius(350 + 3 * e.drive.load); }},
    {0x44, fourBanksOnly, measured, [](const EngineData& e) { return largerRatio(mixtureRatio(e)); }},
    {0x47, completeEngines, measured, [](const EngineData& e) { return percent(e.drive.throttle + 2); }},
    {0x48, completeEngines, measured, [](const EngineData& e) { return percent(e.drive.throttle / 2 + 6); }},
    {0x4B, completeEngines, measured, [](const EngineData& e) { return percent(e.drive.throttle / 2 + 9); }},
    {0x4F, completeEngines, fixed,
     [](const EngineData& e) {
         return e.hasFourBanks ? byte(largestRatio, largestSensorVoltage, largestSensorCurrent,
                                      largestPressure / 10)
                               : byte(0, 0, 0, 0);
     }},
    {0x50, completeEngines, fixed,
     [](const EngineData& e) { return byte(e.hasFourBanks ? largestAirFlow / 10 : 0, 0, 0, 0); }},
    {0x52, completeEngines, measured, [](const EngineData&) { return percent(8.5); }},
    {0x53, completeEngines, measured,
     [](const EngineData& e) { return absoluteVapour(98.9 - e.drive.speed / 100); }},
    {0x54, completeEngines, measured, [](const EngineData& e) { return wideVapour(-120 - e.drive.speed); }},
    {0x55, completeEngines, measured, [](const EngineData& e) { return trims(e, 1.6, -3.1); }},
    {0x56, completeEngines, measured, [](const EngineData& e) { return trims(e, -1.6, 4.7); }},
    {0x57, completeEngines, measured, [](const EngineData& e) { return trims(e, 3.9, -5.5); }},
    {0x58, completeEngines, measured, [](const EngineData& e) { return trims(e, -4.7, 6.3); }},
    {0x59, completeEngines, measured,
     [](const EngineData& e) { return tenKilopascals(30100 + 1300 * e.drive.load); }},
    {0x5A, completeEngines, measured,
     [](const EngineData& e) { return percent((e.drive.throttle - 13) / 0.7); }}, // pedal at rest: 13
    {0x5B, completeEngines, measured, [](const EngineData& e) { return percent(58 - e.drive.speed / 10); }},
    {0x5D, completeEngines, measured,
     [](const EngineData& e) { return injectionAngle(6 + (e.drive.engineSpeed - 780) * 0.004); }},
    {0x5F, completeEngines, fixed, [](const EngineData&) { return byte(17); }}, // Euro VI
});
static_assert(std::ranges::is_sorted(basicPids, {}, &VehiclePid::number));
static_assert(std::ranges::none_of(basicPids, isSupportItem, &VehiclePid::number));

} // namespace

std::span<const VehiclePid> completeBasicPids() { return basicPids; }

} // namespace zint
