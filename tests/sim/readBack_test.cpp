#include "shared/module1.h"
#include "sim/simulatedAdapter.h"
#include "vehicle/vehicleReply.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>

namespace zint {
namespace {

using namespace std::chrono_literals;
/// The messages of each, which on the older buses carry numbers in place of an order.
using ByUnit = std::map<std::string, std::multiset<Message>>;

const char* const askedOfVehicles[] = {
    "0100", "0120", "0101",   "010C",   "03",   "07",   "0A",   "020000", "020200",
    "0600", "0601", "0621",   "050101", "0900", "0902", "0904", "0906",   "0908",
    "090A", "0903", "020C00", "04",     "017A", "090B", "0A",   "03",     "010C0D0411050F"};

std::string unitName(const UnitAddress& unit, bool isNumbered)
{
    return isNumbered ? hexText(8 + unit.header, 3) : hexText(unit.address, 2);
}

/// What the units say in the end.
ByUnit said(Vehicle& vehicle, const std::string& request)
{
    Message bytes;
    for (std::size_t i = 0; i < request.size(); i += 2)
        bytes.push_back(static_cast<std::uint8_t>(hexToNumber(request.substr(i, 2))));
    ByUnit units;
    const bool isNumbered = vehicle.traits().headerForm == HeaderForm::id11;
    for (const UnitAnswer& answer : vehicle.answers(vehicle.traits().functionalHeader, bytes, 0s)) {
        units[unitName(answer.from, isNumbered)] = {answer.messages.begin(), answer.messages.end()};
    }
    return units;
}

ByUnit readBack(SimulatedAdapter& adapter, const std::string& request, BusProtocol protocol)
{
    adapter.receive(request + "\r", 0s);
    ByUnit units;
    for (const UnitMessage& message : readVehicleReply(request, adapter.take(0s), protocol).messages) {
        EXPECT_FALSE(message.isIncomplete);
        units[message.unit].insert(message.bytes);
    }
    return units;
}

// Two vehicles that are alike: one is asked directly, the other through its adapter.
TEST(ReadBackTest, EachReplyTellsWhatTheUnitsSaid)
{
    const VehicleOptions vehicles[] = {{.units = 2},
                                       {.diesel = true},
                                       {.units = 2, .pendingResponse = 100ms},
                                       {.units = 2, .dropOutEvery = 3}};
    const AdapterOptions adapters[] = {{},
                                       {.lineFeeds = true, .nulBytes = true},
                                       {.padding = 0xAA, .lengthDigit = true, .ownLengthByte = true},
                                       {.refusedCommands = {"S0"}, .padding = 0x55, .interleavesUnits = true},
                                       {.swapLinesEvery = 2, .doubleLineEvery = 3}};
    for (unsigned protocol = 1; protocol <= 9; ++protocol) {
        for (VehicleOptions options : vehicles) {
            for (const AdapterOptions& habits : adapters) {
                options.protocol = static_cast<VehicleProtocol>(protocol);
                Vehicle one(options);
                Vehicle other(options);
                SimulatedAdapter adapter(other, habits);
                adapter.receive("ATE0\rATS0\rATH1\r", 0s);
                adapter.take(0s);
                for (const char* request : askedOfVehicles) {
                    EXPECT_EQ(readBack(adapter, request, static_cast<BusProtocol>('0' + protocol)),
                              said(one, request))
                        << "protocol " << protocol << ", " << request;
                }
            }
        }
    }
}

} // namespace
} // namespace zint
