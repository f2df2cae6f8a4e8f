#include "vehicle/transcript.h"

#include "link/replyBuffer.h"
#include "link/transcriptText.h"
#include "shared/utf8.h"
#include "vehicle/adapterLines.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>

namespace zint {
namespace {

constexpr char promptMark = ReplyBuffer::prompt;

/// What follows a word at the start of a text; nothing when it starts in another way.
std::optional<std::string> behind(std::string_view word, std::string_view text)
{
    return text.starts_with(word) ? std::optional(std::string(text.substr(word.size()))) : std::nullopt;
}

std::optional<BusProtocol> known(std::optional<BusProtocol> protocol)
{
    return protocol == BusProtocol::unknown ? std::nullopt : protocol;
}

/// The protocol that an exchange tells by the answer to ATDPN or ATDP.
std::optional<BusProtocol> protocolFound(const TranscriptExchange& exchange)
{
    const std::string command = compactCommand(exchange.command);
    if (command != "ATDPN" && command != "ATDP")
        return std::nullopt;
    std::string_view rest = exchange.reply;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\r'), rest.size() - 1);
        if (const auto protocol = known(protocolIn(rest.substr(0, end + 1))))
            return protocol;
        rest.remove_prefix(end + 1);
    }
    return std::nullopt;
}

/// The protocol that an exchange has set by ATSP or ATTP.
std::optional<BusProtocol> protocolSet(const TranscriptExchange& exchange)
{
    const std::string command = compactCommand(exchange.command);
    for (const std::string_view word : {"ATSP", "ATTP"}) {
        if (const auto number = behind(word, command))
            return known(protocolIn(*number));
    }
    return std::nullopt;
}

/// Exchanges under one comment that tells a protocol, or before the first one.
struct Section {
    std::optional<BusProtocol> told;
    std::vector<TranscriptExchange> exchanges;
};

/// Fills in the protocols that a source tells: each holds from its exchange on, the first one before it, too.
/// Exchanges that have a protocol keep it.
template <typename Source>
void fillIn(std::vector<TranscriptExchange*>& exchanges, const Source& source)
{
    std::optional<BusProtocol> current;
    for (const TranscriptExchange* exchange : exchanges) {
        current = source(*exchange);
        if (current)
            break;
    }
    for (TranscriptExchange* exchange : exchanges) {
        if (const auto told = source(*exchange))
            current = told;
        if (exchange->protocol == BusProtocol::unknown)
            exchange->protocol = current.value_or(BusProtocol::unknown);
    }
}

/// A protocol of the kind of bus that the lines of an exchange show, where nothing tells which one it was.
std::optional<BusProtocol> protocolShown(const TranscriptExchange& exchange)
{
    if (exchange.protocol != BusProtocol::unknown)
        return exchange.protocol;
    const auto isCanShown = readVehicleReply(exchange.command, exchange.reply, exchange.protocol).isCan;
    if (!isCanShown)
        return std::nullopt;
    return *isCanShown ? BusProtocol::can11At500 : BusProtocol::iso9141;
}

std::vector<TranscriptExchange*> pointersTo(std::vector<TranscriptExchange>& exchanges)
{
    std::vector<TranscriptExchange*> pointers;
    pointers.reserve(exchanges.size());
    for (TranscriptExchange& exchange : exchanges)
        pointers.push_back(&exchange);
    return pointers;
}

/// Takes the lines of a transcript, one after the other.
class TranscriptReader {
public:
    void take(const TranscriptLine& line)
    {
        if (line.kind == TranscriptLine::Kind::comment)
            takeComment(line.text);
        else if (line.kind == TranscriptLine::Kind::command)
            begin(line);
        else if (TranscriptExchange* exchange = last())
            exchange->reply += line.bytes;
    }

