#include "sim/simulatedAdapter.h"

#include "shared/module1.h"
#include "sim/wrongSpeed.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace zint {
namespace {

constexpr std::size_t longestLine = 128;
constexpr std::size_t longestRequest = 7; // bytes of data that one message holds
constexpr std::chrono::seconds lineTimeout{20};
constexpr std::chrono::milliseconds timeoutUnit{4};
constexpr int bitsPerCharacter = 10; // start bit, eight data bits, stop bit

PacedOutput::Time characterTime(int bitsPerSecond)
{
    constexpr std::chrono::microseconds second = std::chrono::seconds(1);
    return bitsPerSecond > 0 ? second * bitsPerCharacter / bitsPerSecond : PacedOutput::Time{0};
}

/// A request without the control byte of its frame; nothing for a frame that no control unit would take.
std::optional<MessageView> frameData(MessageView frame)
{
    const std::size_t length = frame.empty() ? 0 : frame[0];
    if (length == 0 || length > longestRequest || length >= frame.size())
        return {};
    return frame.subspan(1, length);
}

using LinesByUnit = std::vector<std::vector<std::string>>;

/// All lines of a unit and then those of the next one; or the first of each, the second of each, and so on.
std::vector<std::string> inOneList(LinesByUnit units, bool inTurns)
{
    std::vector<std::string> list;
    std::size_t most = 1;
    for (const auto& lines : units)
        most = std::max(most, lines.size());
    for (std::size_t turn = 0; inTurns && turn < most; ++turn) {
        for (auto& lines : units) {
            if (turn < lines.size())
                list.push_back(std::move(lines[turn]));
        }
    }
    for (auto& lines : units) {
        if (!inTurns)
            std::ranges::move(lines, std::back_inserter(list));
    }
    return list;
}

/// Leaves as many messages as the sender waits for.
void limitMessages(std::vector<UnitAnswer>& answers, std::size_t most)
{
    for (UnitAnswer& answer : answers) {
        for (Messages* const messages : {&answer.waits, &answer.messages}) {
            messages->resize(std::min(messages->size(), most));
            most -= messages->size();
        }
    }
}

bool isPrintable(char byte) { return byte >= ' ' && byte <= '~'; }

} // namespace

SimulatedAdapter::SimulatedAdapter(Vehicle& vehicle, AdapterOptions options)
    : vehicle_(vehicle), options_(std::move(options)), lineFaults_(options_),
      output_({.perCharacter = characterTime(options_.bitsPerSecond),
               .pieceLength = static_cast<std::size_t>(options_.pieceLength),
               .pieceGap = options_.pieceGap}),
      perCharacter_(characterTime(options_.bitsPerSecond))
{
    settings_.lineFeedsAtPowerUp = options_.lineFeeds;
    settings_.mindsHeaderForm = options_.mindsHeaderForm;
    settings_.restoreDefaults();
    portOpened();
}

void SimulatedAdapter::portOpened()
{
    silent_ = false;
    prompts_ = 0;
    vanished_ = options_.repliesUntilDisconnect == 0;
}

std::optional<SimulatedAdapter::Time> SimulatedAdapter::nextDue() const
{
    const auto outputDue = output_.nextDue();
    if (!outputDue || !lineDeadline_)
        return outputDue ? outputDue : lineDeadline_;
    return std::min(*outputDue, *lineDeadline_);
}

std::string SimulatedAdapter::take(Time now)
{
    dropLateCommand(now);
    std::string text = output_.take(now);
    return isSpeedWrong() ? heardAtOtherSpeed(text, options_.bitsPerSecond, portSpeed_) : text;
}

bool SimulatedAdapter::isSpeedWrong() const
{
    return options_.mindsSpeed && portSpeed_ > 0 && options_.bitsPerSecond > 0 &&
           portSpeed_ != options_.bitsPerSecond;
}

void SimulatedAdapter::receive(std::string_view bytes, Time now)
{
    const std::string heard =
        isSpeedWrong() ? heardAtOtherSpeed(bytes, portSpeed_, options_.bitsPerSecond) : std::string(bytes);
    for (const char byte : heard) {
        inputEnd_ = std::max(now, inputEnd_) + perCharacter_;
        dropLateCommand(inputEnd_);
        receiveByte(byte, inputEnd_);
    }
}

void SimulatedAdapter::receiveByte(char byte, Time at)
{
    if (silent_ || vanished_ || at < resetUntil_)
        return;
    if (at < busyUntil_) {
        interrupt(at);
        return;
    }
    if (settings_.echo && (isPrintable(byte) || byte == '\r'))
        write({&byte, 1}, at);
    if (byte == '\r') {
        runLine(at);
    } else if (isPrintable(byte) && byte != ' ') {
        if (line_.size() < longestLine)
            line_ += byte;
        lineDeadline_ = at + lineTimeout;
    }
}

