#include "sim/pidTable.h"

#include "sim/supportBits.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace zint {
namespace {

/// The nearest number that fits into a byte or, with the other limit, into two.
std::uint64_t rounded(double value, double limit = 255)
{
    return static_cast<std::uint64_t>(std::lround(std::clamp(value, 0.0, limit)));
}

std::uint64_t percent(double value) { return rounded(value * 255 / 100); }
std::uint64_t trim(double value) { return rounded((value + 100) * 128 / 100); }
std::uint64_t celsius(double value) { return rounded(value + 40); }
std::uint64_t word(double value) { return rounded(value, 65535); }
std::uint64_t sensor(double volts, std::uint64_t trimByte) { return rounded(volts * 200) << 8 | trimByte; }

std::uint64_t fuelSystem(const EngineData& e)
{
    constexpr std::uint64_t openCold = 0x0100;
    constexpr std::uint64_t closedLoop = 0x0200;
    constexpr std::uint64_t openByDriving = 0x0400;
    if (e.drive.coolant < 50)
        return openCold;
    return std::abs(e.drive.acceleration) > 1.2 ? openByDriving : closedLoop;
}

bool lampOn(const EngineData& e) { return e.monitorStatus >> 31 != 0; }
std::uint64_t distance(const EngineData& e) { return word(e.sinceClearing * 0.012); } // 43 km/h
std::uint64_t minutes(const EngineData& e) { return word(e.sinceClearing / 60); }
std::uint64_t torque(double value) { return rounded(value + 125); }
std::uint64_t signedWord(double value)
{
    return static_cast<std::uint16_t>(static_cast<std::int16_t>(std::lround(value)));
}

template <std::uint64_t number>
std::uint64_t always(const EngineData&)
{
    return number;
}

std::uint64_t monitors(const EngineData& e) { return e.monitorStatus; }
std::uint64_t cycleMonitors(const EngineData& e) { return e.monitorStatus & 0x00FFFFFF; } // without the codes

constexpr bool measured = true;
constexpr bool fixed = false;

constexpr std::array pids{
    VehiclePid{0x01, 4, allUnits, fixed, monitors},
    VehiclePid{0x03, 2, sparkEngines, measured, fuelSystem},
    VehiclePid{0x04, 1, engines, measured, [](const EngineData& e) { return percent(e.drive.load); }},
    VehiclePid{0x05, 1, engines, measured, [](const EngineData& e) { return celsius(e.drive.coolant); }},
    VehiclePid{0x06, 1, sparkEngines, measured, [](const EngineData& e) { return trim(e.drive.shortTrim); }},
    VehiclePid{0x07, 1, sparkEngines, measured, [](const EngineData& e) { return trim(e.drive.longTrim); }},
    VehiclePid{0x0B, 1, engines, measured, [](const EngineData& e) { return rounded(e.drive.manifold); }},
    VehiclePid{0x0C, 2, allUnits, measured,
               [](const EngineData& e) { return word(e.drive.engineSpeed * 4); }},
    VehiclePid{0x0D, 1, allUnits, measured, [](const EngineData& e) { return rounded(e.drive.speed); }},
    VehiclePid{0x0E, 1, sparkEngines, measured,
               [](const EngineData& e) { return rounded((e.drive.ignitionAdvance + 64) * 2); }},
    VehiclePid{0x0F, 1, engines, measured, [](const EngineData& e) { return celsius(e.drive.intakeAir); }},
    VehiclePid{0x10, 2, engines, measured, [](const EngineData& e) { return word(e.drive.airFlow * 100); }},
    VehiclePid{0x11, 1, engines, measured, [](const EngineData& e) { return percent(e.drive.throttle); }},
    VehiclePid{0x13, 1, sparkEngines, fixed, always<0x03>}, // both sensors of bank 1
    VehiclePid{0x14, 2, sparkEngines, fixed,
               [](const EngineData& e) { return sensor(e.drive.sensorBefore, trim(e.drive.shortTrim)); }},
    VehiclePid{0x15, 2, sparkEngines, fixed,
               [](const EngineData& e) { return sensor(e.drive.sensorBehind, 0xFF); }}, // not used for trim
    VehiclePid{0x1C, 1, engines, fixed, always<0x01>},
    VehiclePid{0x1F, 2, engines, fixed,
               [](const EngineData& e) { return word(std::floor(e.drive.seconds)); }},
    VehiclePid{0x21, 2, newerEngines, fixed, [](const EngineData& e) { return lampOn(e) ? distance(e) : 0; }},
    VehiclePid{0x23, 2, only(UnitKind::diesel), measured,
               [](const EngineData& e) { return word(3000 + 130 * e.drive.load); }},
    VehiclePid{0x2C, 1, newerEngines, measured,
               [](const EngineData& e) { return percent(e.drive.load < 60 ? 12 : 0); }},
    VehiclePid{0x2D, 1, newerEngines, measured, [](const EngineData&) { return trim(-1.6); }},
    VehiclePid{0x2E, 1, only(UnitKind::sparkNewer), measured, [](const EngineData&) { return percent(18); }},
    VehiclePid{0x2F, 1, engines, fixed, [](const EngineData& e) { return percent(e.drive.fuelLevel); }},
    VehiclePid{0x30, 1, newerEngines, fixed,
               [](const EngineData& e) { return rounded(e.sinceClearing / 14400); }},
    VehiclePid{0x31, 2, newerEngines, fixed, distance},
    VehiclePid{0x32, 2, only(UnitKind::sparkNewer), fixed,
               [](const EngineData&) { return signedWord(-120.5 * 4); }},
    VehiclePid{0x33, 1, engines, fixed, always<99>},
    VehiclePid{0x3C, 2, newerEngines, measured,
               [](const EngineData& e) { return word((420 + 3 * e.drive.load + 40) * 10); }},
    VehiclePid{0x41, 4, newerEngines | UnitKind::transmission, fixed, cycleMonitors},
    VehiclePid{0x42, 2, newerEngines | UnitKind::transmission, measured,
               [](const EngineData& e) { return word(13950 + 2 * e.drive.load); }},
    VehiclePid{0x43, 2, only(UnitKind::sparkNewer), measured,
               [](const EngineData& e) { return word(e.drive.load * 0.9 * 2.55); }},
    VehiclePid{0x44, 2, only(UnitKind::sparkNewer), measured,
               [](const EngineData& e) { return word((1 - e.drive.shortTrim / 400) * 32768); }},
    VehiclePid{0x45, 1, only(UnitKind::sparkNewer), measured,
               [](const EngineData& e) { return percent(e.drive.throttle - 11); }},
    VehiclePid{0x46, 1, newerEngines, measured, [](const EngineData&) { return celsius(21); }},
    VehiclePid{0x49, 1, newerEngines, measured,
               [](const EngineData& e) { return percent(e.drive.throttle); }},
    VehiclePid{0x4A, 1, newerEngines, measured,
               [](const EngineData& e) { return percent(e.drive.throttle / 2); }},
    VehiclePid{0x4C, 1, only(UnitKind::sparkNewer), measured,
               [](const EngineData& e) { return percent(e.drive.throttle); }},
    VehiclePid{0x4D, 2, newerEngines, fixed, [](const EngineData& e) { return lampOn(e) ? minutes(e) : 0; }},
    VehiclePid{0x4E, 2, newerEngines, fixed, minutes},
    VehiclePid{0x51, 1, only(UnitKind::sparkNewer), fixed, always<1>},
    VehiclePid{0x51, 1, only(UnitKind::diesel), fixed, always<4>},
    VehiclePid{0x5C, 1, newerEngines, measured,
               [](const EngineData& e) { return celsius(e.drive.coolant + 6); }},
    VehiclePid{0x5E, 2, newerEngines, measured,
               [](const EngineData& e) { return word(e.drive.airFlow * 0.3 * 20); }},
    VehiclePid{0x61, 1, only(UnitKind::diesel), measured,
               [](const EngineData& e) { return torque(e.drive.load - 12); }},
    VehiclePid{0x62, 1, only(UnitKind::diesel), measured,
               [](const EngineData& e) { return torque(e.drive.load - 15); }},
    VehiclePid{0x63, 2, only(UnitKind::diesel), fixed, always<350>},
    VehiclePid{0x64, 5, only(UnitKind::diesel), fixed, always<0x8CA0C8DCE1>},
    VehiclePid{
        0x66, 5, only(UnitKind::diesel), measured,
        [](const EngineData& e) { return std::uint64_t{0x01} << 32 | word(e.drive.airFlow * 32) << 16; }},
    VehiclePid{0x67, 3, newerEngines, measured,
               [](const EngineData& e) {
                   return std::uint64_t{0x03} << 16 | celsius(e.drive.coolant) << 8 |
                          celsius(e.drive.coolant - 9);
               }},
    VehiclePid{0x7A, 7, only(UnitKind::diesel), measured,
               [](const EngineData& e) {
                   return std::uint64_t{0x03} << 48 | word(e.drive.load * 8) << 32 |
                          word(10140 + 8 * e.drive.load) << 16;
               }},
    VehiclePid{0xA6, 4, newerEngines, fixed, [](const EngineData& e) { return 1234567 + distance(e) * 10; }},
};
static_assert(std::ranges::is_sorted(pids, {}, &VehiclePid::number));
static_assert(std::ranges::none_of(pids, isSupportItem, &VehiclePid::number));

} // namespace

const VehiclePid* findPid(UnitKind unit, std::uint8_t number)
{
    const auto* const found = std::ranges::find_if(
        pids, [=](const VehiclePid& pid) { return pid.number == number && contains(pid.units, unit); });
    return found != pids.end() ? found : nullptr;
}

std::uint32_t supportMask(UnitKind unit, std::uint8_t number, bool freezeFrame)
{
    std::uint32_t mask = 0;
    for (const VehiclePid& pid : pids) {
        const bool shown = contains(pid.units, unit) && (pid.inFreezeFrame || !freezeFrame);
        mask |= shown ? supportBit(number, pid.number) : 0;
    }
    return mask;
}

} // namespace zint
