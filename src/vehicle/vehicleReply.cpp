#include "vehicle/vehicleReply.h"

#include "shared/module1.h"
#include "vehicle/adapterLines.h"
#include "vehicle/busFrames.h"
#include "vehicle/messageJoiner.h"
#include "vehicle/vehicleRequest.h"

#include <algorithm>
#include <map>
#include <optional>
#include <span>
#include <tuple>
#include <utility>

namespace zint {
namespace {

using Messages = std::vector<JoinedMessage>;

constexpr std::uint8_t vehicleInformation = 0x49;
constexpr std::uint8_t testResults = 0x46;

/// How well the lines fit a form.
struct FormScore {
    int answers = 0; ///< whole frames that begin an answer
    int others = 0;  ///< whole frames
    int damaged = 0;

    auto rank() const { return std::tuple(answers, others, damaged); }
};

struct FormFrames {
    LineForm form = LineForm::plain;
    std::vector<Frame> frames;
    FormScore score;
};

bool beginsAnswer(const Frame& frame, const VehicleRequest& request)
{
    const bool beginsMessage = frame.kind == FrameKind::whole || frame.kind == FrameKind::first ||
                               (frame.kind == FrameKind::consecutive && frame.number == 0);
    return beginsMessage && request.isAnsweredBy(frame.data, frame.kind != FrameKind::whole);
}

FormFrames framesIn(LineForm form, const std::vector<HexLine>& lines, const VehicleRequest& request)
{
    FormFrames found{.form = form, .frames = {}, .score = {}};
    for (const HexLine& line : lines) {
        std::optional<Frame> frame = frameIn(form, line);
        if (!frame)
            continue;
        // Without headers any line has the form of a message: an answer alone shows that it is one.
        const bool isAnswer = beginsAnswer(*frame, request);
        if (frame->isDamaged)
            ++found.score.damaged;
        else if (isAnswer)
            ++found.score.answers;
        else if (hasHeader(form) || line.index)
            ++found.score.others;
        found.frames.push_back(*std::move(frame));
    }
    return found;
}

FormFrames bestOf(std::span<const LineForm> forms, const std::vector<HexLine>& lines,
                  const VehicleRequest& request)
{
    FormFrames best;
    for (const LineForm form : forms) {
        FormFrames found = framesIn(form, lines, request);
        if (found.score.rank() > best.score.rank())
            best = std::move(found);
    }
    return best;
}

/// The frames in the protocol's form; in any other only where no line fits the protocol.
FormFrames framesOf(const std::vector<HexLine>& lines, const VehicleRequest& request, BusProtocol protocol)
{
    FormFrames expected = bestOf(formsOf(protocol), lines, request);
    if (expected.score.answers > 0 || expected.score.others > 0)
        return expected;
    FormFrames any = bestOf(allLineForms, lines, request);
    return any.score.answers > 0 || expected.frames.empty() ? any : expected;
}

/// Without headers adapters may leave the checksum of the older buses in the line: a message has at most
/// seven bytes there.
void cutChecksums(Messages& messages)
{
    for (JoinedMessage& message : messages) {
        if (message.isOneLine && message.bytes.size() == longestOlderMessage + 1)
            message.bytes.pop_back();
    }
}

bool isWaiting(const JoinedMessage& message)
{
    return message.bytes.size() > 2 && message.bytes[0] == refusalSign && message.bytes[2] == answerFollows;
}

bool beginsWith(const Bytes& bytes, const Bytes& start)
{
    return bytes.size() >= start.size() && std::equal(start.begin(), start.end(), bytes.begin());
}

/// Whether the message repeats the one that follows it in the order of their bytes, or is a part of it.
bool isRepeated(const JoinedMessage& message, const JoinedMessage& following)
{
    return message.unit == following.unit && beginsWith(following.bytes, message.bytes) &&
           (message.isIncomplete || message.bytes.size() == following.bytes.size());
}

/// Leaves out what a unit says twice. The first of equal messages stays.
void dropDoubled(Messages& messages)
{
    std::vector<std::size_t> order(messages.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        order[i] = i;
    // Complete messages follow incomplete ones, and earlier ones later ones.
    const auto key = [&](std::size_t i) {
        return std::tuple<std::uint32_t, const Bytes&, bool, std::size_t>(
            messages[i].unit, messages[i].bytes, !messages[i].isIncomplete, messages.size() - i);
    };
    std::ranges::sort(order, [&](std::size_t a, std::size_t b) { return key(a) < key(b); });
    std::vector<bool> isDropped(messages.size());
    for (std::size_t i = 0; i + 1 < order.size(); ++i)
        isDropped[order[i]] = isRepeated(messages[order[i]], messages[order[i + 1]]);
    std::size_t place = 0;
    std::erase_if(messages, [&](const JoinedMessage&) { return isDropped[place++]; });
}

/// Leaves out "wait" where the unit has said more. Without headers all are one unit: who waits is unknown.
void dropWaiting(Messages& messages)
{
    std::map<std::uint32_t, bool> hasAnswered;
    for (const JoinedMessage& message : messages)
        hasAnswered[message.unit] = hasAnswered[message.unit] || !isWaiting(message);
    std::map<std::uint32_t, int> waits;
    std::erase_if(messages, [&](const JoinedMessage& message) {
        return isWaiting(message) && (hasAnswered[message.unit] || waits[message.unit]++ > 0);
    });
}

/// What tells the messages of one unit apart on the older buses: the message number of mode 09, the test and
/// the component of mode 06. Nothing for messages that stand alone.
std::optional<std::pair<std::uint8_t, std::uint8_t>> numberIn(const JoinedMessage& message)
{
    const Bytes& bytes = message.bytes;
    const bool isNumbered = message.isOneLine && bytes.size() == longestOlderMessage &&
                            (bytes[0] == vehicleInformation || bytes[0] == testResults);
    return isNumbered ? std::optional(std::pair(bytes[1], bytes[2])) : std::nullopt;
}

/// Gives numbers, from 1 on, to the units of messages without headers: each message is another unit's, but
/// those of the older buses that count on.
void numberUnits(Messages& messages, bool isOlderBus)
{
    std::map<std::pair<std::uint8_t, std::uint8_t>, std::uint32_t> counts;
    std::uint32_t last = 0;
    for (JoinedMessage& message : messages) {
        const auto number = isOlderBus ? numberIn(message) : std::nullopt;
        message.unit = number ? ++counts[*number] : last + 1;
        last = std::max(last, message.unit);
    }
}

/// Numbered parts without headers are CAN's, too.
std::optional<bool> isCanForm(LineForm form, const Messages& messages)
{
    if (form != LineForm::plain)
        return form == LineForm::can11 || form == LineForm::can29 || form == LineForm::plainFrames;
    return std::ranges::all_of(messages, &JoinedMessage::isOneLine) ? std::nullopt : std::optional(true);
}

/// The messages that answer the request, by units.
VehicleReply messagesIn(const std::vector<HexLine>& lines, const VehicleRequest& request,
                        BusProtocol protocol)
{
    const FormFrames found = framesOf(lines, request, protocol);
    const bool isHeaded = hasHeader(found.form);
    MessageJoiner joiner(isHeaded);
    for (const Frame& frame : found.frames)
        joiner.add(frame);
    Messages messages = joiner.takeMessages();
    if (found.form == LineForm::plain && !isCan(protocol))
        cutChecksums(messages);
    std::erase_if(messages, [&](const JoinedMessage& message) {
        return !request.isAnsweredBy(message.bytes, message.isIncomplete);
    });
    dropWaiting(messages);
    if (isHeaded)
        dropDoubled(messages);
    else
        numberUnits(messages, !isCan(protocol));
    VehicleReply reply;
    if (!messages.empty())
        reply.isCan = isCanForm(found.form, messages);
    reply.messages.reserve(messages.size());
    for (JoinedMessage& message : messages) {
        std::string unit = isHeaded ? unitName(found.form, message.unit) : "?" + std::to_string(message.unit);
        reply.messages.push_back({std::move(unit), std::move(message.bytes), message.isIncomplete});
    }
    return reply;
}

/// Whether a unit has obeyed 04, as some adapters tell it: without the unit's answer.
bool isClearingAcknowledged(const VehicleRequest& request, const AdapterLines& lines)
{
    return request.bytes() == Bytes{0x04} && lines.isAcknowledged && lines.isEmpty;
}

VehicleReply messagesTo(const VehicleRequest& request, const std::vector<HexLine>& lines,
                        BusProtocol protocol)
{
    if (!request.isForVehicle() || lines.empty())
        return {};
    VehicleReply reply = messagesIn(lines, request, protocol);
    const auto bare = reply.messages.empty() ? request.withoutLength() : std::nullopt;
    return bare ? messagesIn(lines, *bare, protocol) : reply;
}

ReplyError errorOf(const AdapterLines& lines, const std::vector<UnitMessage>& messages)
{
    if (lines.textError != ReplyError::none)
        return lines.textError;
    if (!lines.hasPrompt && std::ranges::all_of(messages, &UnitMessage::isIncomplete))
        return ReplyError::noPrompt;
    if (!messages.empty())
        return ReplyError::none;
    return lines.isEmpty ? ReplyError::empty : ReplyError::garbled;
}

/// The adapter may answer a command with any text.
ReplyError commandErrorOf(const AdapterLines& lines)
{
    if (lines.textError != ReplyError::none || !lines.isEmpty || lines.isAcknowledged)
        return lines.textError;
    return lines.hasPrompt ? ReplyError::empty : ReplyError::noPrompt;
}

} // namespace

VehicleReply readVehicleReply(std::string_view request, std::string_view reply, BusProtocol protocol)
{
    const VehicleRequest asked(request);
    const AdapterLines lines = adapterLines(request, reply);
    VehicleReply result = messagesTo(asked, lines.lines, protocol);
    if (isClearingAcknowledged(asked, lines))
        result.messages.push_back({"?1", {0x44}});
    result.error = asked.isForVehicle() ? errorOf(lines, result.messages) : commandErrorOf(lines);
    return result;
}

} // namespace zint
