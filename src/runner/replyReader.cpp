#include "runner/replyReader.h"

#include "catalogue/eventValue.h"
#include "catalogue/ownParameter.h"
#include "catalogue/standardConversion.h"
#include "parameters/ownReply.h"
#include "parameters/standardParameters.h"
#include "runner/pollReply.h"
#include "vehicle/parameters.h"
#include "vehicle/serviceAnswers.h"
#include "vehicle/vehicleReply.h"
#include "vehicle/vehicleRequest.h"

#include <algorithm>
#include <array>
#include <functional>
#include <set>

namespace zint {
namespace {

constexpr const char* protocolQuestion = "ATDPN";
constexpr std::uint8_t liveData = 0x01;

/// The data of an answer by parameter.
using ParameterData = std::map<std::uint8_t, Bytes>;

/// The parameters of mode 01 in the answers to a request. Of those that several units tell, the unit's that
/// tells most counts, then the first one's: units answer in any order.
ParameterData parametersIn(const VehicleReply& reply, const VehicleRequest& request, const UnitReading& known)
{
    if (request.bytes().empty() || request.bytes().front() != liveData)
        return {};
    std::vector<ParameterData> answers;
    for (const UnitMessage& message : reply.messages) {
        if (message.isIncomplete || message.bytes.front() == refusalSign)
            continue;
        const ServiceAnswer answer{.service = liveData,
                                   .data = BytesView(message.bytes).subspan(1),
                                   .asked = BytesView(request.bytes()).subspan(1),
                                   .known = &known};
        ParameterData& told = answers.emplace_back();
        forEachParameter(answer, [&told](std::uint8_t pid, BytesView data) {
            told.try_emplace(pid, data.begin(), data.end());
        });
    }
    std::ranges::stable_sort(answers, std::greater(), [](const ParameterData& told) { return told.size(); });
    ParameterData parameters;
    for (ParameterData& told : answers)
        parameters.merge(told);
    return parameters;
}

/// A refusal of the request is the vehicle's word, and no sign of replies that are out of step.
ReplyFit fitOf(const VehicleReply& reply, bool isAnswered)
{
    if (isAnswered)
        return ReplyFit::match;
    return reply.messages.empty() && reply.error == ReplyError::garbled ? ReplyFit::mismatch
                                                                        : ReplyFit::unknown;
}

/// Whether a field lies behind what a vehicle with two banks tells of a parameter.
bool needsFourBanks(const StandardConversion& field)
{
    return field.field > 0 &&
           parameterLength(field.pid) != parameterLength(field.pid, {.hasFourBanks = true});
}

/// Whether an answer came that can't be read: the next one may be whole.
bool isDamaged(const ExchangeReading& answer)
{
    constexpr std::array faults = {ReplyError::dataError, ReplyError::rxError, ReplyError::canError,
                                   ReplyError::busError,  ReplyError::stopped, ReplyError::bufferFull,
                                   ReplyError::garbled,   ReplyError::empty};
    const auto isWhole = [](const auto& unit) { return !unit.second.isIncomplete; };
    if (std::ranges::any_of(answer.units, isWhole))
        return false;
    return !answer.units.empty() || std::ranges::find(faults, answer.error) != faults.end();
}

/// Whether the vehicle has told what it supports, and with it how many banks it has.
bool tellsSupport(const UnitReading& told) { return told.supported.contains(liveData); }

} // namespace

bool VehicleTraits::learn(std::string_view question, std::string_view reply)
{
    if (question == protocolQuestion) {
        protocol = protocolIn(reply).value_or(BusProtocol::unknown);
        return false;
    }
    if (!VehicleRequest(question).isForVehicle() || question.empty())
        return false;
    const ExchangeReading answer = readExchange(question, reply, protocol);
    std::for_each(answer.units.rbegin(), answer.units.rend(), // the first one has the last word
                  [this](const auto& unit) { merge(told, unit.second); });
    return isDamaged(answer);
}

std::vector<std::string> openingQuestions(const Design& design, bool combines)
{
    std::set<std::uint8_t> scales;
    bool hasAddresses = false;
    bool hasBanks = false;
    for (const DesignEntry& event : design.events) {
        hasAddresses =
            hasAddresses || (event.own != nullptr && !(event.own->header + event.own->filter).empty());
        if (const auto standard = standardConversion(event.conversion)) {
            scales.insert(parameterField(standard->pid, standard->field)->scaledBy);
            hasBanks = hasBanks || needsFourBanks(*standard);
        }
    }
    std::vector<std::string> questions;
    if (combines || hasAddresses)
        questions = {"0100", protocolQuestion};
    else if (hasBanks)
        questions = {"0100"};
    if (scales.contains(0x4F))
        questions.emplace_back("014F");
    if (scales.contains(0x50))
        questions.emplace_back("0150");
    return questions;
}

ReplyReader::ReplyReader(const Design& design) : design_(design)
{
    for (std::size_t event = 0; event < design.events.size(); ++event) {
        if (const auto& own = design.events[event].own)
            formulas_.try_emplace(event, own->formula);
    }
}

ReplyReader::Reading ReplyReader::read(const PollRequest& request, std::string_view reply,
                                       const VehicleTraits& vehicle) const
{
    const bool isRaw = std::ranges::all_of(request.events, [this](std::size_t event) {
        return keepsRawValues(design_.events[event].conversion);
    });
    if (isRaw && !request.isCombined())
        return readRaw(request, reply);
    const VehicleReply answers = readVehicleReply(request.text, reply, vehicle.protocol);
    const ParameterData parameters = parametersIn(answers, VehicleRequest(request.text), vehicle.told);
    Reading reading;
    for (const std::size_t event : request.events) {
        const auto pid = requestedParameter(design_.events[event].code);
        const auto found = parameters.find(pid.value_or(0));
        if (pid && found != parameters.end())
            reading.events.push_back(readData(event, found->second, vehicle));
        else
            reading.events.push_back(pid ? EventReading() : readOwn(event, reply, vehicle));
    }
    reading.fit = fitOf(answers, !std::ranges::all_of(reading.events, &EventReading::isBad));
    return reading;
}

/// A reply to a request of the table's conversions: its first line, whatever it repeats of the request.
ReplyReader::Reading ReplyReader::readRaw(const PollRequest& request, std::string_view reply)
{
    const auto value = pollValue(reply);
    EventReading told;
    if (value)
        told.value = *value;
    return {.events = std::vector(request.events.size(), told),
            .fit = zint::fitOf(request.text, reply, value.has_value())};
}

/// A request of any service, whose answer an own parameter's formula takes behind what it repeats.
EventReading ReplyReader::readOwn(std::size_t event, std::string_view reply,
                                  const VehicleTraits& vehicle) const
{
    const auto& own = design_.events[event].own;
    if (!own)
        return {.words = "not defined here"};
    const ReplyData data = replyData(*own, reply, vehicle.protocol);
    return data.why.empty() ? readData(event, data.bytes, vehicle) : EventReading();
}

EventReading ReplyReader::readData(std::size_t event, BytesView data, const VehicleTraits& vehicle) const
{
    const DesignEntry& entry = design_.events[event];
    if (keepsRawValues(entry.conversion))
        return {.value = rawValueOf(data)};
    if (const auto formula = formulas_.find(event); formula != formulas_.end()) {
        FormulaResult result = formula->second.evaluate(data);
        return {.value = result.number, .words = std::move(result.why)};
    }
    const auto standard = standardConversion(entry.conversion);
    if (!standard)
        return {.words = "not defined here"};
    return readStandard(*standard, data, vehicle.told);
}

/// What lies behind a parameter's data is padding, where the number of banks is known.
EventReading ReplyReader::readStandard(const StandardConversion& standard, BytesView data,
                                       const UnitReading& told)
{
    const ParameterContext context = contextOf(&told);
    const std::size_t length = parameterLength(standard.pid, context).value_or(data.size());
    if (tellsSupport(told) && data.size() >= length) {
        data = data.first(length);
        if (needsFourBanks(standard) && !context.hasFourBanks)
            return {.words = "not supported"};
    }
    auto field = readField(standard.pid, standard.field, data, context);
    return field ? EventReading{field->number, std::move(field->words)} : EventReading{};
}

} // namespace zint
