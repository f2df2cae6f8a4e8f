#include "sim/makerValues.h"

#include "sim/completePids.h"

#include <algorithm>
#include <array>

namespace zint {
namespace {

using namespace scaled;

constexpr UnitKinds gearboxOnly = only(UnitKind::transmission);
constexpr UnitKinds bodyOnly = only(UnitKind::body);

constexpr PidScale tenths{.byteCount = 2, .times = 10};
constexpr PidScale signedTenths{.byteCount = 2, .times = 10, .isSigned = true};
constexpr PidScale signedHalves{.times = 2, .isSigned = true};
constexpr PidScale inTwos{.over = 2};

double slip(const EngineData& e) { return e.drive.speed > 0 ? 40 * e.drive.acceleration : 0; }

PidData engineSwitches(const EngineData& e)
{
    constexpr int brakePedal = 0x01;
    constexpr int airConditioner = 0x04;
    constexpr int fan = 0x08;
    return byte(airConditioner | (e.drive.acceleration < -0.2 ? brakePedal : 0) |
                (e.drive.coolant > 88 ? fan : 0));
}

PidData lever(const EngineData& e)
{
    constexpr int park = 0;
    constexpr int drive = 3;
    return e.drive.speed > 0 ? byte(drive << 4 | suitableGear(e)) : byte(park << 4);
}

// Behind each stands its formula: A is the first byte.
constexpr auto makerValues = std::to_array<MakerValue>({
    // oil pressure, kPa: (A*256+B)/10
    {0x1131, completeEngines, [](const EngineData& e) { return tenths(120 + e.drive.engineSpeed / 12); }},
    // oil temperature, °C: A-40
    {0x1154, completeEngines, [](const EngineData& e) { return celsius(e.drive.coolant + 6); }},
    // oil life, %: A*100/255
    {0x115C, completeEngines, [](const EngineData&) { return percent(64); }},
    // ignition held back for knock, °: signed(A)/2
    {0x1164, completeEngines, [](const EngineData& e) { return signedHalves(-e.drive.load / 16); }},
    // time of running, s: ((A*256+B)*256+C)*256+D
    {0x2010, completeEngines, [](const EngineData& e) { return fourBytes(5'432'100 + e.drive.seconds); }},
    // switches: brake pedal {A:0}, air conditioner {A:2}, fan {A:3}
    {0x2030, completeEngines, engineSwitches},
    // corrections of the injectors 1 to 6, mm³: (signed(A)*256+B)/100, then C and D, and so on
    {0x2A10, completeEngines,
     [](const EngineData& e) {
         const double more = e.drive.load / 100;
         return signedCenti(-1.25, 0.4, 1.1 + more, -0.35, -2.4 - more, 0.05);
     }},
    // oil temperature, °C: A-40
    {0x1940, gearboxOnly, [](const EngineData& e) { return celsius(e.drive.coolant - 8); }},
    // speed of the turbine, 1/min: (A*256+B)/4
    {0x1941, gearboxOnly, [](const EngineData& e) { return turns(e.drive.engineSpeed - slip(e)); }},
    // slip of the converter, 1/min: signed(A)*256+B
    {0x1942, gearboxOnly, [](const EngineData& e) { return signedWord(slip(e)); }},
    // lever (0 park, 1 reverse, 2 neutral, 3 drive) in the upper half of A, gear in the lower one
    {0x194F, gearboxOnly, lever},
    // voltage, V: A/10
    {0x4001, bodyOnly, [](const EngineData&) { return PidScale{.times = 10}(13.1); }},
    // doors: front left {A:0}, front right {A:1}; low beam {B:4}
    {0x4002, bodyOnly, [](const EngineData&) { return byte(0x02, 0x10); }},
    // temperature inside, °C: (signed(A)*256+B)/10
    {0x4003, bodyOnly,
     [](const EngineData& e) { return signedTenths(21.5 - 40 / (1 + e.drive.seconds / 60)); }},
    // pressures of the tyres, kPa: A*2, B*2, C*2, D*2
    {0x4010, bodyOnly, [](const EngineData& e) { return inTwos(232 + e.drive.speed / 10, 230, 226, 228); }},
});

} // namespace

const MakerValue* findMakerValue(UnitKind unit, std::uint16_t identifier)
{
    const auto* const found = std::ranges::find_if(makerValues, [=](const MakerValue& value) {
        return value.identifier == identifier && contains(value.units, unit);
    });
    return found != makerValues.end() ? found : nullptr;
}

} // namespace zint
