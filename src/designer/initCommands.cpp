#include "designer/initCommands.h"

#include "catalogue/designFile.h"
#include "shared/module1.h"

#include <algorithm>
#include <utility>

namespace zint {
namespace {

constexpr std::string_view interfering = "ZDELRPM"; // third letters of commands that change how replies look

bool isPrintable(char character) { return character >= ' ' && character <= '~'; }

} // namespace

InitCommands checkInitCommands(std::string_view answer)
{
    std::string commands = upperCase(answer);
    if (commands.empty())
        return {};
    if (!commands.starts_with("AT"))
        return {.complaint = "Error - commands must begin with AT"};
    if (commands.size() > 2 && interfering.find(commands[2]) != std::string_view::npos)
        return {.complaint = commands + " would interfere will ability to recognize poll data"};
    if (!std::ranges::all_of(commands, isPrintable))
        return {.complaint = commands + " can't be sent: adapters take plain letters, digits and signs only"};
    requireStorable(commands);
    return {.commands = std::move(commands)};
}

} // namespace zint
