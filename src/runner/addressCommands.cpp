#include "runner/addressCommands.h"

#include "runner/openingCommands.h"
#include "shared/module1.h"

#include <algorithm>
#include <array>
#include <utility>

namespace zint {
namespace {

constexpr const char* noFilter = "ATCRA";
constexpr std::size_t longHeader = 8;            // digits, of 29 bits
constexpr std::string_view usualPriority = "18"; // the first two of those

/// By protocol: how adapters ask all units, their numbers "ATDPN" tells. Lengths are put in by the adapter.
constexpr std::array usualHeaders = {
    std::pair{BusProtocol::j1850Pwm, "616AF1"},    std::pair{BusProtocol::j1850Vpw, "686AF1"},
    std::pair{BusProtocol::iso9141, "686AF1"},     std::pair{BusProtocol::kwpSlowInit, "C233F1"},
    std::pair{BusProtocol::kwpFastInit, "C233F1"}, std::pair{BusProtocol::can11At500, "7DF"},
    std::pair{BusProtocol::can29At500, "DB33F1"},  std::pair{BusProtocol::can11At250, "7DF"},
    std::pair{BusProtocol::can29At250, "DB33F1"},
};

/// What stands behind a command among others; empty where it is not among them.
std::string argumentOf(const std::deque<std::string>& commands, std::string_view name)
{
    std::string found;
    for (std::string command : commands) {
        std::erase(command, ' ');
        if (upperCase(command).starts_with(name))
            found = upperCase(command).substr(name.size());
    }
    return found;
}

void appendHeader(std::deque<std::string>& commands, std::string_view from, std::string_view to)
{
    if (to.size() != longHeader) {
        commands.push_back("ATSH " + std::string(to));
        return;
    }
    const std::string_view priority = to.substr(0, 2);
    if (from.size() != longHeader || from.substr(0, 2) != priority)
        commands.push_back("ATCP " + std::string(priority));
    commands.push_back("ATSH " + std::string(to.substr(2)));
}

} // namespace

BusAddress usualAddress(const Design& design, BusProtocol protocol)
{
    const std::deque<std::string> commands = commandsIn(design.extraCommands);
    BusAddress usual{argumentOf(commands, "ATSH"), argumentOf(commands, noFilter)};
    const auto* const row =
        std::ranges::find(usualHeaders, protocol, &std::pair<BusProtocol, const char*>::first);
    if (usual.header.empty() && row != usualHeaders.end())
        usual.header = row->second;
    const bool isLong = protocol == BusProtocol::can29At500 || protocol == BusProtocol::can29At250;
    if (isLong && usual.header.size() + usualPriority.size() == longHeader) {
        const std::string priority = argumentOf(commands, "ATCP");
        usual.header.insert(0, priority.empty() ? usualPriority : priority);
    }
    return usual;
}

std::deque<std::string> addressCommands(const BusAddress& from, const BusAddress& to, const BusAddress& usual,
                                        const Design& design)
{
    const auto orUsual = [](const std::string& own, const std::string& other) {
        return own.empty() ? other : own;
    };
    const auto headerOf = [&](const BusAddress& address) {
        std::string header = orUsual(address.header, usual.header);
        if (usual.header.size() == longHeader && header.size() + usualPriority.size() == longHeader)
            header.insert(0, usual.header.substr(0, usualPriority.size()));
        return header;
    };
    const std::string header = headerOf(to);
    std::deque<std::string> commands;
    if (from == to)
        return commands;
    if (header.empty()) { // nobody knows how to ask for it alone
        commands = commandsIn(openingCommands(design));
        commands.insert(commands.begin(), {"ATD", "ATE0"});
        if (!to.filter.empty())
            commands.push_back(std::string(noFilter) + " " + to.filter);
        return commands;
    }
    if (const std::string before = headerOf(from); before != header)
        appendHeader(commands, before, header);
    const std::string filter = orUsual(to.filter, usual.filter);
    if (orUsual(from.filter, usual.filter) != filter)
        commands.push_back(filter.empty() ? noFilter : std::string(noFilter) + " " + filter);
    return commands;
}

std::string olderCommand(std::string_view command) { return command == noFilter ? "ATAR" : ""; }

} // namespace zint
