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

using std::chrono::milliseconds;

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

void addError(SimulationOptions& options, std::string_view value)
{
    const auto colon = value.find(':');
    if (colon == std::string_view::npos || colon + 1 == value.size())
        throw ArgumentError("\"" + std::string(value) + "\" has not the form N:TEXT");
    options.adapter.errors[number(value.substr(0, colon), 1)] = value.substr(colon + 1);
}

using Options = SimulationOptions;
using Value = std::string_view;

constexpr std::array arguments{
    SimulationArgument{"protocol", "NAME", "of the vehicle: iso9141 (the default) or can",
                       [](Options& o, Value v) { o.vehicle.protocol = protocol(v); }},
    SimulationArgument{"ignition-off", "", "no vehicle answers",
                       [](Options& o, Value) { o.vehicle.ignitionOn = false; }},
    SimulationArgument{"codes", "LIST", "stored trouble codes, such as P0133,U0123, or none",
                       [](Options& o, Value v) { o.vehicle.storedCodes = codes(v); }},
    SimulationArgument{"pending", "LIST", "pending trouble codes, or none",
                       [](Options& o, Value v) { o.vehicle.pendingCodes = codes(v); }},
    SimulationArgument{"latency", "MS", "from a request to its answer; 0: nothing takes time (default 50)",
                       [](Options& o, Value v) { o.adapter.latency = milliseconds(number(v)); }},
    SimulationArgument{"line-speed", "BPS", "bits per second of the line; 0: takes no time (the default)",
                       [](Options& o, Value v) { o.adapter.bitsPerSecond = number(v); }},
    SimulationArgument{"reset-time", "MS", "that a reset takes (default 800)",
                       [](Options& o, Value v) { o.adapter.resetDuration = milliseconds(number(v)); }},
    SimulationArgument{"late-defaults", "MS", "until ATD is answered",
                       [](Options& o, Value v) { o.adapter.defaultsDelay = milliseconds(number(v)); }},
    SimulationArgument{"keep-unread", "",
                       "what comes while the port is closed waits there, as behind a bridge",
                       [](Options& o, Value) { o.adapter.keepsUnread = true; }},
    SimulationArgument{"no-announcement", "",
                       R"(no "BUS INIT: ...OK" or "SEARCHING..." before the first data)",
                       [](Options& o, Value) { o.adapter.announcesConnection = false; }},
    SimulationArgument{"line-feeds", "", "lines end in CR LF after power-up",
                       [](Options& o, Value) { o.adapter.lineFeeds = true; }},
    SimulationArgument{"leading-line-end", "", "replies start with a line end",
                       [](Options& o, Value) { o.adapter.leadingLineEnd = true; }},
    SimulationArgument{"single-line-end", "", "no empty line before the prompt",
                       [](Options& o, Value) { o.adapter.singleLineEnd = true; }},
    SimulationArgument{"no-trailing-blank", "", "no blank behind the last byte of a line",
                       [](Options& o, Value) { o.adapter.trailingBlank = false; }},
    SimulationArgument{"after-prompt", "TEXT", R"(sent behind each prompt, such as "\r\n")",
                       [](Options& o, Value v) { o.adapter.afterPrompt = unescaped(v); }},
    SimulationArgument{"greeting-prompt", "", "a prompt in front of the greeting after a reset, too",
                       [](Options& o, Value) { o.adapter.greetingPrompt = true; }},
    SimulationArgument{"nul-bytes", "", "a byte 00 behind each carriage return",
                       [](Options& o, Value) { o.adapter.nulBytes = true; }},
    SimulationArgument{"late-prompt", "MS", "from the end of a reply to its prompt",
                       [](Options& o, Value v) { o.adapter.promptDelay = milliseconds(number(v)); }},
    SimulationArgument{"rubbish", "TEXT", R"(sent before everything else, such as "\0\xFC")",
                       [](Options& o, Value v) { o.adapter.rubbish = unescaped(v); }},
    SimulationArgument{
        "pieces", "N", "output comes in pieces of N characters",
        [](Options& o, Value v) { o.adapter.pieceLength = static_cast<std::size_t>(number(v)); }},
    SimulationArgument{"piece-gap", "MS", "between two pieces",
                       [](Options& o, Value v) { o.adapter.pieceGap = milliseconds(number(v)); }},
    SimulationArgument{"no-reset-answer", "", "no answer to ATZ",
                       [](Options& o, Value) { o.adapter.answersReset = false; }},
    SimulationArgument{"garble-every", "N", "a wrong digit in every N-th data reply",
                       [](Options& o, Value v) { o.adapter.garbleEvery = number(v, 1); }},
    SimulationArgument{"error", "N:TEXT",
                       "TEXT for the data of the N-th request; behind it if TEXT begins with <", addError},
    SimulationArgument{"silent-after", "N", "no prompt and nothing more after N replies",
                       [](Options& o, Value v) { o.adapter.promptsUntilSilence = number(v); }},
    SimulationArgument{"disconnect-after", "N", "the device vanishes after N replies",
                       [](Options& o, Value v) { o.adapter.repliesUntilDisconnect = number(v, 1); }},
};

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
