#include "sim/monitorTests.h"

#include "sim/supportBits.h"

#include <algorithm>
#include <array>
#include <span>

namespace zint {
namespace {

constexpr std::uint8_t sensorMode = 0x05;
constexpr std::uint8_t monitorMode = 0x06;

// The sensors of mode 05, a bit each.
constexpr std::uint8_t beforeCatalyst = 0x01;
constexpr std::uint8_t behindCatalyst = 0x02;
constexpr std::uint8_t bothSensors = beforeCatalyst | behindCatalyst;

struct SensorTest {
    std::uint8_t test;
    std::uint8_t sensors;
    std::uint8_t value;
    std::uint8_t least = 0; // both limits 00: a constant, which has none
    std::uint8_t most = 0;
};

constexpr std::array<SensorTest, 10> sensorTestTable{{
    {0x01, bothSensors, 0x5A},                // 0.45 V
    {0x02, bothSensors, 0x5A},                //
    {0x03, beforeCatalyst, 0x3C},             // 0.3 V
    {0x04, beforeCatalyst, 0x78},             // 0.6 V
    {0x05, beforeCatalyst, 0x12, 0x00, 0x32}, // 72 ms
    {0x06, beforeCatalyst, 0x15, 0x00, 0x32}, // 84 ms
    {0x07, bothSensors, 0x14, 0x00, 0x3C},    // 0.1 V
    {0x08, bothSensors, 0xA0, 0x78, 0xFF},    // 0.8 V
    {0x09, beforeCatalyst, 0x19, 0x00, 0x64}, // 1 s
    {0x0A, beforeCatalyst, 0x32, 0x00, 0xC8}, // 2 s
}};

/// A record of mode 06 on CAN.
struct MonitorResult {
    UnitKinds units;
    std::uint8_t monitor;
    std::uint8_t test;
    std::uint8_t scaling;
    std::uint16_t value;
    std::uint16_t least;
    std::uint16_t most;
};

constexpr std::uint16_t noLimit = 0xFFFF;
constexpr UnitKinds dieselEngine = only(UnitKind::diesel);

// The first monitor takes more frames than their number has digits for. The catalyst is about to fail.
constexpr std::array<MonitorResult, 31> monitorResultTable{{
    {sparkEngines, 0x01, 0x01, 0x0A, 3689, 3689, 3689},
    {sparkEngines, 0x01, 0x02, 0x0A, 3689, 3689, 3689},
    {sparkEngines, 0x01, 0x03, 0x0A, 2459, 2459, 2459},
    {sparkEngines, 0x01, 0x04, 0x0A, 4918, 4918, 4918},
    {sparkEngines, 0x01, 0x05, 0x10, 72, 0, 200},
    {sparkEngines, 0x01, 0x06, 0x10, 84, 0, 200},
    {sparkEngines, 0x01, 0x07, 0x0A, 820, 0, 2459},
    {sparkEngines, 0x01, 0x08, 0x0A, 6557, 4918, noLimit},
    {sparkEngines, 0x01, 0x09, 0x10, 1000, 0, 4000},
    {sparkEngines, 0x01, 0x0A, 0x10, 2000, 0, 8000},
    {sparkEngines, 0x01, 0x80, 0x05, 29491, 16384, 49152},
    {sparkEngines, 0x01, 0x81, 0x84, 0xFFF4, 0xFFCE, 50}, // -0.012 between -0.05 and 0.05
    {sparkEngines, 0x01, 0x82, 0x24, 12, 4, noLimit},
    {sparkEngines, 0x01, 0x83, 0x0B, 455, 300, 600},
    {sparkEngines, 0x02, 0x07, 0x0A, 820, 0, 2459},
    {sparkEngines, 0x02, 0x08, 0x0A, 6557, 4918, noLimit},
    {sparkEngines, 0x21, 0x80, 0x05, 27200, 0, 24576}, // too much of the oxygen comes through
    {sparkEngines, 0x3C, 0x81, 0xFE, 0xFE5C, 0xF830, 0},
    {sparkEngines, 0x41, 0x82, 0x0E, 640, 300, 2000},
    {sparkEngines, 0xA1, 0x0B, 0x24, 0, 0, 60},
    {sparkEngines, 0xA2, 0x0B, 0x24, 1, 0, 60},
    {sparkEngines, 0xA2, 0x0C, 0x24, 2, 0, 60},
    {dieselEngine, 0x05, 0x80, 0x10, 310, 0, 900},
    {dieselEngine, 0x21, 0x80, 0x96, 412, 150, noLimit / 2}, // 41.2 °C gained
    {dieselEngine, 0x31, 0x81, 0x2F, 9400, 8000, 12000},
    {dieselEngine, 0x85, 0x80, 0xFD, 0xFF38, 0xF830, 2000},
    {dieselEngine, 0x98, 0x81, 0x2F, 0, 0, 0}, // has not run
    {dieselEngine, 0xB2, 0x80, 0xFD, 850, 100, 12000},
    {dieselEngine, 0xA1, 0x0B, 0x24, 0, 0, 60},
    {dieselEngine, 0xA2, 0x0B, 0x24, 0, 0, 60},
    {dieselEngine, 0xA2, 0x0C, 0x24, 0, 0, 60},
}};

/// A message of mode 06 before CAN. The highest bit of the component tells that the limit is the least value.
struct LimitResult {
    UnitKinds units;
    std::uint8_t test;
    std::uint8_t component;
    std::uint16_t value;
    std::uint16_t limit;
};

constexpr std::array<LimitResult, 6> limitResultTable{{
    {engines, 0x01, 0x01, 0x0140, 0x0120}, // fails
    {engines, 0x02, 0x81, 0x0690, 0x0300},
    {engines, 0x02, 0x01, 0x0690, 0x0900},
    {engines, 0x03, 0x82, 0x0012, 0x0008},
    {sparkEngines, 0x05, 0x11, 0x0003, 0x0028},
    {only(UnitKind::transmission), 0x01, 0x84, 0x0064, 0x0032},
}};

template <typename Row, std::size_t count>
std::uint32_t supported(const std::array<Row, count>& table, UnitKind unit, std::uint8_t bitmap,
                        std::uint8_t Row::*item)
{
    std::uint32_t bits = 0;
    for (const Row& row : table)
        bits |= contains(row.units, unit) ? supportBit(bitmap, row.*item) : 0;
    return bits;
}

/// A message with a bitmap behind it; none without a bit.
Messages bitmapMessage(Message begin, std::uint32_t bits)
{
    if (bits == 0)
        return {};
    appendNumber(begin, bits, 4);
    return {begin};
}

Messages sensorBitmap(std::uint8_t sensor)
{
    std::uint32_t bits = 0;
    for (const SensorTest& row : sensorTestTable)
        bits |= (row.sensors & sensor) != 0 ? supportBit(0, row.test) : 0;
    return bitmapMessage({positiveAnswer(sensorMode), 0, sensor}, bits);
}

Messages records(UnitKind unit, std::uint8_t monitor, bool cleared)
{
    Message message{positiveAnswer(monitorMode)};
    for (const MonitorResult& row : monitorResultTable) {
        if (row.monitor != monitor || !contains(row.units, unit))
            continue;
        message.insert(message.end(), {row.monitor, row.test, row.scaling});
        for (const std::uint16_t number : {row.value, row.least, row.most})
            appendNumber(message, cleared ? 0 : number, 2);
    }
    return message.size() > 1 ? Messages{message} : Messages{};
}

Messages limits(UnitKind unit, std::uint8_t test, bool cleared)
{
    Messages messages;
    for (const LimitResult& row : limitResultTable) {
        if (row.test != test || !contains(row.units, unit))
            continue;
        Message message{positiveAnswer(monitorMode), row.test, row.component};
        for (const std::uint16_t number : {row.value, row.limit})
            appendNumber(message, cleared ? 0 : number, 2);
        messages.push_back(std::move(message));
    }
    return messages;
}

} // namespace

Messages sensorTests(UnitKind unit, MessageView request)
{
    if (!contains(sparkEngines, unit) || request.size() != 2)
        return {};
    const std::uint8_t sensor = request[1];
    if (sensor != beforeCatalyst && sensor != behindCatalyst)
        return {};
    if (request[0] == 0)
        return sensorBitmap(sensor);
    const auto* const row = std::ranges::find(sensorTestTable, request[0], &SensorTest::test);
    if (row == sensorTestTable.end() || (row->sensors & sensor) == 0)
        return {};
    Message message{positiveAnswer(sensorMode), row->test, sensor, row->value};
    if (row->most != 0)
        message.insert(message.end(), {row->least, row->most});
    return {message};
}

Messages monitorResults(UnitKind unit, Framing framing, MessageView request, bool cleared)
{
    constexpr std::uint8_t filler = 0xFF; // stands where a result has its component
    constexpr std::uint8_t mode = positiveAnswer(monitorMode);
    if (request.size() != 1)
        return {};
    const std::uint8_t item = request[0];
    const bool isCan = framing == Framing::isoTp;
    if (!isSupportItem(item))
        return isCan ? records(unit, item, cleared) : limits(unit, item, cleared);
    if (isCan)
        return bitmapMessage({mode, item},
                             supported(monitorResultTable, unit, item, &MonitorResult::monitor));
    return bitmapMessage({mode, item, filler}, supported(limitResultTable, unit, item, &LimitResult::test));
}

} // namespace zint
