#include "doctor/judgement.h"

#include "shared/module1.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace zint {
namespace {

using enum Observation;
using Kind = PortLocation::Kind;

constexpr double leastSupply = 6;      ///< volts; below, no vehicle is there
constexpr double mostSupply = 32;      ///< of lorries
constexpr double runningEngine = 12.8; ///< above, the generator charges
constexpr std::chrono::seconds modemPatience{15};
constexpr std::size_t shownText = 40;

std::string addressOf(const PortLocation& location)
{
    return location.path + ":" + std::to_string(location.tcpPort);
}

std::string namesOf(const std::vector<std::string>& names)
{
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "" : ", ") + name;
    return text;
}

Finding rightsTrouble(const PortFacts& facts)
{
    if (facts.isSandboxed)
        return {sandbox, facts.path};
    if (facts.group.empty())
        return {ownerOnly, facts.path};
    return {facts.isGroupGranted ? loginNeeded : notInGroup, facts.group};
}

Finding occupiedPort(const OpenFailure& failure)
{
    const PortFacts& facts = failure.facts;
    if (!facts.lockFile.empty())
        return {locked, facts.lockHolder.empty() ? facts.lockFile : facts.lockHolder};
    if (!failure.holders.empty())
        return {inUse, namesOf(failure.holders)};
    if (facts.modemManagerRuns && facts.age.value_or(modemPatience) < modemPatience)
        return {modemManager};
    return {inUse, "it can't be seen which, for it belongs to another user"};
}

Finding networkTrouble(const OpenFailure& failure)
{
    const std::string address = addressOf(failure.location);
    if (failure.trouble == OpenTrouble::refused)
        return {networkRefused, address};
    if (failure.trouble == OpenTrouble::timedOut || failure.trouble == OpenTrouble::hostDown)
        return {networkSilent, address};
    return {networkUnknown, failure.text};
}

/// What a reply's error mostly comes from, where nothing else matters.
constexpr std::array byError = {
    std::pair{ReplyError::busInitError, busInitError},
    std::pair{ReplyError::canError, canError},
    std::pair{ReplyError::noData, noData},
    std::pair{ReplyError::stopped, keepsStopping},
    std::pair{ReplyError::bufferFull, bufferFull},
    std::pair{ReplyError::busError, busError},
    std::pair{ReplyError::dataError, damagedData},
    std::pair{ReplyError::rxError, damagedData},
    std::pair{ReplyError::unknownCommand, requestRefused},
    std::pair{ReplyError::lowVoltageReset, lowVoltageReset},
};

} // namespace

std::string voltsText(double volts)
{
    const long tenths = std::lround(volts * 10);
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " V";
}

Finding missingPort(const PortLocation& location, const PortFacts& facts, bool areOthersThere)
{
    for (const PortlessDevice& device : facts.portless) {
        const std::string name = device.usbIds + (device.product.empty() ? "" : " " + device.product);
        return {facts.brlttyRuns || device.driver == "usbfs" ? takenByBraille : driverMissing, name};
    }
    if (location.kind == Kind::nothing)
        return {areOthersThere ? notAssigned : nothingConnected};
    if (facts.isBluetooth && hasNumberedPorts) // pairing has made the port
        return {partnerAway};
    if (facts.isBluetooth)
        return {bluetoothUnbound, facts.path};
    return {portMissing, facts.path.empty() ? location.path : facts.path};
}

Finding openingTrouble(const OpenFailure& failure)
{
    if (failure.location.kind == Kind::network)
        return networkTrouble(failure);
    if (failure.location.kind == Kind::recording)
        return {noRecording, failure.text};
    if (failure.description.find("PHASED OUT") != std::string::npos)
        return {driverRefusesChip};
    if (failure.facts.isIncoming && failure.trouble != OpenTrouble::inUse)
        return {incomingPort, failure.facts.path};
    switch (failure.trouble) {
    case OpenTrouble::missing:
        return missingPort(failure.location, failure.facts, false);
    case OpenTrouble::notAllowed:
        return rightsTrouble(failure.facts);
    case OpenTrouble::inUse:
        return occupiedPort(failure);
    case OpenTrouble::noSerialPort:
        return {noSerialPort, failure.facts.path};
    case OpenTrouble::hostDown:
    case OpenTrouble::timedOut:
        return {partnerAway};
    case OpenTrouble::refused:
        return {partnerRefuses};
    case OpenTrouble::unknown:
        break;
    }
    return {openingFailed, failure.text};
}

Finding missingAnswer(const SpeedSearch& search, const PortLocation& location, const PortFacts& facts)
{
    if (facts.isIncoming)
        return {incomingPort, facts.path};
    const std::string where = search.speeds > 1 ? "at any of the usual speeds" : "";
    if (!search.text.empty())
        return {noAdapter, search.text.substr(0, shownText)};
    if (search.hasNoise)
        return {noise, where};
    if (location.kind == Kind::network)
        return {networkMute};
    return {silence, where.empty() ? "here" : where};
}

std::optional<double> voltsIn(std::string_view answer)
{
    int whole = 0;
    int tenths = 0;
    const char* const end = answer.data() + answer.size();
    const auto [point, error] = std::from_chars(answer.data(), end, whole);
    if (error != std::errc{} || point == end || *point != '.' || whole < 0)
        return std::nullopt;
    const auto [unit, tenthsError] = std::from_chars(point + 1, std::min(point + 2, end), tenths);
    if (tenthsError != std::errc{})
        return std::nullopt;
    return whole + tenths / 10.0;
}

std::optional<Finding> supplyTrouble(std::string_view answer)
{
    const auto volts = voltsIn(answer);
    if (!volts)
        return Finding{voltageRefused};
    if (*volts < leastSupply)
        return Finding{noVoltage, voltsText(*volts)};
    if (*volts > mostSupply)
        return Finding{absurdVoltage, voltsText(*volts)};
    return std::nullopt;
}

bool mayPass(ReplyError error)
{
    using enum ReplyError;
    constexpr std::array passing = {noData,  stopped,       busError, dataError,
                                    rxError, activityAlert, empty,    garbled};
    return std::ranges::find(passing, error) != passing.end();
}

Finding vehicleTrouble(const VehicleEvidence& evidence)
{
    if (!evidence.isInTime)
        return {endlessSearch};
    if (upperCase(evidence.text).find("ERR94") != std::string::npos)
        return {lowVoltageReset};
    if (evidence.error == ReplyError::unableToConnect || evidence.error == ReplyError::busInitError) {
        if (!evidence.fixedProtocol.empty())
            return {fixedProtocol, evidence.fixedProtocol};
    }
    if (evidence.error == ReplyError::unableToConnect) {
        if (evidence.volts.value_or(0) >= runningEngine)
            return {noVehicle, voltsText(*evidence.volts)};
        return {ignitionOff,
                evidence.volts ? ": " + voltsText(*evidence.volts) + " is the battery alone" : ""};
    }
    const auto* const known =
        std::ranges::find(byError, evidence.error, &std::pair<ReplyError, Observation>::first);
    if (known != byError.end())
        return {known->second};
    return {unreadableAnswer, evidence.text.substr(0, shownText)};
}

} // namespace zint
