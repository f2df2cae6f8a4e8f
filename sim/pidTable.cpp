#include "sim/pidTable.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>

namespace zint {
namespace {

/// The nearest number that fits into a byte or, with the other limit, into two.
std::uint32_t rounded(double value, double limit = 255)
{
    return static_cast<std::uint32_t>(std::lround(std::clamp(value, 0.0, limit)));
}

std::uint32_t percent(double value) { return rounded(value * 255 / 100); }
std::uint32_t trim(double value) { return rounded((value + 100) * 128 / 100); }
std::uint32_t celsius(double value) { return rounded(value + 40); }
std::uint32_t word(double value) { return rounded(value, 65535); }
std::uint32_t sensor(double volts, std::uint32_t trimByte) { return rounded(volts * 200) << 8 | trimByte; }

std::uint32_t fuelSystem(const EngineData& e)
{
    constexpr std::uint32_t openCold = 0x0100;
    constexpr std::uint32_t closedLoop = 0x0200;
    constexpr std::uint32_t openByDriving = 0x0400;
    if (e.drive.coolant < 50)
        return openCold;
    return std::abs(e.drive.acceleration) > 1.2 ? openByDriving : closedLoop;
}

constexpr bool measured = true;
constexpr bool fixed = false;

constexpr std::array pids{
    VehiclePid{0x01, 4, fixed, [](const EngineData& e) { return e.monitorStatus; }},
    VehiclePid{0x03, 2, measured, fuelSystem},
    VehiclePid{0x04, 1, measured, [](const EngineData& e) { return percent(e.drive.load); }},
    VehiclePid{0x05, 1, measured, [](const EngineData& e) { return celsius(e.drive.coolant); }},
    VehiclePid{0x06, 1, measured, [](const EngineData& e) { return trim(e.drive.shortTrim); }},
    VehiclePid{0x07, 1, measured, [](const EngineData& e) { return trim(e.drive.longTrim); }},
    VehiclePid{0x0B, 1, measured, [](const EngineData& e) { return rounded(e.drive.manifold); }},
    VehiclePid{0x0C, 2, measured, [](const EngineData& e) { return word(e.drive.engineSpeed * 4); }},
    VehiclePid{0x0D, 1, measured, [](const EngineData& e) { return rounded(e.drive.speed); }},
    VehiclePid{0x0E, 1, measured,
               [](const EngineData& e) { return rounded((e.drive.ignitionAdvance + 64) * 2); }},
    VehiclePid{0x0F, 1, measured, [](const EngineData& e) { return celsius(e.drive.intakeAir); }},
    VehiclePid{0x10, 2, measured, [](const EngineData& e) { return word(e.drive.airFlow * 100); }},
    VehiclePid{0x11, 1, measured, [](const EngineData& e) { return percent(e.drive.throttle); }},
    VehiclePid{0x13, 1, fixed, [](const EngineData&) { return 0x03U; }}, // both sensors of bank 1
    VehiclePid{0x14, 2, fixed,
               [](const EngineData& e) { return sensor(e.drive.sensorBefore, trim(e.drive.shortTrim)); }},
    VehiclePid{0x15, 2, fixed,
               [](const EngineData& e) { return sensor(e.drive.sensorBehind, 0xFF); }}, // not used for trim
    VehiclePid{0x1C, 1, fixed, [](const EngineData&) { return 0x01U; }},
    VehiclePid{0x1F, 2, fixed, [](const EngineData& e) { return word(std::floor(e.drive.seconds)); }},
    VehiclePid{0x2F, 1, fixed, [](const EngineData& e) { return percent(e.drive.fuelLevel); }},
    VehiclePid{0x33, 1, fixed, [](const EngineData&) { return 99U; }},
};
static_assert(std::ranges::is_sorted(pids, {}, &VehiclePid::number));
static_assert(std::ranges::none_of(pids, isSupportPid, &VehiclePid::number));

} // namespace

std::span<const VehiclePid> pidTable() { return pids; }

const VehiclePid* findPid(std::uint8_t number)
{
    const auto* const found = std::ranges::lower_bound(pids, number, {}, &VehiclePid::number);
    return found != pids.end() && found->number == number ? found : nullptr;
}

std::uint32_t supportMask(std::uint8_t number, bool freezeFrame)
{
    std::uint32_t mask = 0;
    for (const VehiclePid& pid : pids) {
        if (pid.number <= number || (freezeFrame && !pid.inFreezeFrame))
            continue;
        const int place = std::min(pid.number - number, 32); // what lies further away shows in the last bit
        mask |= 0x80000000U >> (place - 1);
    }
    return mask;
}

} // namespace zint
