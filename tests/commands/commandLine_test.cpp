#include "commands/codesCommand.h"
#include "commands/commandLine.h"
#include "commands/commandParser.h"
#include "commands/commandSession.h"
#include "commands/dtcCommand.h"
#include "commands/exportCommand.h"
#include "commands/parametersCommand.h"
#include "commands/pollCommand.h"
#include "commands/reportCommand.h"
#include "commands/scanCommand.h"
#include "commands/terminalCommand.h"
#include "commands/usageError.h"
#include "connection/connectionSetup.h"
#include "platform/text.h"
#include "support/failure.h"

#include <QDir>
#include <gtest/gtest.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <ranges>

namespace zint {
namespace {

std::vector<std::string> split(std::string_view words, char between = ' ')
{
    std::vector<std::string> all;
    for (const auto word : std::views::split(words, between))
        all.emplace_back(word.begin(), word.end());
    return all;
}

/// The options of a command whose name is the first word.
template <typename Options>
Options taken(const std::string& words)
{
    CLI::App program;
    Options options;
    options.describe(*program.add_subcommand(words.substr(0, words.find(' '))));
    parse(program, sortArguments(program, split(words)));
    return options;
}

/// Why a command line is refused.
std::string refusal(const std::string& words)
{
    return failureOf<UsageError>([&] { CommandLine().parse(split(words)); });
}

TEST(CommandLineTest, TellsCommandsFromWindows)
{
    for (const char* words :
         {"codes", "poll d.obc --port com2", "--db a.mdb dtc lookup P0301 u0123", "export a.log a.txt",
          "poll -- --odd.obc", "codes --help", "-v", "dtc export -"}) {
        CommandLine line;
        EXPECT_FALSE(line.mayWantWindows(split(words))) << words;
        line.parse(split(words));
        EXPECT_TRUE(line.run) << words;
    }
    const struct {
        const char* words;
        PortNumber port;
        const char* location;
    } rows[] = {{"--port COM8", PortNumber{8}, ""},
                {"--port=com3=/dev/rfcomm0", PortNumber{3}, "/dev/rfcomm0"},
                {"--port /dev/a=b", PortNumber{1}, "/dev/a=b"},
                {"--port com2=/dev/ttyUSB0@115200", PortNumber{2}, "/dev/ttyUSB0@115200"},
                {"--port tcp:192.168.0.10:35000", PortNumber{1}, "tcp:192.168.0.10:35000"},
                {"--speed 38400 --simulate", PortNumber{1}, "simulated"},
                {"--port codes", PortNumber{1}, "codes"}};
    for (const auto& [words, port, location] : rows) {
        CommandLine line;
        EXPECT_TRUE(line.mayWantWindows(split(words))) << words;
        line.parse(split(words));
        EXPECT_FALSE(line.run) << words;
        EXPECT_EQ(line.start.connection.portNumber, port) << words;
        EXPECT_EQ(line.start.connection.portLocation, location) << words;
        EXPECT_EQ(line.start.connection.speedPosition.has_value(), location == std::string("simulated"));
    }
    EXPECT_TRUE(CommandLine().mayWantWindows({"-style", "fusion", "--simulate"})) << "the toolkit's";
}

TEST(CommandLineTest, TakesTheOptionsOfCommands)
{
    EXPECT_EQ(taken<CodesOptions>("codes --timeout=5 --timeout 7").timeout, std::chrono::seconds(7));
    const auto poll = taken<PollOptions>("poll --export a.txt d.obc --log --quiet --loops 100000");
    EXPECT_EQ(poll.words.front() + poll.logPath + poll.exportPath, "d.obc--quieta.txt");
    EXPECT_EQ(poll.loops, 100000);
    const auto events = taken<PollOptions>("poll --events 0C,0105 level --csv - --decimals comma --combine");
    EXPECT_EQ(events.events, split("0C,0105"));
    EXPECT_EQ(events.words, split("level"));
    EXPECT_TRUE(events.printsSamples() && events.combine);
    EXPECT_EQ(taken<ExportOptions>("export a.log A.CSV --decimals comma").decimals, Decimals::comma);
    EXPECT_EQ(taken<PollOptions>("poll d.obc --seconds 86400").seconds, std::chrono::seconds(86400));
    const auto report = taken<ReportOptions>("report --json --replay a.txt");
    EXPECT_TRUE(report.json && report.replayPath == "a.txt");
    EXPECT_EQ(taken<TerminalCommandOptions>("terminal --oct").base, NumberBase::octal);
    EXPECT_EQ(taken<DtcLookupOptions>("lookup P0301 u0123").codes, split("P0301 u0123"));
    EXPECT_EQ(taken<DtcExportOptions>("export a.txt --fixed").text.fields, DtcFields::fixed);
    const auto tried = taken<ParametersTryOptions>("try 62 19 40 01 --formula=A-40 --request 221940");
    EXPECT_EQ(tried.name + "|" + tried.reply.back() + "|" + tried.parameter.formula, "62|01|A-40");
    EXPECT_EQ(taken<ParametersAddOptions>("add a 2210 A --min -40.5 --header 7E1").parameter.minimum, -40.5);
    const auto import = taken<DtcImportOptions>("import a.txt --overwrite --no-notes").text;
    EXPECT_TRUE(import.dupOver && import.noNotes && !import.delimNotes && import.fields == DtcFields::comma);
}

TEST(CommandLineTest, AnOptionIsWhatItsCommandHas)
{
    CLI::App program;
    std::string path;
    bool isTable = false;
    program.add_subcommand("poll")->add_option("--csv", path);
    CLI::App& import = *program.add_subcommand("dtc")->add_subcommand("import");
    import.add_flag("--csv", isTable);
    import.add_option("FILE", path);
    for (const char* words : {"poll --csv -", "--csv - poll", "dtc import --csv a", "--csv dtc import a"}) {
        program.clear();
        path.clear();
        parse(program, sortArguments(program, split(words)));
        const bool isPoll = std::string(words).find("poll") != std::string::npos;
        EXPECT_EQ(path, isPoll ? "-" : "a") << words;
        EXPECT_EQ(isTable, !isPoll) << words;
    }
}

TEST(CommandLineTest, TakesTheParametersOfAScan)
{
    const std::pair<const char*, const char*> rows[] = {
        // header, modes, PIDs, suffix
        {"scan", "686AF1 01-01 00-1F "},
        {"scan --mode 1-a --pid 0-ff --suffix 0", "686AF1 1-A 0-FF 0"},
        {"scan --mode 9 --pid none --suffix none --header 6810f1", "6810F1 9-9 - "},
        {"scan --pid 5-0", "686AF1 01-01 5-0 "}, // one PID
    };
    for (const auto& [words, boxes] : rows) {
        const ScanParameters scan = taken<ScanOptions>(words).scan;
        EXPECT_EQ(scan.cmdHead + " " + scan.modeStart + "-" + scan.modeStop + " " + scan.pidStart + "-" +
                      scan.pidStop + " " + scan.cmdSuffix,
                  boxes);
    }
    const auto output = taken<ScanOptions>("scan --show nonzero --decimal --names");
    EXPECT_TRUE(output.decimal && output.names && !output.ascii);
    EXPECT_EQ(output.filter, ScanFilter::validNonZero);
    for (const char* words : {"scan --mode 3-5", "scan --mode 3-5 --header 6810F1 --allow-clear"})
        EXPECT_EQ(refusal(words), "no failure") << words;
    EXPECT_EQ(refusal("scan --mode 3-5 --header 6810F1").find(erasesDataText), 0U);
    EXPECT_EQ(refusal("scan --mode 1-"), "--mode 1-: Mode must be 1 or 2 hex digits");
}

TEST(CommandLineTest, AProgramThatIsBroughtBackLooksInTheFolderOfTheSecondStart)
{
    const std::string here = fromQt(QDir::currentPath());
    for (const auto& [location, passed] : {std::pair<std::string, std::string>("tcp:h/x:1", "tcp:h/x:1"),
                                           {"./ttyS1@9600", here + "/ttyS1@9600"},
                                           {"ttyUSB0@9600", "ttyUSB0@9600"},
                                           {"/dev/a", "/dev/a"},
                                           {"replay:a.txt", "replay:" + here + "/a.txt"},
                                           {"simulated", "simulated"}})
        EXPECT_EQ(fromLine(toLine({{.portNumber = PortNumber{1}, .portLocation = location}}))
                      .connection.portLocation,
                  passed);
}

TEST(CommandLineTest, TakesADesignForTheWindows)
{
    const std::filesystem::path here = fromQt(QDir::currentPath());
    const std::pair<std::vector<std::string>, std::filesystem::path> rows[] = {
        {{"a.obc"}, here / "a.obc"},
        {{"--simulate", "../x/../Größe 2.OBC"}, here.parent_path() / "Größe 2.OBC"},
        {{"--", "-x.obc"}, here / "-x.obc"},
        {{"/dev/../etc/passwd"}, "/etc/passwd"}}; // no such name, but there
    for (const auto& [arguments, path] : rows) {
        CommandLine line;
        EXPECT_TRUE(line.mayWantWindows(arguments)) << path;
        line.parse(arguments);
        EXPECT_FALSE(line.run) << path;
        EXPECT_EQ(fromLine(toLine(line.start)).designPath, path.string());
    }
}

TEST(CommandLineTest, RefusesWhatIsWrong)
{
    for (const std::string& words :
         split("code|/tmp|a.obc b.obc|a.obc codes|codes a.obc|dtc a.obc|a.obc --yes|codes twice|--prot "
               "com1|-x|--port|--port com3=|--port com9|--port COM10=/dev/a|--port "
               "tcp:h:0|--port com2=replay:|"
               "--speed 19200|--simulate --port com2|codes --simulate=1|codes --clear|codes --timeout -1|"
               "terminal --hex --oct|poll|poll a.obc --loops 0|poll a.obc --loops 1 --seconds 1|"
               "poll a.obc --log=|report --replay=|report --replay a.txt b|poll a.obc --log a.txt --export "
               "./a.txt|poll a.obc --log a.obc|"
               "export a.log a.log|export a.log a.txt --decimals point|export a.log a.csv --decimals dot|"
               "poll a.obc --decimals comma|poll a.obc --csv - --jsonl|poll a.obc --imperial|plot a.log "
               "a.png --from 5 --to 5|plot a.log a.png --events 1,0|"
               "plot a.log a.txt|scan --mode 5-0|dtc|dtc lookup|dtc export a.txt --tab --comma|"
               "parameters try|parameters try a|parameters try a 01 --unit C|parameters add a 2210|"
               "parameters add a 2210 A --min x|parameters list a|parameters import",
               '|'))
        EXPECT_NE(refusal(words), "no failure") << words;
    EXPECT_EQ(refusal("--port com2=simulated:diesel=1"),
              "--port com2=simulated:diesel=1: diesel=1: takes no value");
    EXPECT_EQ(refusal("--port simulated:units=3"),
              "--port simulated:units=3: units=3: A vehicle has 1 or 2 control units");
    EXPECT_EQ(refusal("--port simulated:all-parameters"),
              "--port simulated:all-parameters: A vehicle tells all parameters on CAN only");
    EXPECT_EQ(refusal("poll a b"), "poll takes one design, DESIGN.obc, or --events and what they are");
    EXPECT_EQ(refusal("export a"), "wrong words after \"export\"; the command is: zint-obd export LOG.log "
                                   "OUT.txt|OUT.csv");
    EXPECT_EQ(refusal("report --fail-on light"), "--fail-on light: give codes or readiness");
    EXPECT_EQ(refusal("codes --comma"), "--comma goes with the command dtc import or dtc export");
    EXPECT_EQ(refusal("dtc find P0301"), "unknown command \"dtc find P0301\"; there are: dtc setup, dtc "
                                         "lookup CODE..., dtc import FILE, dtc export FILE");
}

TEST(CommandSessionTest, ShowsWhatWouldSteerATerminal)
{
    EXPECT_EQ(visibleText("41 01\x1B[2J \x7F\r>\n"), "41 01\\x1B[2J \\x7F\\x0D>\n");
    EXPECT_EQ(visibleText(std::string_view("\0\xFC\xC3", 3)), "\\x00\\xFC\\xC3");
    EXPECT_EQ(visibleText("Motoröl 90°C\r\n\ta\xC2\x9B"), "Motoröl 90°C\r\n\ta\\xC2\\x9B");
    EXPECT_EQ(secondsText(std::chrono::seconds(1)) + secondsText(std::chrono::seconds(2)),
              "1 second2 seconds");
}

} // namespace
} // namespace zint
