#include "parameters/ownReply.h"

#include "shared/module1.h"
#include "vehicle/adapterLines.h"
#include "vehicle/refusalText.h"
#include "vehicle/vehicleReply.h"
#include "vehicle/vehicleRequest.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace zint {
namespace {

constexpr std::uint8_t answerBit = 0x40;

constexpr std::array errorWords = {
    std::pair{ReplyError::noData, "the vehicle has not answered (NO DATA)"},
    std::pair{ReplyError::unableToConnect, "the adapter found no vehicle (UNABLE TO CONNECT)"},
    std::pair{ReplyError::stopped, "the adapter was interrupted (STOPPED)"},
    std::pair{ReplyError::unknownCommand, "the adapter does not know the request (?)"},
    std::pair{ReplyError::empty, "the reply is empty"},
    std::pair{ReplyError::garbled, "the reply is no answer to this request"},
};

std::string wordsOf(ReplyError error)
{
    const auto* const row = std::ranges::find(errorWords, error, &std::pair<ReplyError, const char*>::first);
    return row == errorWords.end() ? "the adapter reports a fault" : row->second;
}

bool isRefusal(const UnitMessage& message) { return message.bytes.front() == refusalSign; }

/// An answer before a refusal, the filter's unit before others.
const UnitMessage* bestOf(const std::vector<UnitMessage>& messages, const std::string& filter)
{
    const auto rank = [&](const UnitMessage& message) {
        return (isRefusal(message) ? 0 : 2) + (message.unit == filter ? 1 : 0);
    };
    const UnitMessage* best = nullptr;
    for (const UnitMessage& message : messages) {
        if (!message.bytes.empty() && (best == nullptr || rank(message) > rank(*best)))
            best = &message;
    }
    return best;
}

/// A line without a header is taken whole: on the older buses, the last of eight bytes would be a checksum.
BusProtocol protocolOf(const OwnParameter& parameter, const std::string& reply)
{
    const VehicleReply read = readVehicleReply(parameter.request, reply, BusProtocol::unknown);
    const bool isBare = !read.messages.empty() && read.messages.front().unit.starts_with('?');
    return isBare ? BusProtocol::can11At500 : BusProtocol::unknown;
}

/// The bytes of a text that is nothing but bytes.
Bytes plainBytes(std::string_view text)
{
    const auto line = hexLine(trimmed(text, " \t\r\n>"));
    return line && !line->index && line->digits.size() % 2 == 0 ? line->bytesFrom(0) : Bytes();
}

/// Whether bytes refuse a request, or hold an answer to it or its like.
bool isReply(const Bytes& bytes, const VehicleRequest& request)
{
    Bytes answer = request.bytes();
    answer.front() |= answerBit;
    return bytes.front() == refusalSign || bytes.front() == answer.front() ||
           std::search(bytes.begin(), bytes.end(), answer.begin(), answer.end()) != bytes.end();
}

} // namespace

ReplyData replyData(const OwnParameter& parameter, std::string_view reply, BusProtocol protocol)
{
    const VehicleReply read = readVehicleReply(parameter.request, reply, protocol);
    const UnitMessage* const message = bestOf(read.messages, parameter.filter);
    if (message == nullptr)
        return {.bytes = {}, .why = wordsOf(read.error)};
    if (isRefusal(*message))
        return {.bytes = {},
                .why =
                    message->bytes.size() > 2 ? refusalText(message->bytes[2]) : "the vehicle has refused"};
    if (message->isIncomplete)
        return {.bytes = {}, .why = "the reply is not whole"};
    const std::size_t repeated = VehicleRequest(parameter.request).repeatedIn(message->bytes);
    return {.bytes = {message->bytes.begin() + static_cast<std::ptrdiff_t>(repeated), message->bytes.end()},
            .why = {}};
}

std::string valueText(const OwnParameter& parameter, double value)
{
    constexpr int significantDigits = 10;
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value + 0.0,
                                   std::chars_format::general, significantDigits);
    return std::string(text.data(), end.ptr) + (parameter.unit.empty() ? "" : " ") + parameter.unit;
}

namespace {

/// The data of what a user types; without a request it is nothing but data.
ReplyData typedData(const OwnParameter& parameter, std::string_view reply)
{
    const VehicleRequest request(parameter.request);
    if (!request.isForVehicle())
        return {.bytes = {}, .why = "the request must be hexadecimal, such as 221940"};
    Bytes bytes = plainBytes(reply);
    if (request.bytes().empty()) {
        std::string why = bytes.empty() ? "give the data bytes, such as 1A 2B" : "";
        return {.bytes = std::move(bytes), .why = std::move(why)};
    }
    const std::string lines = std::string(reply) + "\r>";
    ReplyData data = replyData(parameter, lines, protocolOf(parameter, lines));
    if (!data.why.empty() && !bytes.empty() && !isReply(bytes, request))
        return {.bytes = std::move(bytes), .why = {}};
    return data;
}

} // namespace

Tried tryOut(const OwnParameter& parameter, std::string_view reply)
{
    ReplyData data = typedData(parameter, reply);
    if (!data.why.empty())
        return {.text = std::move(data.why)};
    Tried tried{.data = std::move(data.bytes)};
    FormulaResult result = Formula(parameter.formula).evaluate(tried.data);
    tried.number = result.number;
    tried.text = result.number ? valueText(parameter, *result.number) : std::move(result.why);
    tried.isOutside = result.number && parameter.maximum > parameter.minimum &&
                      (*result.number < parameter.minimum || *result.number > parameter.maximum);
    return tried;
}

} // namespace zint
