#include "link/portLocation.h"

#include "shared/module1.h"

#include <algorithm>
#include <array>
#include <utility>

namespace zint {
namespace {

using Kind = PortLocation::Kind;

struct Prefix {
    std::string_view text;
    Kind kind;
    bool isTimed = false;
};
constexpr std::array prefixes = {Prefix{"tcp:", Kind::network}, Prefix{"replay:", Kind::recording},
                                 Prefix{"replay-timed:", Kind::recording, true},
                                 Prefix{"simulated:", Kind::simulated}};

bool isNumber(std::string_view text)
{
    return !text.empty() && text.size() < 10 &&
           std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

PortLocation recordingLocation(std::string_view text, bool isTimed)
{
    return {.kind = Kind::recording,
            .path = std::string(text),
            .isTimed = isTimed,
            .problem = text.empty() ? "\"replay:FILE\" needs the name of a file" : ""};
}

/// "HOST:PORT", "HOST", "[::1]:PORT".
PortLocation networkLocation(std::string_view text)
{
    constexpr int greatest = 65535;
    PortLocation location{.kind = Kind::network};
    const bool isBracketed = text.starts_with('[') && text.find(']') != std::string_view::npos;
    const auto colon = text.find(':', isBracketed ? text.find(']') : 0);
    location.path = isBracketed ? text.substr(1, text.find(']') - 1) : text.substr(0, colon);
    if (location.path.empty())
        location.problem = "\"tcp:HOST:PORT\" needs a host, such as 192.168.0.10";
    if (colon == std::string_view::npos)
        return location;
    const std::string_view port = text.substr(colon + 1);
    location.tcpPort = isNumber(port) ? std::stoi(std::string(port)) : 0;
    if (location.tcpPort < 1 || location.tcpPort > greatest)
        location.problem = "\"tcp:HOST:PORT\" needs a port from 1 to 65535, such as 35000";
    return location;
}

PortLocation deviceLocation(std::string_view text)
{
    PortLocation location{.kind = Kind::device, .path = std::string(text)};
    const auto at = text.rfind('@');
    if (at == std::string_view::npos || at == 0 || !isNumber(text.substr(at + 1)))
        return location;
    location.path = text.substr(0, at);
    location.bitsPerSecond = std::stoi(std::string(text.substr(at + 1)));
    if (*location.bitsPerSecond == 0)
        location.problem = "The speed behind \"@\" is in bits per second, such as 115200";
    return location;
}

} // namespace

std::string PortLocation::text() const
{
    switch (kind) {
    case Kind::nothing:
        return "nothing connected";
    case Kind::simulated:
        return path.empty() ? "simulated vehicle" : "simulated vehicle (" + path + ")";
    case Kind::network:
        return (path.find(':') == std::string::npos ? path : "[" + path + "]") + ":" +
               std::to_string(tcpPort);
    case Kind::recording:
        return "recording \"" + path + "\"";
    case Kind::device:
        break;
    }
    return path;
}

PortLocation portLocation(std::string_view assignment)
{
    if (assignment.empty())
        return {};
    if (assignment == PortLocation::simulatedText)
        return {.kind = Kind::simulated};
    for (const auto& [prefix, kind, isTimed] : prefixes) {
        if (upperCase(assignment.substr(0, prefix.size())) != upperCase(prefix))
            continue;
        const std::string_view rest = assignment.substr(prefix.size());
        if (kind == Kind::simulated)
            return {.kind = kind, .path = std::string(rest)};
        return kind == Kind::network ? networkLocation(rest) : recordingLocation(rest, isTimed);
    }
    return deviceLocation(assignment);
}

} // namespace zint
