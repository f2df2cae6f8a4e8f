#include "vehicle/serviceAnswers.h"
#include "vehicle/testNames.h"
#include "vehicle/unitsAndScaling.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace zint {
namespace {

constexpr std::uint8_t firstSignedScaling = 0x80;

/// Without the last digits, which are rounding errors of the factor.
double rounded(double value)
{
    constexpr int digits = 10;
    std::array<char, 32> text{};
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, digits);
    std::from_chars(text.data(), end.ptr, value);
    return value;
}

std::string joinedName(std::string monitor, std::string_view test)
{
    if (!monitor.empty() && !test.empty())
        monitor += ": ";
    return monitor.append(test);
}

int wordAt(BytesView data, std::size_t place) { return data[place] * 256 + data[place + 1]; }

int signedWord(int word) { return word < 0x8000 ? word : word - 0x10000; }

/// The scaling of a test; ids that the standard does not define have raw values.
Scaling scalingOrRaw(std::uint8_t id)
{
    return scalingOf(id).value_or(
        Scaling{.factor = 1, .offset = 0, .unit = {}, .isSigned = id >= firstSignedScaling});
}

/// A record of mode 06 on CAN: monitor, test, scaling, value, lowest and highest value.
TestResult recordIn(BytesView record, const UnitReading* known)
{
    const Scaling scaling = scalingOrRaw(record[2]);
    std::array<int, 3> raw{};
    for (std::size_t i = 0; i < raw.size(); ++i) {
        const int word = wordAt(record, 3 + 2 * i);
        raw.at(i) = scaling.isSigned ? signedWord(word) : word;
    }
    const auto inUnit = [&scaling](int value) { return rounded(value * scaling.factor + scaling.offset); };
    const bool hasManyCylinders =
        known != nullptr && (known->supports(0x06, 0xAE) || known->supports(0x06, 0xAF));
    const std::string monitor = monitorName(record[0], hasManyCylinders);
    TestResult result{.mid = record[0],
                      .tid = record[1],
                      .name = joinedName(monitor, testName(record[1])),
                      .value = inUnit(raw[0]),
                      .min = inUnit(raw[1]),
                      .max = inUnit(raw[2]),
                      .unit = std::string(scaling.unit)};
    if (raw != std::array<int, 3>{}) // else it has not run since clearing
        result.passed = raw[1] <= raw[0] && raw[0] <= raw[2];
    return result;
}

void readRecords(const ServiceAnswer& answer, UnitReading& reading)
{
    constexpr std::size_t recordLength = 9;
    BytesView rest = answer.data;
    for (; rest.size() >= recordLength; rest = rest.subspan(recordLength))
        reading.tests.push_back(recordIn(rest, answer.known));
    reading.isIncomplete = reading.isIncomplete || !rest.empty();
}

/// A test of the older form: its number, the component, a value and a limit, all without units.
void readOldTest(const ServiceAnswer& answer, UnitReading& reading)
{
    constexpr std::size_t length = 6;
    constexpr unsigned isMinimum = 0x80;
    if (answer.data.size() < length) {
        reading.isIncomplete = true;
        return;
    }
    const int value = wordAt(answer.data, 2);
    const int limit = wordAt(answer.data, 4);
    TestResult result{.mid = static_cast<int>(answer.data[1] & ~isMinimum),
                      .tid = answer.data[0],
                      .value = static_cast<double>(value)};
    const bool hasMinimum = (answer.data[1] & isMinimum) != 0;
    (hasMinimum ? result.min : result.max) = limit;
    if (value != 0 || limit != 0)
        result.passed = hasMinimum ? value >= limit : value <= limit;
    reading.tests.push_back(std::move(result));
}

struct SensorTestScaling {
    double factor = 1;
    std::string_view unit;
};

SensorTestScaling sensorTestScaling(std::uint8_t tid)
{
    if (tid == 0 || tid > 0x0A)
        return {};
    if (tid <= 0x04 || tid == 0x07 || tid == 0x08)
        return {0.005, "V"};
    return {tid <= 0x06 ? 0.004 : 0.04, "s"};
}

} // namespace

void readSensorTests(const ServiceAnswer& answer, UnitReading& reading)
{
    const BytesView data = answer.data; // test, sensor, value, and where they are: lowest and highest value
    if (!data.empty() && asksForBitmap(data[0])) {
        readBitmaps(answer, 1, reading);
        return;
    }
    if (data.size() != 3 && data.size() != 5) {
        reading.isIncomplete = true;
        return;
    }
    const SensorTestScaling scaling = sensorTestScaling(data[0]);
    const auto inUnit = [&](std::size_t place) { return rounded(data[place] * scaling.factor); };
    const std::string sensor = sensorName(data[1], answer.known != nullptr && answer.known->hasFourBanks());
    TestResult result{.mid = data[1],
                      .tid = data[0],
                      .name = joinedName(sensor, testName(data[0])),
                      .value = inUnit(2),
                      .unit = std::string(scaling.unit)};
    if (data.size() == 5) {
        result.min = inUnit(3);
        result.max = inUnit(4);
        result.passed = data[3] <= data[2] && data[2] <= data[4];
    }
    reading.tests.push_back(std::move(result));
}

void readMonitorResults(const ServiceAnswer& answer, UnitReading& reading)
{
    constexpr std::uint8_t filler = 0xFF;
    constexpr std::size_t oldBitmapLength = 6;
    const BytesView data = answer.data;
    if (data.empty()) {
        reading.isIncomplete = true;
    } else if (asksForBitmap(data[0])) {
        const bool isFilled =
            answer.bus != BusKind::can && data.size() == oldBitmapLength && data[1] == filler;
        readBitmaps(answer, isFilled ? 1 : 0, reading);
    } else if (answer.bus == BusKind::can) {
        readRecords(answer, reading);
    } else {
        readOldTest(answer, reading);
    }
}

} // namespace zint
