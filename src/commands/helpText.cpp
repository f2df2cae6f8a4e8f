#include "commands/helpText.h"

#include "commands/commandParser.h"

#include <CLI/CLI.hpp>
#include <cstddef>
#include <sstream>
#include <string_view>

namespace zint {
namespace {

constexpr std::size_t nameWidth = 22;
constexpr std::size_t textWidth = 78;

/// Breaks a text into lines that fit behind the names.
std::string wrapped(std::string_view text)
{
    std::string lines;
    constexpr std::size_t width = textWidth - nameWidth;
    while (text.size() > width) {
        const std::size_t end = text.rfind(' ', width);
        lines += std::string(text.substr(0, end)) + "\n";
        text.remove_prefix(end + 1);
    }
    return lines.append(text);
}

} // namespace

HelpText::HelpText()
{
    column_width(nameWidth);
    label("Positionals", "Words");
}

std::string HelpText::make_usage(const CLI::App* app, std::string /*name*/) const
{
    const std::string words = allCommands(*app).empty() ? usageOf(*app) : nameOf(*app) + " [COMMAND]";
    return "\nUsage: " + words + " [OPTIONS]\n";
}

std::string HelpText::make_subcommand(const CLI::App* sub) const
{
    std::stringstream lines;
    for (const CLI::App* command : allCommands(*sub))
        lines << make_subcommand(command);
    const std::string usage = usageOf(*sub);
    if (lines.view().empty())
        CLI::detail::format_help(lines, usage.substr(usage.find(' ') + 1), wrapped(sub->get_description()),
                                 get_column_width());
    return lines.str();
}

std::string HelpText::make_option_opts(const CLI::Option* option) const
{
    return option->get_positional() || option->get_type_name().empty() ||
                   option->get_items_expected_max() == 0
               ? ""
               : " " + option->get_type_name();
}

std::string HelpText::make_option_desc(const CLI::Option* option) const
{
    return wrapped(option->get_description());
}

std::string helpOf(const CLI::App& command)
{
    return CLI::detail::find_and_replace(command.help(), "\n\n\n", "\n\n"); // CLI11's between groups
}

std::string helpOfAll(const CLI::App& program)
{
    std::string text = helpOf(program);
    for (const CLI::App* command : allCommands(program))
        text += "\n\n" + helpOf(*command);
    return text;
}

} // namespace zint
