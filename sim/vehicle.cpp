#include "sim/vehicle.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

namespace zint {
namespace {

constexpr std::uint8_t answerPending = 0x78;

/// An answer to a service that the request is not for.
Message foreignAnswer(std::uint8_t requestedMode)
{
    constexpr std::uint8_t liveData = 0x01;
    return requestedMode == liveData ? Message{0x7E} : Message{positiveAnswer(liveData), 0x0D, 0x00};
}

UnitKind engineKind(const VehicleOptions& options)
{
    if (options.allParameters)
        return options.fourBanks ? UnitKind::completeV : UnitKind::complete;
    if (options.diesel)
        return UnitKind::diesel;
    return options.units > 1 ? UnitKind::sparkNewer : UnitKind::spark;
}

std::vector<ControlUnit> makeUnits(const VehicleOptions& options)
{
    const ProtocolTraits& protocol = protocolTraits(static_cast<unsigned>(options.protocol));
    if (options.allParameters && protocol.framing != Framing::isoTp)
        throw std::invalid_argument("A vehicle tells all parameters on CAN only");
    std::vector<ControlUnit> units;
    if (options.allParameters) {
        units.emplace_back(UnitKind::body, protocol, UnitCodes{}, UnitHabits{.tellsMakerValues = true});
    }
    units.emplace_back(engineKind(options), protocol,
                       UnitCodes{.stored = parseTroubleCodes(options.storedCodes),
                                 .pending = parseTroubleCodes(options.pendingCodes),
                                 .permanent = parseTroubleCodes(options.permanentCodes)},
                       UnitHabits{.refusesClearing = options.refusesClearing,
                                  .tellsMakerValues = options.allParameters,
                                  .combined = options.combined});
    if (options.units > 1) {
        units.emplace_back(UnitKind::transmission, protocol,
                           UnitCodes{.stored = parseTroubleCodes(options.transmissionCodes)},
                           UnitHabits{.refusesClearing = options.refusesClearing,
                                      .tellsMakerValues = options.allParameters,
                                      .combined = options.transmissionCombined});
    }
    return units;
}

} // namespace

Vehicle::Vehicle(const VehicleOptions& options)
    : protocol_(static_cast<unsigned>(options.protocol)), ignitionOn_(options.ignitionOn),
      voltage_(options.voltage), pendingResponse_(options.pendingResponse),
      dropOutEvery_(options.dropOutEvery), moment_(options.moment),
      foreignAnswerEvery_(options.foreignAnswerEvery), units_(makeUnits(options))
{
}

/// It is the last one that does, and never twice in a row where others are answered.
bool Vehicle::isDroppedOut(std::size_t unit) const
{
    return dropOutEvery_ > 0 && requests_ % dropOutEvery_ == 0 && unit + 1 == units_.size();
}

/// Live values are at hand; what has to be looked up may take a while.
void Vehicle::appendAnswer(std::vector<UnitAnswer>& answers, ControlUnit& unit, std::uint32_t header,
                           MessageView request) const
{
    constexpr std::uint8_t liveData = 0x01;
    UnitAnswer answer{.from = unit.address(), .messages = unit.answer(header, request, driven_)};
    if (answer.messages.empty())
        return;
    if (pendingResponse_ && request[0] != liveData)
        answer.waits = {{refusal, request[0], answerPending}};
    if (foreignAnswerEvery_ > 0 && requests_ % foreignAnswerEvery_ == 0)
        answer.messages.insert(answer.messages.begin(), foreignAnswer(request[0]));
    answers.push_back(std::move(answer));
}

/// The transmission is faster than the engine now and then.
std::vector<UnitAnswer> Vehicle::answers(std::uint32_t header, MessageView request,
                                         std::chrono::microseconds now)
{
    constexpr int transmissionFirstEvery = 3;
    const bool isHeard = std::ranges::any_of(units_, [=](const ControlUnit& u) { return u.hears(header); });
    if (!ignitionOn_ || request.empty() || !isHeard)
        return {};
    started_ = started_.value_or(now);
    driven_ = moment_.value_or(now - *started_);
    ++requests_;
    std::vector<UnitAnswer> answers;
    for (std::size_t i = 0; i < units_.size(); ++i) {
        if (units_[i].hears(header) && !isDroppedOut(i))
            appendAnswer(answers, units_[i], header, request);
    }
    if (requests_ % transmissionFirstEvery == 0)
        std::ranges::reverse(answers);
    return answers;
}

Messages Vehicle::answer(MessageView request, std::chrono::microseconds now)
{
    Messages messages;
    for (UnitAnswer& answer : answers(traits().functionalHeader, request, now))
        std::ranges::move(answer.messages, std::back_inserter(messages));
    return messages;
}

} // namespace zint