    std::vector<TranscriptExchange> finish()
    {
        std::vector<TranscriptExchange*> all;
        for (Section& section : sections_) {
            std::vector<TranscriptExchange*> exchanges = pointersTo(section.exchanges);
            fillIn(exchanges, protocolFound);
            fillIn(exchanges, [&section](const TranscriptExchange&) { return section.told; });
            all.insert(all.end(), exchanges.begin(), exchanges.end());
        }
        fillIn(all, protocolFound);
        fillIn(all, protocolSet);
        std::vector<TranscriptExchange> result;
        result.reserve(all.size());
        for (TranscriptExchange* exchange : all)
            result.push_back(std::move(*exchange));
        return result;
    }

private:
    void takeComment(std::string_view comment)
    {
        const std::string word = compactCommand(comment);
        if (word == "CLOSED" && last() != nullptr && last()->reply.empty())
            sections_.back().exchanges.pop_back(); // nobody has waited for the answer
        const auto number = behind("PROTOCOL", word);
        if (const auto protocol = number ? protocolIn(*number) : std::nullopt)
            sections_.push_back({.told = known(protocol), .exchanges = {}});
    }

    void begin(const TranscriptLine& line)
    {
        const std::string command = line.bytes.substr(0, line.bytes.find_last_not_of("\r\n") + 1);
        sections_.back().exchanges.push_back({.written = toUtf8(line.text), .command = command, .reply = {}});
    }

    TranscriptExchange* last()
    {
        auto& exchanges = sections_.back().exchanges;
        return exchanges.empty() ? nullptr : &exchanges.back();
    }

    std::vector<Section> sections_{1};
};

bool hasPrompt(const TranscriptExchange& exchange)
{
    return exchange.reply.find(promptMark) != std::string::npos;
}

/// Whether a reply tells something without its prompt: a whole message, or a text of the adapter.
bool tells(const ExchangeReading& reading)
{
    constexpr std::array silent = {ReplyError::empty, ReplyError::garbled, ReplyError::noPrompt};
    if (reading.error != ReplyError::none || reading.units.empty())
        return std::ranges::find(silent, reading.error) == silent.end();
    return std::ranges::any_of(reading.units, [](const auto& unit) { return !unit.second.isIncomplete; });
}

/// Whether a reply ends while the adapter still looks for the vehicle.
bool isBrokenOff(const TranscriptExchange& exchange, const ExchangeReading& reading)
{
    return reading.error == ReplyError::empty && adapterLines(exchange.command, exchange.reply).tellsProgress;
}

ExchangeReading readOne(const TranscriptExchange& exchange, bool arePromptsShown, const UnitReadings& units)
{
    const auto read = [&](const std::string& reply) {
        return readExchange(exchange.command, reply, exchange.protocol, units);
    };
    if (hasPrompt(exchange))
        return read(exchange.reply);
    ExchangeReading reading = read(exchange.reply + promptMark);
    if ((arePromptsShown && !tells(reading)) || isBrokenOff(exchange, reading))
        reading.error = ReplyError::noPrompt;
    return reading;
}

} // namespace

std::vector<TranscriptExchange> readTranscript(std::string_view text)
{
    TranscriptReader reader;
    readTranscriptLines(text, [&reader](const TranscriptLine& line) { reader.take(line); });
    return reader.finish();
}

std::vector<ExchangeReading> replay(std::string_view transcript)
{
    std::vector<TranscriptExchange> exchanges = readTranscript(transcript);
    std::vector<TranscriptExchange*> all = pointersTo(exchanges);
    fillIn(all, protocolShown);
    const bool arePromptsShown = std::ranges::any_of(exchanges, hasPrompt);
    UnitReadings units;
    std::vector<ExchangeReading> readings;
    for (const TranscriptExchange& exchange : exchanges) {
        ExchangeReading& reading = readings.emplace_back(readOne(exchange, arePromptsShown, units));
        reading.command = exchange.written;
        for (const auto& [name, told] : reading.units)
            merge(readingOf(units, name), told);
    }
    return readings;
}

} // namespace zint
