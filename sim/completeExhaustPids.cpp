#include "sim/completePids.h"
#include "sim/supportBits.h"

#include <algorithm>
#include <array>

namespace zint {
namespace {

using namespace scaled;

constexpr PidScale reagentRate{.byteCount = 2, .times = 200}; // L/h
constexpr PidScale reagentLitres{.byteCount = 2, .over = 0.0005};
constexpr PidScale particulateMass{.byteCount = 2, .times = 80}; // mg/m³
constexpr PidScale batteryVoltage{.byteCount = 2, .times = 64};
constexpr PidScale batteryCurrent{.byteCount = 2, .times = 10, .isSigned = true};
constexpr PidScale quarterPercent{.times = 4};
constexpr PidScale halfPercent{.times = 2};
constexpr PidScale massRate{.byteCount = 2, .times = 50}; // g/s
constexpr PidScale kilogramsPerHour{.byteCount = 2, .times = 5};
constexpr PidScale perStroke{.byteCount = 2, .times = 32}; // mg
constexpr PidScale twoPascals{.byteCount = 2, .over = 2, .isSigned = true};
constexpr PidScale thousandths{.byteCount = 2, .times = 1000};

constexpr double notUsed = 0xFFFFFFFF;
constexpr double missingCounter = 0xFFFF;

/// Both timers of five devices. Those with a number that five divides have one timer.
PidData deviceTimers(const EngineData& e, int firstDevice)
{
    PidData data = byte(0x1F);
    for (int device = firstDevice; device < firstDevice + 5; ++device) {
        data += fourBytes(100'000 * device + std::floor(e.drive.seconds));
        data += fourBytes(device % 5 == 0 ? notUsed : 70 * device);
    }
    return data;
}

/// Of a fresh exhaust gas that has more oxygen behind the engine's second half.
PidData oxygenSensors(const EngineData& e, double more)
{
    const double ratio = mixtureRatio(e) + more / 10;
    return byte(0xFF) + concentration(1.2 + more, 0.4 + more, 1.5 + more, 0.7 + more) +
           measuredRatio(ratio, ratio + 0.01, ratio + 0.02, ratio + 0.03);
}

/// No sensor has both ranges.
PidData vapourPressures(const EngineData& e)
{
    return e.hasFourBanks ? byte(0x0A) + word(0) + twoPascals(-12'000) + word(0) + twoPascals(9'000)
                          : byte(0x05) + quarterPascals(-120.5) + word(0) + quarterPascals(80.25) + word(0);
}

double lampHours(const EngineData& e) { return lampOn(e) ? std::floor(e.sinceClearing / 3600) : 0; }

PidData vehicleIndicator(const EngineData& e)
{
    constexpr int continuous = 3;
    constexpr int discriminatory = 1;
    constexpr int unfinishedMonitors = 1;
    return byte(unfinishedMonitors << 6 | (lampOn(e) ? continuous : 0) << 2 | discriminatory) +
           word(lampHours(e));
}

PidData hybridDrive(const EngineData& e)
{
    constexpr int depleting = 1;
    constexpr int increasing = 2;
    return byte(0x0F, increasing << 1 | depleting) + batteryVoltage(288 + e.drive.speed / 10) +
           batteryCurrent(-e.drive.speed * 0.4);
}

constexpr auto exhaustPids = std::to_array<VehiclePid>({
    {0x81, completeEngines, fixed, [](const EngineData& e) { return deviceTimers(e, 1); }},
    {0x82, completeEngines, fixed, [](const EngineData& e) { return deviceTimers(e, 6); }},
    {0x83, completeEngines, measured,
     [](const EngineData& e) {
         const double nitrogenOxides = 180 + 2 * e.drive.load;
         return byte(0x0F) + word(nitrogenOxides, 41, nitrogenOxides - 9, 37);
     }},
    {0x84, completeEngines, measured, [](const EngineData& e) { return celsius(5 + 0.8 * e.drive.coolant); }},
    {0x85, completeEngines, measured,
     [](const EngineData& e) {
         return byte(0x0F) + reagentRate(0.02 * e.drive.airFlow, 0.021 * e.drive.airFlow + 0.1) + percent(71) +
                fourBytes(7'200);
     }},
    {0x86, completeEngines, measured,
     [](const EngineData& e) {
         return byte(0x03) + particulateMass(2.5 + e.drive.load / 40, 1.5 + e.drive.load / 40);
     }},
    {0x87, completeEngines, measured,
     [](const EngineData& e) { return byte(0x03) + finePressure(e.drive.manifold, e.drive.manifold - 2); }},
    {0x88, completeEngines, fixed,
     [](const EngineData&) {
         constexpr int reagentLow = 1;
         constexpr int wrongReagent = 2;
         constexpr int consumptionDeviates = 4;
         return byte(reagentLow, consumptionDeviates << 4 | reagentLow, wrongReagent << 4) +
                word(12, 6'543, 350, 47, 5);
     }},
    {0x89, completeEngines, fixed, [](const EngineData& e) { return deviceTimers(e, 11); }},
    {0x8A, completeEngines, fixed, [](const EngineData& e) { return deviceTimers(e, 16); }},
    {0x8B, completeEngines, measured,
     [](const EngineData& e) {
         constexpr int activeAndDesulphurising = 0x0A;
         return byte(0x7F, activeAndDesulphurising) + percent(62 + e.drive.seconds / 1000) + word(412, 530);
     }},
    {0x8C, completeEngines, measured, [](const EngineData& e) { return oxygenSensors(e, 0); }},
    {0x8D, completeEngines, measured, [](const EngineData& e) { return percent(e.drive.throttle + 7); }},
    {0x8E, completeEngines, measured,
     [](const EngineData& e) { return torque(8 + e.drive.engineSpeed / 500); }},
    {0x8F, completeEngines, measured,
     [](const EngineData& e) {
         constexpr int measures = 1;
         constexpr int regenerates = 2;
         return byte(0x0F, measures) + signedCenti(12.5 + e.drive.load / 10) + byte(regenerates) +
                signedCenti(-1.25);
     }},
    {0x90, completeEngines, fixed, vehicleIndicator},
    {0x91, completeEngines, fixed,
     [](const EngineData& e) { return byte(lampOn(e) ? 3 : 0) + word(lampHours(e), 195); }},
    {0x92, completeEngines, measured, [](const EngineData&) { return byte(0xFF, 0x2D); }},
    {0x93, completeEngines, fixed, [](const EngineData&) { return byte(0x01) + word(57); }},
    {0x94, completeEngines, fixed,
     [](const EngineData&) {
         constexpr int levels = 1 << 1 | 2 << 3 | 3 << 5; // enabled, active, not supported
         return byte(0x3F, levels) + word(11, 23, 35, missingCounter, 47);
     }},
    {0x98, completeEngines, measured,
     [](const EngineData& e) {
         const double gas = exhaustTemperature(e);
         return byte(0x0F) + fineCelsius(gas - 200, gas - 221, gas - 243, gas - 266);
     }},
    {0x99, completeEngines, measured,
     [](const EngineData& e) {
         const double gas = exhaustTemperature(e);
         return byte(0x0F) + fineCelsius(gas - 207, gas - 229, gas - 252, gas - 276);
     }},
    {0x9A, completeEngines, measured, hybridDrive},
    {0x9B, completeEngines, measured,
     [](const EngineData& e) {
         constexpr int kind = 1;
         return byte(kind << 4 | 0x0F) + quarterPercent(32.5) + celsius(e.drive.intakeAir + 5) + percent(68);
     }},
    {0x9C, completeEngines, measured, [](const EngineData& e) { return oxygenSensors(e, 2); }},
    {0x9D, completeEngines, measured,
     [](const EngineData& e) {
         const double fuel = e.drive.airFlow / 14.7; // the ideal mixture
         return massRate(fuel, fuel * 1.1);
     }},
    {0x9E, completeEngines, measured,
     [](const EngineData& e) { return kilogramsPerHour(e.drive.airFlow * 3.6 * 1.07); }}, // air and fuel
    {0x9F, completeEngines, measured,
     [](const EngineData&) { return byte(0xFF) + percent(85, 15, 81, 19, 77, 23, 73, 27); }},
    {0xA1, completeEngines, measured,
     [](const EngineData& e) {
         const double nitrogenOxides = 170 + 2 * e.drive.load;
         return byte(0x0F) + word(nitrogenOxides, 39, nitrogenOxides - 7, 33);
     }},
    {0xA2, completeEngines, measured, [](const EngineData& e) { return perStroke(6 + e.drive.load / 2); }},
    {0xA3, completeEngines, measured, vapourPressures},
    {0xA4, completeEngines, measured,
     [](const EngineData& e) {
         const int gear = suitableGear(e);
         return byte(0x03, gear << 4) + thousandths(4.2 / gear);
     }},
    {0xA5, completeEngines, measured,
     [](const EngineData& e) {
         return byte(0x03) + halfPercent(20 + e.drive.load / 4) + reagentLitres(e.drive.seconds / 4000);
     }},
});
static_assert(std::ranges::is_sorted(exhaustPids, {}, &VehiclePid::number));
static_assert(std::ranges::none_of(exhaustPids, isSupportItem, &VehiclePid::number));

} // namespace

std::span<const VehiclePid> completeExhaustPids() { return exhaustPids; }

} // namespace zint