/// The byte that interrupts is lost.
void SimulatedAdapter::interrupt(Time at)
{
    output_.cut(at);
    busyUntil_ = at;
    --prompts_; // the one that was on its way
    reply("STOPPED", at);
}

void SimulatedAdapter::dropLateCommand(Time now)
{
    if (!lineDeadline_ || now < *lineDeadline_)
        return;
    const Time at = *lineDeadline_;
    lineDeadline_.reset();
    line_.clear();
    reply("?", at);
}

void SimulatedAdapter::runLine(Time at)
{
    if (!line_.empty())
        lastLine_ = upperCase(std::exchange(line_, {}));
    lineDeadline_.reset();
    if (lastLine_.starts_with("AT")) {
        runAdapterCommand(std::string_view(lastLine_).substr(2), at);
    } else if (const auto request = parseRequest(lastLine_)) {
        runRequest(*request, at);
    } else {
        reply("?", at);
    }
}

void SimulatedAdapter::runAdapterCommand(std::string_view command, Time at)
{
    if (std::ranges::find(options_.refusedCommands, command) != options_.refusedCommands.end()) {
        reply("?", at);
        return;
    }
    const CommandResult result = runCommand(command, settings_, vehicle_);
    if (result.reset == Reset::none) {
        reply(result.text, command == "D" ? at + options_.defaultsDelay : at);
        return;
    }
    settings_.restoreDefaults();
    if (result.reset == Reset::cold) {
        if (!options_.answersReset)
            return;
        at += options_.resetDuration;
        resetUntil_ = at;
    }
    std::string greeting = settings_.lineFeeds ? "\r\n" : "\r\r";
    if (options_.greetingPrompt)
        greeting += '>';
    reply(greeting + result.text, at);
}

/// Digits in pairs, and a single one at the end for the number of lines that the sender waits for.
std::optional<SimulatedAdapter::Request> SimulatedAdapter::parseRequest(std::string_view digits) const
{
    const auto isNoDigit = [](char character) { return upperHexDigit(character) < 0; };
    const std::size_t longest = std::min(longestRequest, static_cast<std::size_t>(options_.longestRequest)) +
                                (sendsWholeFrames() ? 1 : 0);
    if (digits.size() < 2 || digits.size() / 2 > longest || std::ranges::any_of(digits, isNoDigit))
        return {};
    Request request;
    for (; digits.size() >= 2; digits.remove_prefix(2))
        request.bytes.push_back(static_cast<std::uint8_t>(hexToNumber(digits.substr(0, 2))));
    if (!digits.empty())
        request.expectedLines = static_cast<std::size_t>(upperHexDigit(digits.front()));
    return request;
}

unsigned SimulatedAdapter::triedProtocol() const
{
    return settings_.protocol == automaticProtocol ? vehicle_.protocol() : settings_.protocol;
}

bool SimulatedAdapter::reachesVehicle() const
{
    return vehicle_.ignitionOn() && triedProtocol() == vehicle_.protocol();
}

std::uint32_t SimulatedAdapter::header() const
{
    return settings_.header.value_or(vehicle_.traits().functionalHeader);
}

void SimulatedAdapter::runRequest(const Request& request, Time at)
{
    ++requests_;
    if (reachesVehicle())
        askVehicle(request, at);
    else
        reply(protocolTraits(triedProtocol()).failure, at + options_.latency);
    busyUntil_ = output_.end();
}

void SimulatedAdapter::askVehicle(const Request& request, Time at)
{
    const Time connected = announceConnection(at);
    const VehicleLines answer = vehicleLines(request, at);
    if (answer.lines.empty() && answer.waits.empty()) {
        reply("NO DATA", connected + waitingTime());
        return;
    }
    const bool expectsMore = !settings_.adaptiveTiming && request.expectedLines == 0;
    const Time waitBeforePrompt = expectsMore ? waitingTime() : Time{0};
    if (answer.waits.empty())
        reply(joined(answer.lines), connected + options_.latency, waitBeforePrompt);
    else
        replyLate(answer, connected + options_.latency, waitBeforePrompt);
}

/// An answer that comes after the time-out is lost: the adapter has no more patience for one that was
/// announced.
void SimulatedAdapter::replyLate(const VehicleLines& answer, Time at, Time waitBeforePrompt)
{
    const Time wait = options_.latency > Time{0} ? vehicle_.waitingTime() : Time{0};
    if (answer.lines.empty() || wait > waitingTime()) {
        reply(joined(answer.waits), at, waitingTime());
        return;
    }
    write(joined(answer.waits).append(lineEnd()), at);
    reply(joined(answer.lines), at + wait, waitBeforePrompt);
}

