#include "sim/controlUnit.h"

#include "sim/makerValues.h"
#include "sim/monitorTests.h"
#include "sim/supportBits.h"
#include "sim/vehicleInformation.h"

#include <algorithm>
#include <array>
#include <utility>

namespace zint {
namespace {

constexpr std::uint8_t notSupported = 0x11;
constexpr std::uint8_t notThisOne = 0x12; // the service, but not what it was asked for
constexpr std::uint8_t wrongLength = 0x13;
constexpr std::uint8_t conditionsNotRight = 0x22;
constexpr std::uint8_t outOfRange = 0x31;

constexpr std::uint8_t makerMode = 0x22;

constexpr std::chrono::hours drivenBefore{30}; // since the codes were cleared for the last time

void append(Message& message, const PidData& data)
{
    message.insert(message.end(), data.bytes().begin(), data.bytes().end());
}

bool isCan(const ProtocolTraits& protocol) { return protocol.framing == Framing::isoTp; }

} // namespace

struct ControlUnit::Service {
    std::uint8_t mode;
    bool onCan;
    bool elsewhere;
    Messages (ControlUnit::*answer)(MessageView);
};

ControlUnit::ControlUnit(UnitKind kind, const ProtocolTraits& protocol, UnitCodes codes, UnitHabits habits)
    : kind_(kind), protocol_(&protocol), codes_(std::move(codes)), habits_(habits), clearedAt_(-drivenBefore)
{
}

Addressee ControlUnit::addressee(std::uint32_t header) const
{
    const bool isNumbered = protocol_->headerForm == HeaderForm::id11;
    const std::uint32_t own =
        isNumbered ? address().header : protocol_->unitHeader | std::uint32_t{address().address} << 8U;
    const auto hasAddressOf = [&](std::uint32_t other) {
        return ((header ^ other) & protocol_->addressBits) == 0;
    };
    if (hasAddressOf(own))
        return Addressee::thisOne;
    const bool hearsAll = unitTraits(kind_).isOfStandard && hasAddressOf(protocol_->functionalHeader);
    return hearsAll ? Addressee::all : Addressee::another;
}

Messages ControlUnit::answer(std::uint32_t header, MessageView request, std::chrono::microseconds driven)
{
    static constexpr std::array<Service, 10> services{{
        {0x01, true, true, &ControlUnit::liveData},
        {0x02, true, true, &ControlUnit::freezeFrame},
        {0x03, true, true, &ControlUnit::storedCodes},
        {0x04, true, true, &ControlUnit::clearCodes},
        {0x05, false, true, &ControlUnit::sensorTests},
        {0x06, true, true, &ControlUnit::monitorResults},
        {0x07, true, true, &ControlUnit::pendingCodes},
        {0x09, true, true, &ControlUnit::vehicleInformation},
        {0x0A, true, false, &ControlUnit::permanentCodes},
        {makerMode, true, false, &ControlUnit::makerValue},
    }};
    driven_ = driven;
    addressee_ = addressee(header);
    const std::uint8_t mode = request[0];
    const auto* const service = std::ranges::find(services, mode, &Service::mode);
    const bool knowsService = unitTraits(kind_).isOfStandard || mode == makerMode;
    if (service == services.end() || !knowsService ||
        !(isCan(*protocol_) ? service->onCan : service->elsewhere))
        return unsupported(mode, notSupported);
    Messages messages = (this->*service->answer)(request.subspan(1));
    return messages.empty() ? unsupported(mode, notThisOne) : messages;
}

Messages ControlUnit::unsupported(std::uint8_t mode, std::uint8_t reason) const
{
    const bool refuses = protocol_->refusesUnsupported || !unitTraits(kind_).isOfStandard;
    return refuses ? Messages{{refusal, mode, reason}} : Messages{};
}

std::uint32_t ControlUnit::monitorStatus() const
{
    constexpr std::uint32_t lampOn = 0x80;
    constexpr std::uint32_t continuousBits = 0x07;
    const UnitTraits& traits = unitTraits(kind_);
    const auto count = static_cast<std::uint32_t>(std::min<std::size_t>(codes_.stored.size(), 0x7F));
    const std::uint32_t lamp = count > 0 ? lampOn | count : 0;
    const std::uint32_t unfinishedContinuous = cleared_ ? traits.continuousTests & continuousBits : 0;
    const std::uint32_t unfinished = cleared_ ? traits.otherTests : traits.unfinishedTests;
    return lamp << 24 | unfinishedContinuous << 20 | std::uint32_t{traits.continuousTests} << 16 |
           std::uint32_t{traits.otherTests} << 8 | unfinished;
}

EngineData ControlUnit::engineData(std::chrono::microseconds moment) const
{
    return {.drive = driveAt(moment),
            .monitorStatus = monitorStatus(),
            .sinceClearing = std::chrono::duration<double>(moment - clearedAt_).count(),
            .frozenCode = codes_.stored.empty() ? std::uint16_t{0} : codes_.stored.front(),
            .hasFourBanks = kind_ == UnitKind::completeV};
}

bool ControlUnit::appendLiveValue(Message& message, std::uint8_t pid) const
{
    if (isSupportItem(pid)) {
        const std::uint32_t mask = supportMask(kind_, pid, false);
        if (mask == 0 && pid != 0)
            return false;
        message.push_back(pid);
        appendNumber(message, mask, 4);
        return true;
    }
    const VehiclePid* const found = findPid(kind_, pid);
    if (found == nullptr)
        return false;
    message.push_back(pid);
    append(message, found->encode(engineData(driven_)));
    return true;
}

Messages ControlUnit::liveData(MessageView request)
{
    if (request.size() > protocol_->mostPids)
        return {};
    Message pids(request.begin(), request.end());
    switch (pids.size() > 1 ? habits_.combined : SeveralPids::taken) {
    case SeveralPids::silent:
        return {};
    case SeveralPids::refused:
        return {{refusal, 0x01, notThisOne}};
    case SeveralPids::firstOnly:
        pids.resize(1);
        break;
    case SeveralPids::sorted:
        std::ranges::sort(pids);
        break;
    case SeveralPids::taken:
        break;
    }
    Message message{positiveAnswer(0x01)};
    bool answered = false;
    for (const std::uint8_t pid : pids)
        answered |= appendLiveValue(message, pid);
    return answered ? Messages{message} : Messages{};
}

Messages ControlUnit::freezeFrame(MessageView request)
{
    constexpr std::chrono::seconds storedAt{52};
    constexpr std::uint8_t causePid = 0x02;
    if (request.size() != 2 || request[1] != 0) // there is one frame, number 00
        return {};
    const std::uint8_t pid = request[0];
    const bool stored = !codes_.stored.empty();
    const VehiclePid* const found = findPid(kind_, pid);
    Message message{positiveAnswer(0x02), pid, 0};
    if (isSupportItem(pid)) {
        const std::uint32_t mask = stored ? supportMask(kind_, pid, true) : 0;
        if (mask == 0 && pid != 0)
            return {};
        appendNumber(message, mask | supportBit(pid, pid == 0 ? causePid : 0), 4);
    } else if (pid == causePid) {
        appendNumber(message, stored ? codes_.stored.front() : 0, 2);
    } else if (stored && found != nullptr && found->inFreezeFrame) {
        append(message, found->encode(engineData(storedAt)));
    } else {
        return {};
    }
    return {message};
}

Messages ControlUnit::storedCodes(MessageView request)
{
    return request.empty() ? codeMessages(0x03, codes_.stored, protocol_->framing) : Messages{};
}

Messages ControlUnit::pendingCodes(MessageView request)
{
    return request.empty() ? codeMessages(0x07, codes_.pending, protocol_->framing) : Messages{};
}

Messages ControlUnit::permanentCodes(MessageView request)
{
    return request.empty() ? codeMessages(0x0A, codes_.permanent, protocol_->framing) : Messages{};
}

Messages ControlUnit::clearCodes(MessageView request)
{
    if (!request.empty())
        return {};
    if (habits_.refusesClearing)
        return {{refusal, 0x04, conditionsNotRight}};
    codes_.stored.clear();
    codes_.pending.clear();
    cleared_ = true;
    clearedAt_ = driven_;
    return {Message{positiveAnswer(0x04)}};
}

/// Who asks all at once hears of those alone that have something to tell.
Messages ControlUnit::makerRefusal(std::uint8_t reason) const
{
    return addressee_ == Addressee::thisOne ? Messages{{refusal, makerMode, reason}} : Messages{};
}

// The four below don't change the unit, but are services like the others.

// NOLINTNEXTLINE(readability-make-member-function-const)
Messages ControlUnit::makerValue(MessageView request)
{
    if (!habits_.tellsMakerValues)
        return {};
    if (request.size() != 2)
        return makerRefusal(wrongLength);
    const MakerValue* const found =
        findMakerValue(kind_, static_cast<std::uint16_t>(request[0] << 8 | request[1]));
    if (found == nullptr)
        return makerRefusal(outOfRange);
    Message message{positiveAnswer(makerMode), request[0], request[1]};
    append(message, found->encode(engineData(driven_)));
    return {message};
}

// NOLINTNEXTLINE(readability-make-member-function-const)
Messages ControlUnit::sensorTests(MessageView request) { return zint::sensorTests(kind_, request); }

// NOLINTNEXTLINE(readability-make-member-function-const)
Messages ControlUnit::monitorResults(MessageView request)
{
    return zint::monitorResults(kind_, protocol_->framing, request, cleared_);
}

// NOLINTNEXTLINE(readability-make-member-function-const)
Messages ControlUnit::vehicleInformation(MessageView request)
{
    return zint::vehicleInformation(kind_, protocol_->framing, request);
}

} // namespace zint
