#include "sim/simulationArguments.h"

#include "shared/module1.h"
#include "sim/codeMessages.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstddef>
#include <utility>
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
    if (const auto known = vehicleProtocol(text))
        return *known;
    throw ArgumentError("\"" + std::string(text) + "\" is no protocol that a vehicle speaks here");
}

/// Two hexadecimal digits.
std::uint8_t byteValue(std::string_view text)
{
    unsigned value = 0;
    const char* const end = text.data() + text.size();
    if (text.size() != 2 || std::from_chars(text.data(), end, value, 16).ptr != end)
        throw ArgumentError("\"" + std::string(text) + "\" is no byte such as AA");
    return static_cast<std::uint8_t>(value);
}

/// What stands between commas, which is at least one word.
std::vector<std::string> words(std::string_view text)
{
    std::vector<std::string> list;
    for (bool more = true; more;) {
        const auto comma = text.find(',');
        list.emplace_back(text.substr(0, comma));
        more = comma != std::string_view::npos;
        text.remove_prefix(more ? comma + 1 : 0);
    }
    return list;
}

/// Codes separated by commas, or "none".
std::vector<std::string> codes(std::string_view text)
{
    constexpr std::size_t most = 127; // what a vehicle can report
    if (text == "none")
        return {};
    std::vector<std::string> list = words(text);
    for (const std::string& code : list) {
        if (!troubleCodeBytes(code))
            throw ArgumentError("\"" + code + "\" is no trouble code such as P0133");
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

template <std::vector<std::string> VehicleOptions::*member>
void codeList(SimulationOptions& options, std::string_view value)
{
    options.vehicle.*member = codes(value);
}

template <SeveralPids VehicleOptions::*member>
void combinedRequests(SimulationOptions& options, std::string_view value)
{
    using Way = std::pair<std::string_view, SeveralPids>;
    static constexpr std::array<Way, 5> ways{{{"taken", SeveralPids::taken},
                                              {"sorted", SeveralPids::sorted},
                                              {"silent", SeveralPids::silent},
                                              {"refused", SeveralPids::refused},
                                              {"first", SeveralPids::firstOnly}}};
    const auto* const way = std::ranges::find(ways, value, &Way::first);
    if (way == ways.end())
        throw ArgumentError("\"" + std::string(value) +
                            "\" is none of taken, sorted, first, silent and refused");
    options.vehicle.*member = way->second;
}

template <auto VehicleOptions::*member, auto value>
void vehicleFlag(SimulationOptions& options, std::string_view)
{
    options.vehicle.*member = value;
}

void refuse(SimulationOptions& options, std::string_view value)
{
    options.adapter.refusedCommands = words(value);
    for (std::string& command : options.adapter.refusedCommands)
        command = upperCase(command);
}

void setUnits(SimulationOptions& options, std::string_view value)
{
    if (value != "1" && value != "2")
        throw ArgumentError("A vehicle has 1 or 2 control units");
    options.vehicle.units = number(value);
}

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
    {"protocol", "NAME",
     "pwm, vpw, iso9141 (the default), kwp-slow, kwp-fast, can, can29, can250 or can29-250",
     [](SimulationOptions& options, std::string_view value) { options.vehicle.protocol = protocol(value); }},
    {"ignition-off", "", "no vehicle answers", vehicleFlag<&VehicleOptions::ignitionOn, false>},
    {"voltage", "TEXT", "of the supply, as the adapter tells it, such as 0.1V",
     [](SimulationOptions& options, std::string_view value) { options.vehicle.voltage = value; }},
    {"units", "N", "control units: 1 (the default), or 2, an engine that tells more and a transmission",
     setUnits},
    {"diesel", "", "an engine with compression ignition, which tells more",
     vehicleFlag<&VehicleOptions::diesel, true>},
    {"all-parameters", "", "all of the standard, values of the maker (mode 22), a body unit at 744; CAN only",
     vehicleFlag<&VehicleOptions::allParameters, true>},
    {"four-banks", "", "likewise, with four banks of cylinders and full scales and ranges of its own",
     [](SimulationOptions& options, std::string_view) {
         options.vehicle.allParameters = true;
         options.vehicle.fourBanks = true;
     }},
    {"combined", "WAY",
     "requests for several parameters: taken (the default), sorted, first, silent, refused",
     combinedRequests<&VehicleOptions::combined>},
    {"transmission-combined", "WAY", "likewise, by the second control unit",
     combinedRequests<&VehicleOptions::transmissionCombined>},
    {"moment", "MS", "the drive stands still so long after its start: each value stays as it is",
     [](SimulationOptions& options, std::string_view value) {
         options.vehicle.moment = std::chrono::milliseconds(number(value));
     }},
    {"codes", "LIST", "stored trouble codes, such as P0133,U0123, or none",
     codeList<&VehicleOptions::storedCodes>},
    {"pending", "LIST", "pending trouble codes, or none", codeList<&VehicleOptions::pendingCodes>},
    {"permanent", "LIST", "permanent trouble codes, which only CAN vehicles tell, or none",
     codeList<&VehicleOptions::permanentCodes>},
    {"transmission-codes", "LIST", "stored in the second control unit, or none",
     codeList<&VehicleOptions::transmissionCodes>},
    {"refuse-clear", "", "the vehicle refuses to clear its codes",
     vehicleFlag<&VehicleOptions::refusesClearing, true>},
    {"pending-response", "MS", R"(all but live values begins with "7F xx 78" and comes so much later)",
     [](SimulationOptions& options, std::string_view value) {
         options.vehicle.pendingResponse = std::chrono::milliseconds(number(value));
     }},
    {"foreign-answer", "N", "in front of every N-th answer, one that somebody else has asked for",
     [](SimulationOptions& options, std::string_view value) {
         options.vehicle.foreignAnswerEvery = number(value, 1);
     }},
    {"drop-out", "N", "the last control unit keeps silent at every N-th request",
     [](SimulationOptions& options, std::string_view value) {
         options.vehicle.dropOutEvery = number(value, 1);
     }},
    {"latency", "MS", "from a request to its answer; 0: nothing takes time (default 50)",
     time<&Adapter::latency>},
    {"line-speed", "BPS", "bits per second of the line; 0: takes no time (the default)",
     count<&Adapter::bitsPerSecond>},
    {"mind-speed", "", "at another speed than --line-speed both sides hear noise",
     flag<&Adapter::mindsSpeed>},
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
    {"refuse", "LIST", R"(adapter commands that are answered with "?", such as H1,S0)", refuse},
    {"longest-request", "N", "bytes of a request (default 7); a longer one is answered with \"?\"",
     count<&Adapter::longestRequest, 1>},
    {"mind-headers", "", "ATSH is refused where its digits don't fit the protocol",
     flag<&Adapter::mindsHeaderForm>},
    {"padding", "BYTE", "fills CAN frames up to eight bytes, such as AA",
     [](SimulationOptions& options, std::string_view value) { options.adapter.padding = byteValue(value); }},
    {"show-padding", "", "also behind short answers without headers", flag<&Adapter::showsPadding>},
    {"length-digit", "", "the number of bytes behind a CAN identifier, as after ATD1",
     flag<&Adapter::lengthDigit>},
    {"length-byte", "", "KWP headers tell the length in a byte of its own", flag<&Adapter::ownLengthByte>},
    {"interleave", "", "the lines of two control units come in turns", flag<&Adapter::interleavesUnits>},
    {"lose-line", "N", "one line less in every N-th reply of several lines",
     count<&Adapter::loseLineEvery, 1>},
    {"swap-lines", "N", "the last two lines the other way round in every N-th reply of several lines",
     count<&Adapter::swapLinesEvery, 1>},
    {"double-line", "N", "the last line twice in every N-th data reply", count<&Adapter::doubleLineEvery, 1>},
    {"wrong-check", "N", "a wrong last digit in every N-th data reply", count<&Adapter::wrongCheckEvery, 1>},
    {"error", "N:TEXT", "TEXT for the data of the N-th request; behind it if TEXT begins with <", addFault},
    {"silent-after", "N", "no prompt and nothing more after N replies", count<&Adapter::promptsUntilSilence>},
    {"disconnect-after", "N", "the device vanishes after N replies",
     count<&Adapter::repliesUntilDisconnect, 1>},
});