/// The first request after a reset finds the vehicle; the dots come while it takes its time.
SimulatedAdapter::Time SimulatedAdapter::announceConnection(Time at)
{
    if (std::exchange(settings_.connected, true) || !options_.announcesConnection)
        return at;
    write(vehicle_.traits().search, at);
    for (int dot = 0; dot < vehicle_.traits().searchDots; ++dot) {
        at += options_.latency;
        write(".", at);
    }
    at += options_.latency;
    write(std::string(vehicle_.traits().found).append(lineEnd()), at);
    return at;
}

/// How long the adapter waits for an answer, or for a further one.
SimulatedAdapter::Time SimulatedAdapter::waitingTime() const
{
    return options_.latency > Time{0} ? std::max<Time>(options_.latency, settings_.timeout * timeoutUnit)
                                      : Time{0};
}

/// Whether the user writes and reads the control bytes of frames.
bool SimulatedAdapter::sendsWholeFrames() const
{
    return !settings_.autoFormat && protocolTraits(triedProtocol()).framing == Framing::isoTp;
}

ReplyFormat SimulatedAdapter::replyFormat() const
{
    return {.protocol = &vehicle_.traits(),
            .headers = settings_.headers,
            .blanks = settings_.blanks,
            .trailingBlank = options_.trailingBlank,
            .autoFormat = settings_.autoFormat,
            .showsPadding = options_.showsPadding,
            .lengthDigit = settings_.lengthDigit || options_.lengthDigit,
            .ownLengthByte = options_.ownLengthByte,
            .padding = options_.padding};
}

/// Whether the filter lets an answer through. The older buses have none.
bool SimulatedAdapter::isReceived(const UnitAnswer& answer) const
{
    const ProtocolTraits& protocol = vehicle_.traits();
    return protocol.framing != Framing::isoTp ||
           settings_.filter(protocol).takes(replyIdentifier(answer.from, protocol));
}

SimulatedAdapter::VehicleLines SimulatedAdapter::vehicleLines(const Request& request, Time at)
{
    const auto data = sendsWholeFrames() ? frameData(request.bytes) : MessageView(request.bytes);
    auto answers = data ? vehicle_.answers(header(), *data, at) : std::vector<UnitAnswer>{};
    std::erase_if(answers, [this](const UnitAnswer& answer) { return !isReceived(answer); });
    if (request.expectedLines > 0)
        limitMessages(answers, request.expectedLines);
    const ReplyFormat format = replyFormat();
    VehicleLines result;
    LinesByUnit units;
    for (const UnitAnswer& answer : answers) {
        for (const Message& message : answer.waits)
            std::ranges::move(replyLines(answer.from, message, format), std::back_inserter(result.waits));
        auto& lines = units.emplace_back();
        for (const Message& message : answer.messages)
            std::ranges::move(replyLines(answer.from, message, format), std::back_inserter(lines));
    }
    result.lines = inOneList(std::move(units), options_.interleavesUnits);
    applyFaults(result.lines);
    return result;
}

std::string SimulatedAdapter::joined(const std::vector<std::string>& lines) const
{
    std::string text;
    for (const std::string& line : lines) {
        text += text.empty() ? "" : lineEnd();
        text += line;
    }
    return text;
}

void SimulatedAdapter::applyFaults(std::vector<std::string>& lines)
{
    lineFaults_.apply(lines, vehicle_.traits().framing);
    constexpr std::size_t garbledDigit = 6; // of the first byte behind "41 01 "
    const auto planned = options_.faults.find(requests_);
    if (planned != options_.faults.end()) {
        const auto& [place, text] = planned->second;
        if (place == ReplyFault::Place::insteadOfData)
            lines.assign(1, text);
        else
            std::ranges::for_each(lines, [&text = text](std::string& line) { line += text; });
        if (text.starts_with("LV RESET"))
            settings_.restoreDefaults();
    } else if (!lines.empty() && options_.garbleEvery > 0 && ++dataReplies_ % options_.garbleEvery == 0) {
        std::string& line = lines.front();
        line[line.size() > garbledDigit ? garbledDigit : 0] = 'G';
    }
}

void SimulatedAdapter::reply(std::string_view text, Time at, Time waitBeforePrompt)
{
    std::string line(options_.leadingLineEnd ? lineEnd() : "");
    line += text;
    line += lineEnd();
    write(line, at);
    if (options_.promptsUntilSilence == prompts_) {
        silent_ = true;
        return;
    }
    line = options_.singleLineEnd ? "" : lineEnd();
    line += '>';
    line += options_.afterPrompt;
    write(line, at + options_.promptDelay + waitBeforePrompt);
    ++prompts_;
    vanished_ = options_.repliesUntilDisconnect == prompts_;
}

void SimulatedAdapter::write(std::string_view text, Time at)
{
    output_.write(std::exchange(options_.rubbish, {}), at);
    if (!options_.nulBytes) {
        output_.write(text, at);
        return;
    }
    for (const char byte : text) {
        output_.write({&byte, 1}, at);
        if (byte == '\r')
            output_.write({"\0", 1}, at);
    }
}

} // namespace zint
