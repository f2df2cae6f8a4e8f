#include "sim/simulationArguments.h"

#include "sim/vehicle.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstddef>
#include <vector>

namespace zint {
namespace {

/// A whole number within limits that keep every product of times and lengths in range.
int number(std::string_view text, int least = 0)
{
    constexpr int most = 10'000'000;
    int value = -1;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc{} || stop != end || value < least || value > most) {
        throw ArgumentError("\"" + std::string(text) + "\" is no number from " + std::to_string(least) +
                            " to " + std::to_string(most));
    }
    return value;
}

VehicleProtocol protocol(std::string_view text)
{
    if (text == "iso9141")
        return VehicleProtocol::iso9141;
    if (text == "can")
        return VehicleProtocol::can;
    throw ArgumentError("\"" + std::string(text) + R"(" is neither "iso9141" nor "can")");
}

/// Codes separated by commas, or "none".
std::vector<std::string> codes(std::string_view text)
{
    constexpr std::size_t most = 127; // what a vehicle can report
    std::vector<std::string> list;
    if (text == "none")
        return list;
    for (bool more = true; more;) {
        const auto comma = text.find(',');
        const std::string code(text.substr(0, comma));
        if (!troubleCodeBytes(code))
            throw ArgumentError("\"" + code + "\" is no trouble code such as P0133");
        list.push_back(code);
        more = comma != std::string_view::npos;
        text.remove_prefix(more ? comma + 1 : 0);
    }
    if (list.size() > most)
        throw ArgumentError("A vehicle stores " + std::to_string(most) + " codes at most");
    return list;
}

/// The byte that an escape sequence stands for; the text continues behind it.
char unescape(std::string_view& text)
{
    constexpr std::string_view letters = "rn0\\";
    constexpr std::string_view bytes{"\r\n\0\\", 4};
    if (const auto position = text.empty() ? std::string_view::npos : letters.find(text[0]);
        position != std::string_view::npos) {
        text.remove_prefix(1);
        return bytes[position];
    }
    unsigned value = 0;
    if (text.size() < 3 || text[0] != 'x' ||
        std::from_chars(&text[1], &text[1] + 2, value, 16).ptr != &text[1] + 2)
        throw ArgumentError("\"\\" + std::string(text) + R"(" is none of \r, \n, \0, \xHH and \\)");
    text.remove_prefix(3);
    return static_cast<char>(value);
}

std::string unescaped(std::string_view text)
{
    std::string bytes;
    while (!text.empty()) {
        const char first = text.front();
        text.remove_prefix(1);
        bytes += first == '\\' ? unescape(text) : first;
    }
    return bytes;
}

/// "<" begins the texts that adapters put behind data.
void addFault(SimulationOptions& options, std::string_view value)
{
    const auto colon = value.find(':');
    if (colon == std::string_view::npos || colon + 1 == value.size())
        throw ArgumentError("\"" + std::string(value) + "\" has not the form N:TEXT");
    const std::string_view text = value.substr(colon + 1);
    const auto place =
        text.starts_with('<') ? ReplyFault::Place::behindData : ReplyFault::Place::insteadOfData;
    options.adapter.faults[number(value.substr(0, colon), 1)] = {.place = place, .text = std::string(text)};
}

using Adapter = AdapterOptions;

template <bool Adapter::*member, bool value = true>
void flag(SimulationOptions& options, std::string_view)
{
    options.adapter.*member = value;
}

template <auto member, int least = 0>
void count(SimulationOptions& options, std::string_view value)
{
    options.adapter.*member = number(value, least);
}

template <Adapter::Time Adapter::*member>
void time(SimulationOptions& options, std::string_view value)
{
    options.adapter.*member = std::chrono::milliseconds(number(value));
}

template <std::string Adapter::*member>
void text(SimulationOptions& options, std::string_view value)
{
    options.adapter.*member = unescaped(value);
}

constexpr auto arguments = std::to_array<SimulationArgument>({
    {"protocol", "NAME", "of the vehicle: iso9141 (the default) or can",
     [](SimulationOptions& options, std::string_view value) { options.vehicle.protocol = protocol(value); }},
    {"ignition-off", "", "no vehicle answers",
     [](SimulationOptions& options, std::string_view) { options.vehicle.ignitionOn = false; }},
    {"codes", "LIST", "stored trouble codes, such as P0133,U0123, or none",
     [](SimulationOptions& options, std::string_view value) { options.vehicle.storedCodes = codes(value); }},
    {"pending", "LIST", "pending trouble codes, or none",
     [](SimulationOptions& options, std::string_view value) { options.vehicle.pendingCodes = codes(value); }},
    {"latency", "MS", "from a request to its answer; 0: nothing takes time (default 50)",
     time<&Adapter::latency>},
    {"line-speed", "BPS", "bits per second of the line; 0: takes no time (the default)",
     count<&Adapter::bitsPerSecond>},
    {"reset-time", "MS", "that a reset takes (default 800)", time<&Adapter::resetDuration>},
    {"late-defaults", "MS", "until ATD is answered", time<&Adapter::defaultsDelay>},
    {"keep-unread", "", "what comes while the port is closed waits there, as behind a bridge",
     flag<&Adapter::keepsUnread>},
    {"no-announcement", "", R"(no "BUS INIT: ...OK" or "SEARCHING..." before the first data)",
     flag<&Adapter::announcesConnection, false>},
    {"line-feeds", "", "lines end in CR LF after power-up", flag<&Adapter::lineFeeds>},
    {"leading-line-end", "", "replies start with a line end", flag<&Adapter::leadingLineEnd>},
    {"single-line-end", "", "no empty line before the prompt", flag<&Adapter::singleLineEnd>},
    {"no-trailing-blank", "", "no blank behind the last byte of a line",
     flag<&Adapter::trailingBlank, false>},
    {"after-prompt", "TEXT", R"(sent behind each prompt, such as "\r\n")", text<&Adapter::afterPrompt>},
    {"greeting-prompt", "", "a prompt in front of the greeting after a reset, too",
     flag<&Adapter::greetingPrompt>},
    {"nul-bytes", "", "a byte 00 behind each carriage return", flag<&Adapter::nulBytes>},
    {"late-prompt", "MS", "from the end of a reply to its prompt", time<&Adapter::promptDelay>},
    {"rubbish", "TEXT", R"(sent before everything else, such as "\0\xFC")", text<&Adapter::rubbish>},
    {"pieces", "N", "output comes in pieces of N characters", count<&Adapter::pieceLength>},
    {"piece-gap", "MS", "between two pieces", time<&Adapter::pieceGap>},
    {"no-reset-answer", "", "no answer to ATZ", flag<&Adapter::answersReset, false>},
    {"garble-every", "N", "a wrong digit in every N-th data reply", count<&Adapter::garbleEvery, 1>},
    {"error", "N:TEXT", "TEXT for the data of the N-th request; behind it if TEXT begins with <", addFault},
    {"silent-after", "N", "no prompt and nothing more after N replies", count<&Adapter::promptsUntilSilence>},
    {"disconnect-after", "N", "the device vanishes after N replies",
     count<&Adapter::repliesUntilDisconnect, 1>},
});

} // namespace

std::span<const SimulationArgument> simulationArguments() { return arguments; }

void applySimulationArgument(SimulationOptions& options, std::string_view name, std::string_view value)
{
    const auto* const argument = std::ranges::find(arguments, name, &SimulationArgument::name);
    if (argument == arguments.end())
        throw ArgumentError("There is no option \"--" + std::string(name) + "\"");
    argument->apply(options, value);
}

std::string argumentHelp(std::string_view name, std::string_view valueName, std::string_view help)
{
    constexpr std::size_t helpColumn = 28;
    std::string line = "  --";
    line += name;
    line += valueName.empty() ? "" : " ";
    line += valueName;
    line.resize(std::max(helpColumn, line.size() + 1), ' ');
    line += help;
    return line += '\n';
}

} // namespace zint
