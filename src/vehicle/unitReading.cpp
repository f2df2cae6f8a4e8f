#include "vehicle/unitReading.h"

#include "vehicle/serviceAnswers.h"
#include "vehicle/vehicleRequest.h"

#include <algorithm>
#include <array>

namespace zint {
namespace {

constexpr std::uint8_t answered = 0x40; ///< what an answer adds to the service

struct ServiceReader {
    std::uint8_t service;
    void (*read)(const ServiceAnswer& answer, UnitReading& reading);
};

void readClearing(const ServiceAnswer& /*answer*/, UnitReading& reading) { reading.cleared = true; }

constexpr std::array<ServiceReader, 9> readers = {{
    {0x01, readValues},
    {0x02, readFreezeFrame},
    {0x03, readCodes},
    {0x04, readClearing},
    {0x05, readSensorTests},
    {0x06, readMonitorResults},
    {0x07, readCodes},
    {0x09, readVehicleInfo},
    {0x0A, readCodes},
}};

/// The kind of bus: the lines' form shows it, else the protocol tells it.
BusKind busShown(const VehicleReply& reply, BusProtocol protocol)
{
    if (!reply.isCan && protocol == BusProtocol::unknown)
        return BusKind::unknown;
    return reply.isCan.value_or(isCan(protocol)) ? BusKind::can : BusKind::older;
}

/// Reads the messages of an exchange, one after the other.
class MessageReader {
public:
    MessageReader(const Bytes& request, BusKind bus, const UnitReadings& known)
        : request_(request), bus_(bus), known_(known)
    {
    }

    void read(const UnitMessage& message)
    {
        UnitReading& reading = readingOf(units_, message.unit);
        if (message.isIncomplete || message.bytes.empty())
            reading.isIncomplete = true;
        else if (message.bytes.front() == refusalSign)
            readRefusal(message, reading);
        else
            readAnswer(message, reading);
    }

    UnitReadings takeUnits() { return std::move(units_); }

private:
    /// A unit that has said more than that its answer follows has no such message here.
    static void readRefusal(const UnitMessage& message, UnitReading& reading)
    {
        if (message.bytes.size() < 3)
            reading.isIncomplete = true;
        else if (message.bytes[2] == answerFollows)
            reading.isIncomplete = reading.isBusy = true;
        else
            reading.refusal = message.bytes[2];
    }

    void readAnswer(const UnitMessage& message, UnitReading& reading)
    {
        reading.refusal.reset(); // a unit that was busy at first
        const BytesView bytes = message.bytes;
        const auto service = static_cast<std::uint8_t>(bytes.front() - answered);
        const bool wasAsked = !request_.empty() && request_.front() == service;
        const ServiceAnswer answer{.service = service,
                                   .data = bytes.subspan(1),
                                   .asked = wasAsked ? BytesView(request_).subspan(1) : BytesView(),
                                   .bus = busOf(message, bus_),
                                   .known = findReading(known_, message.unit)};
        const auto* const reader = std::ranges::find(readers, service, &ServiceReader::service);
        if (reader != readers.end())
            reader->read(answer, reading);
    }

    const Bytes& request_;
    BusKind bus_;
    const UnitReadings& known_;
    UnitReadings units_;
};

template <typename Value>
void take(Value& into, const Value& more, bool isTold)
{
    if (isTold)
        into = more;
}

template <typename Value>
void take(std::optional<Value>& into, const std::optional<Value>& more)
{
    take(into, more, more.has_value());
}

template <typename Value>
void take(std::vector<Value>& into, const std::vector<Value>& more)
{
    take(into, more, !more.empty());
}

template <typename Key, typename Value>
void take(std::map<Key, Value>& into, const std::map<Key, Value>& more)
{
    for (const auto& [key, value] : more)
        into.insert_or_assign(key, value);
}

void mergeSupported(std::vector<std::uint8_t>& into, const std::vector<std::uint8_t>& more)
{
    into.insert(into.end(), more.begin(), more.end());
    std::ranges::sort(into);
    into.erase(std::unique(into.begin(), into.end()), into.end());
}

/// One frame is kept: that of the lowest number, which each control unit has.
void mergeFrame(std::optional<FreezeFrame>& into, const FreezeFrame& more)
{
    if (!into || more.frame < into->frame) {
        into = more;
        return;
    }
    if (more.frame != into->frame)
        return;
    if (more.isCodeTold) {
        into->code = more.code;
        into->isCodeTold = true;
    }
    take(into->values, more.values);
}

/// Results of a test that was asked again take the place of the former ones.
void mergeTests(std::vector<TestResult>& into, const std::vector<TestResult>& more)
{
    std::erase_if(into, [&more](const TestResult& former) {
        return std::ranges::any_of(more, [&former](const TestResult& result) {
            return result.mid == former.mid && result.tid == former.tid;
        });
    });
    into.insert(into.end(), more.begin(), more.end());
}

} // namespace

std::optional<MonitorState> Readiness::stateOf(const std::string& monitor) const
{
    for (const auto& [name, state] : monitors) {
        if (name == monitor)
            return state;
    }
    return std::nullopt;
}

bool UnitReading::supports(std::uint8_t service, int item) const
{
    const auto items = supported.find(service);
    return items != supported.end() && std::ranges::find(items->second, item) != items->second.end();
}

const UnitReading* findReading(const UnitReadings& units, const std::string& name)
{
    const auto found = std::ranges::find(units, name, &UnitReadings::value_type::first);
    return found != units.end() ? &found->second : nullptr;
}

UnitReading& readingOf(UnitReadings& units, const std::string& name)
{
    const auto found = std::ranges::find(units, name, &UnitReadings::value_type::first);
    return found != units.end() ? found->second : units.emplace_back(name, UnitReading()).second;
}

BusKind busOf(const UnitMessage& message, BusKind bus)
{
    return bus == BusKind::unknown && message.bytes.size() > longestOlderMessage ? BusKind::can : bus;
}

ExchangeReading readExchange(std::string_view request, std::string_view reply, BusProtocol protocol,
                             const UnitReadings& known)
{
    ExchangeReading exchange{.command = std::string(request)};
    VehicleReply told = readVehicleReply(request, reply, protocol);
    exchange.error = told.error;
    const VehicleRequest asked(request);
    if (!asked.isForVehicle())
        return exchange;
    const BusKind bus = busShown(told, protocol);
    MessageReader reader(asked.bytes(), bus, known);
    for (const UnitMessage& message : joinNumbered(std::move(told.messages), bus))
        reader.read(message);
    exchange.units = reader.takeUnits();
    return exchange;
}

void merge(UnitReading& into, const UnitReading& more)
{
    take(into.codes, more.codes);
    take(into.mil, more.mil);
    take(into.dtcCount, more.dtcCount);
    take(into.readiness, more.readiness);
    take(into.cycleReadiness, more.cycleReadiness);
    for (const auto& [service, ids] : more.supported)
        mergeSupported(into.supported[service], ids);
    take(into.values, more.values);
    take(into.rawValues, more.rawValues);
    if (more.freezeFrame)
        mergeFrame(into.freezeFrame, *more.freezeFrame);
    take(into.vin, more.vin);
    take(into.calibrationIds, more.calibrationIds);
    take(into.cvns, more.cvns);
    take(into.ecuName, more.ecuName);
    take(into.otherInfo, more.otherInfo);
    take(into.counters, more.counters);
    mergeTests(into.tests, more.tests);
    into.cleared = into.cleared || more.cleared;
}

} // namespace zint
