#include "commands/commandParser.h"
#include "documents.h"
#include "shared/programInfo.h"

#include <CLI/CLI.hpp>

namespace zint {
namespace {

/// A text as roff takes it: blanks, dashes and backslashes as they are, no line that looks like a request.
std::string roff(const std::string& text)
{
    std::string escaped;
    for (const char c : text)
        escaped += c == '\\' ? "\\e" : c == '-' ? "\\-" : c == '~' ? "\\(ti" : std::string(1, c);
    return escaped.starts_with('.') || escaped.starts_with('\'') ? "\\&" + escaped : escaped;
}

std::string section(const char* name) { return std::string(".SH ") + name + "\n"; }

/// A term and what it means.
std::string entry(const std::string& term, const std::string& meaning)
{
    return ".TP\n.B " + roff(term) + "\n" + roff(meaning) + "\n";
}

std::string optionText(const CLI::Option& option)
{
    const bool hasValue = option.get_items_expected_max() > 0 && !option.get_positional();
    const std::string name = option.get_name(option.get_positional(), !option.get_positional());
    return entry(name + (hasValue ? " " + option.get_type_name() : ""), option.get_description());
}

/// The options in the order of their description, without those of every command.
std::string optionsOf(const CLI::App& command)
{
    std::string text;
    for (const CLI::Option* option : command.get_options()) {
        if (option != command.get_help_ptr() || command.get_parent() == nullptr)
            text += optionText(*option);
    }
    return text;
}

std::string commandsText(const CLI::App& program)
{
    std::string text;
    for (const CLI::App* command : allCommands(program))
        text += ".SS " + roff(usageOf(*command)) + "\n" + roff(command->get_description()) + "\n" +
                optionsOf(*command);
    return text;
}

std::string examples()
{
    return entry("zint-obd codes --port /dev/ttyUSB0 --speed 38400",
                 "The report of the vehicle behind a device.") +
           entry("zint-obd report --html REPORT.html", "All that the vehicle tells, also as a page.") +
           entry("zint-obd poll DESIGN.obc --seconds 60 --export RUN.txt",
                 "Polls for a minute and writes a table for spreadsheets.") +
           entry("zint-obd plot RUN.log RUN.pdf --events 1,3", "Draws two events of a saved run.") +
           entry("printf '0902\\n03\\n' | zint-obd terminal", "Sends commands from a script.") +
           entry("zint-obd scan --mode 1-9 --show valid", "Prints the valid replies of the modes 1 to 9.") +
           entry("zint-obd dtc lookup P0301 U0123", "Tells what codes mean.") +
           entry("zint-obd DESIGN.obc", "The polling designer with that design.") +
           entry("zint-obd --simulate", "The windows with a simulated vehicle on com1.");
}

} // namespace

std::string manPage(const CLI::App& program)
{
    return ".TH ZINT\\-OBD 1 \"\" \"Zint " + programInfo().version() + "\" \"User Commands\"\n" +
           section("NAME") + "zint\\-obd \\- OBD\\-II diagnostics with ELM327 adapters\n" +
           section("SYNOPSIS") + ".B zint\\-obd\n[\\fICOMMAND\\fR | \\fIDESIGN.obc\\fR] [\\fIOPTIONS\\fR]\n" +
           section("DESCRIPTION") + roff(program.get_description()) + "\n" + section("OPTIONS") +
           optionsOf(program) +
           ".PP\nThe options of the toolkit, \\-platform, \\-style and others, go with the windows.\n" +
           section("COMMANDS") + commandsText(program) + section("EXIT STATUS") +
           entry("0", "All went well.") + entry("1", "Something failed; standard error tells what.") +
           entry("2", "The command line is wrong.") + entry("3", "What report --fail-on names is so.") +
           section("FILES") + entry("~/.config/Zint/Zint.conf", "The settings.") +
           entry("~/.local/share/Zint", "Unsaved designs and runs; reports of vehicles, by VIN and date.") +
           entry("dtc.mdb", "The database of code descriptions, in the working folder unless the settings "
                            "name another.") +
           section("EXAMPLES") + examples();
}

} // namespace zint
