#include "sim/completePids.h"
#include "sim/supportBits.h"

#include <algorithm>
#include <array>

namespace zint {
namespace {

using namespace scaled;

constexpr PidScale wideCelsius{.over = 4, .offset = 40};
constexpr PidScale eightKilopascals{.over = 8};
constexpr PidScale tenTurns{.byteCount = 2, .over = 10};

// Of a control loop; B stands two bits above A.
constexpr std::uint8_t openLoop = 1;
constexpr std::uint8_t closedLoop = 2;

double boost(const EngineData& e) { return 100 + 0.8 * e.drive.load; } // kPa, absolute

PidData gearbox(const EngineData& e)
{
    const bool moves = e.drive.speed > 0;
    constexpr int inGear = 0x06; // automatic, and manual
    return byte(0x1F, suitableGear(e) << 4 | (moves ? inGear : 0));
}

/// A second byte of a sensor with a wide range would mean the same as that of one without: no engine has
/// both.
PidData exhaustReturnTemperatures(const EngineData& e)
{
    const double t = 80 + e.drive.load;
    return e.hasFourBanks ? byte(0xF0) + wideCelsius(t + 240, t + 200, t + 220, t + 160)
                          : byte(0x0F) + celsius(t + 12, t + 6, t + 9, t);
}

PidData compressorInlet(const EngineData& e)
{
    const double pressure = 98 - e.drive.load / 20;
    return e.hasFourBanks ? byte(0x0C) + eightKilopascals(pressure, pressure - 16)
                          : byte(0x03) + byte(pressure, pressure - 3);
}

/// In front of a turbine and behind it.
PidData turbocharger(const EngineData& e, double difference)
{
    const double exhaust = exhaustTemperature(e) + difference;
    return byte(0x0F) + celsius(e.drive.intakeAir + 4 + difference, e.drive.intakeAir + 60 + difference) +
           fineCelsius(exhaust - 10, exhaust - 75);
}

constexpr auto enginePids = std::to_array<VehiclePid>({
    {0x65, completeEngines, measured, gearbox},
    {0x66, completeEngines, measured,
     [](const EngineData& e) {
         return byte(0x03) + airFlowSensor(e.drive.airFlow * 0.6, e.drive.airFlow * 0.4);
     }},
    {0x68, completeEngines, measured,
     [](const EngineData& e) {
         const double air = e.drive.intakeAir;
         return byte(0x3F) + celsius(air, air + 15, air + 22, air + 3, air + 18, air + 25);
     }},
    {0x69, completeEngines, measured,
     [](const EngineData& e) {
         const double egr = 12 + e.drive.load / 10;
         return byte(0x3F) + percent(egr, egr * 0.8) + trim(-20) + percent(egr * 0.6, egr * 0.7) + trim(16.7);
     }},
    {0x6A, completeEngines, measured,
     [](const EngineData& e) {
         const double flap = e.drive.throttle;
         return byte(0x0F) + percent(flap - 3, flap - 11, flap - 5, flap - 13);
     }},
    {0x6B, completeEngines, measured, exhaustReturnTemperatures},
    {0x6C, completeEngines, measured,
     [](const EngineData& e) {
         const double flap = e.drive.throttle;
         return byte(0x0F) + percent(flap, flap - 11, flap + 4, flap - 7);
     }},
    {0x6D, completeEngines, measured,
     [](const EngineData& e) {
         const double rail = 30000 + 1300 * e.drive.load;
         return byte(0x3F) + tenKilopascals(rail, rail - 150) + celsius(48) +
                tenKilopascals(rail - 300, rail - 470) + celsius(53);
     }},
    {0x6E, completeEngines, measured,
     [](const EngineData& e) {
         const double pressure = 9000 + 40 * e.drive.load;
         return byte(0x0F) + tenKilopascals(pressure, pressure - 60, pressure - 130, pressure - 210);
     }},
    {0x6F, completeEngines, measured, compressorInlet},
    {0x70, completeEngines, measured,
     [](const EngineData& e) {
         return byte(0x3F) + finePressure(boost(e), boost(e) - 2, boost(e) - 1, boost(e) - 4) +
                byte(openLoop << 2 | closedLoop);
     }},
    {0x71, completeEngines, measured,
     [](const EngineData& e) {
         const double vane = 70 - e.drive.load / 2;
         return byte(0x3F) + percent(vane, vane - 2, vane - 4, vane - 7) + byte(closedLoop << 2 | openLoop);
     }},
    {0x72, completeEngines, measured,
     [](const EngineData& e) {
         const double open = e.drive.load / 4;
         return byte(0x0F) + percent(open, open + 2, open + 4, open + 6);
     }},
    {0x73, completeEngines, measured,
     [](const EngineData& e) {
         return byte(0x03) + centi(101 + e.drive.load / 8, 102.5 + e.drive.load / 8);
     }},
    {0x74, completeEngines, measured,
     [](const EngineData& e) {
         return byte(0x03) + tenTurns(30000 + 1000 * e.drive.load, 28000 + 1000 * e.drive.load);
     }},
    {0x75, completeEngines, measured, [](const EngineData& e) { return turbocharger(e, 0); }},
    {0x76, completeEngines, measured, [](const EngineData& e) { return turbocharger(e, -7); }},
    {0x77, completeEngines, measured,
     [](const EngineData& e) {
         const double air = e.drive.intakeAir;
         return byte(0x0F) + celsius(air + 12, air + 15, air + 18, air + 21);
     }},
    {0x78, completeEngines, measured,
     [](const EngineData& e) {
         const double gas = exhaustTemperature(e);
         return byte(0x0F) + fineCelsius(gas, gas - 50, gas - 110, gas - 170);
     }},
    {0x79, completeEngines, measured,
     [](const EngineData& e) {
         const double gas = exhaustTemperature(e);
         return byte(0x0F) + fineCelsius(gas - 8, gas - 61, gas - 119, gas - 183);
     }},
    {0x7A, completeEngines, measured,
     [](const EngineData& e) {
         const double loss = 0.08 * e.drive.load; // kPa
         return byte(0x07) + signedCenti(loss) + centi(101.4 + loss, 101.4);
     }},
    {0x7B, completeEngines, measured,
     [](const EngineData& e) {
         return byte(0x07) + signedCenti(-0.4) + centi(101 + e.drive.load / 100, 101.4 + e.drive.load / 100);
     }},
    {0x7C, completeEngines, measured,
     [](const EngineData& e) {
         const double gas = exhaustTemperature(e);
         return byte(0x0F) + fineCelsius(gas - 190, gas - 215, gas - 202, gas - 233);
     }},
    {0x7D, completeEngines, measured, [](const EngineData&) { return byte(0x01); }}, // within the area
    {0x7E, completeEngines, measured, [](const EngineData&) { return byte(0x09); }}, // and in a deficiency's
    {0x7F, completeEngines, fixed,
     [](const EngineData& e) {
         constexpr double before = 5'432'100; // seconds, a seventh of them idle
         const double total = before + std::floor(e.drive.seconds);
         return byte(0x07) + fourBytes(total, std::floor(total / 7), 4321);
     }},
});
static_assert(std::ranges::is_sorted(enginePids, {}, &VehiclePid::number));
static_assert(std::ranges::none_of(enginePids, isSupportItem, &VehiclePid::number));

} // namespace

std::span<const VehiclePid> completeEnginePids() { return enginePids; }

} // namespace zint