const SimulationArgument& argumentNamed(std::string_view name)
{
    const auto* const argument = std::ranges::find(arguments, name, &SimulationArgument::name);
    if (argument == arguments.end())
        throw ArgumentError("There is no option \"--" + std::string(name) + "\"");
    return *argument;
}

/// "units=2", or "diesel" for an option without a value.
void applyWord(SimulationOptions& options, std::string_view word)
{
    const auto mark = std::min(word.find('='), word.size());
    const SimulationArgument& argument = argumentNamed(word.substr(0, mark));
    try {
        if (argument.valueName.empty() != (mark == word.size()))
            throw ArgumentError(argument.valueName.empty() ? "takes no value" : "needs a value");
        argument.apply(options, word.substr(std::min(mark + 1, word.size())));
    } catch (const ArgumentError& error) {
        throw ArgumentError(std::string(word) + ": " + error.what());
    }
}

} // namespace

std::span<const SimulationArgument> simulationArguments() { return arguments; }

void applySimulationArgument(SimulationOptions& options, std::string_view name, std::string_view value)
{
    argumentNamed(name).apply(options, value);
}

SimulationOptions simulationOf(std::string_view text, SimulationOptions options, char between)
{
    while (!text.empty()) {
        const std::string_view word = text.substr(0, text.find(between));
        text.remove_prefix(std::min(word.size() + 1, text.size()));
        if (!word.empty())
            applyWord(options, word);
    }
    return options;
}

std::string argumentHelp(std::string_view name, std::string_view valueName, std::string_view help)
{
    constexpr std::size_t helpColumn = 30;
    std::string line = "  --";
    line += name;
    line += valueName.empty() ? "" : " ";
    line += valueName;
    line.resize(std::max(helpColumn, line.size() + 1), ' ');
    line += help;
    return line += '\n';
}

} // namespace zint
