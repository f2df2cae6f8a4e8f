#include "commands/commandLine.h"

#include "commands/codesCommand.h"
#include "commands/commandParser.h"
#include "commands/commandSession.h"
#include "commands/debugInfo.h"
#include "commands/doctorCommand.h"
#include "commands/dtcCommand.h"
#include "commands/exportCommand.h"
#include "commands/helpText.h"
#include "commands/options.h"
#include "commands/parametersCommand.h"
#include "commands/plotCommand.h"
#include "commands/pollCommand.h"
#include "commands/reportCommand.h"
#include "commands/scanCommand.h"
#include "commands/terminalCommand.h"
#include "commands/usageError.h"
#include "shared/programInfo.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>

namespace zint {
namespace {

constexpr const char* helpFlag = "--help";
constexpr const char* allHelpFlag = "--help-all";
constexpr const char* versionFlag = "--version";
constexpr const char* debugInfoFlag = "--debug-info";
constexpr const char* plotName = "plot";

/// What is done without windows and without a command.
constexpr std::array endingFlags{helpFlag, allHelpFlag, versionFlag, debugInfoFlag};

constexpr const char* footer = "Ctrl-C ends a poll run or a scan properly: files and summary are written.\n"
                               "Exit status: 0 when all went well, 1 when something failed (standard error\n"
                               "tells what), 2 for a wrong command line.";

int tellVersion() { return printOut(programInfo().productName + " " + programInfo().version() + "\n"); }

} // namespace

CommandLine::CommandLine()
    : program_(std::make_unique<CLI::App>("OBD-II diagnostics with ELM327 adapters. Without a command, the "
                                          "launcher window opens.",
                                          "zint-obd"))
{
    program_->allow_windows_style_options(false); // a path may begin with a slash
    program_->formatter(std::make_shared<HelpText>());
    program_->footer(footer);
    program_->set_help_flag("-h,--help", "Print this help, with a command its own, and end.");
    program_->add_option_function<std::string>(
        "DESIGN.obc", [this](const std::string& path) { start.designPath = wholePath(path); },
        "The design that the polling designer opens, in place of a command.");
    addConnection(*program_, start.connection);
    addCommands();
    addDtcCommands();
    addParametersCommands();
    program_->add_flag_callback(
        debugInfoFlag, [this] { run = [this] { return printOut(debugInfo(start.connection)); }; },
        "Print what a report of a fault needs: version, build, system, files and ports.");
    program_->set_help_all_flag(allHelpFlag, "Print the help of all commands and end.");
    program_->set_version_flag("-v,--version", "", "Print the version and end.");
}

CommandLine::~CommandLine() = default;

template <typename Options>
void CommandLine::add(CLI::App& parent, const char* name, const char* description,
                      int (*runCommand)(const Options&))
{
    const auto options = std::make_shared<Options>();
    CLI::App& command = *parent.add_subcommand(name, description)->group("Commands");
    options->describe(command);
    command.final_callback([this, options, runCommand] {
        if constexpr (requires { options->connection; })
            requireWhole(options->connection);
        if constexpr (requires { options->check(); })
            options->check();
        run = [options, runCommand] { return telling([&] { return runCommand(*options); }); };
    });
}

void CommandLine::addCommands()
{
    add(*program_, "codes", "Print the MIL state, the stored codes and the readiness tests.",
        runCodesCommand);
    add(*program_, "report", "Read all that the control units tell, print it as text or JSON.",
        runReportCommand);
    add(*program_, "doctor", "Find out why the connection does not work, or how well it does.",
        runDoctorCommand);
    add(*program_, "poll", "Poll a design's events, print a summary, write the files asked for.",
        runPollCommand);
    add(*program_, "export", "Turn a saved data log into a table for spreadsheets.", runExportCommand);
    add(*program_, plotName, "Draw a saved data log as a picture or a PDF document.", runPlotCommand);
    add(*program_, "terminal", "Send each line of standard input to the adapter, print what it answers.",
        runTerminalCommand);
    add(*program_, "scan", "Ask for a range of modes and PIDs, print what is answered.", runScanCommand);
}

void CommandLine::addDtcCommands()
{
    CLI::App& dtc = *program_->add_subcommand("dtc", "The database of code descriptions.")->group("Commands");
    add(dtc, "setup", "Make the database of code descriptions from those that come with the program.",
        runDtcSetup);
    add(dtc, "lookup", "Print the descriptions and notes of codes.", runDtcLookup);
    add(dtc, "import", "Add the descriptions in a text file to the database.", runDtcImport);
    add(dtc, "export", "Write all descriptions into a text file; - is standard output.", runDtcExport);
}

void CommandLine::addParametersCommands()
{
    CLI::App& parameters =
        *program_->add_subcommand("parameters", "Parameters of your own, and of the standard.")
             ->group("Commands");
    add(parameters, "list", "Print your own parameters, with their numbers and formulas.", runParametersList);
    add(parameters, "search", "Print those, and the standard's, that have all of some words.",
        runParametersSearch);
    add(parameters, "import", "Add the parameters of a CSV file, as phone programs exchange it.",
        runParametersImport);
    add(parameters, "export", "Write all of them into such a file; - is standard output.",
        runParametersExport);
    add(parameters, "try", "Print what a reply comes to, by a parameter or a formula.", runParametersTry);
    add(parameters, "add", "Add a parameter.", runParametersAdd);
    add(parameters, "remove", "Remove parameters.", runParametersRemove);
}

bool CommandLine::mayWantWindows(const std::vector<std::string>& arguments) const
{
    try {
        const SortedArguments sorted = sortArguments(*program_, arguments);
        return commandOf(*program_, sorted.words).get_parent() == nullptr &&
               std::ranges::none_of(endingFlags, [&](const char* flag) { return sorted.has(flag); });
    } catch (const UsageError&) {
        return true;
    }
}

bool CommandLine::draws(const std::vector<std::string>& arguments) const
{
    try {
        return commandOf(*program_, sortArguments(*program_, arguments).words).get_name() == plotName;
    } catch (const UsageError&) {
        return false;
    }
}

void CommandLine::parse(const std::vector<std::string>& arguments)
{
    const SortedArguments sorted = sortArguments(*program_, arguments);
    const CLI::App& command = commandOf(*program_, sorted.words);
    help = nameOf(command) + " --help";
    if (sorted.has(allHelpFlag))
        run = [text = helpOfAll(*program_)] { return printOut(text); };
    else if (sorted.has(helpFlag))
        run = [text = helpOf(command)] { return printOut(text); };
    else if (sorted.has(versionFlag))
        run = tellVersion;
    else
        zint::parse(*program_, sorted);
}

} // namespace zint
