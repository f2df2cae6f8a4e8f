#include "app/commandLine.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

using Action = CommandLine::Action;

CommandLine parse(const char* words)
{
    return CommandLine::parse(
        QStringLiteral("zint-obd %1").arg(QLatin1String(words)).split(u' ', Qt::SkipEmptyParts));
}

TEST(CommandLineTest, TakesActionsAndPorts)
{
    const struct {
        const char* words;
        Action action;
        int port = 0; ///< 0: not told
        const char* location = "";
    } rows[] = {
        {"", Action::showWindows},
        {"codes", Action::reportCodes},
        {"--version", Action::showVersion},
        {"codes --help", Action::showHelp},
        {"--port com3", Action::showWindows, 3},
        {"--port COM8", Action::showWindows, 8},
        {"--port /dev/ttyUSB1", Action::showWindows, 1, "/dev/ttyUSB1"},
        {"--port com3=/dev/rfcomm0", Action::showWindows, 3, "/dev/rfcomm0"},
        {"--port com9", Action::showWindows, 1, "com9"},
        {"--port /dev/a=b", Action::showWindows, 1, "/dev/a=b"},
        {"--simulate --speed 38400", Action::showWindows, 1, "simulated"},
        {"poll d.obc --port com2", Action::poll, 2},
        {"export a.log a.txt", Action::exportLog},
        {"terminal --dec --port com4", Action::terminal, 4},
        {"scan --mode 1 --port com5", Action::scan, 5},
        {"dtc setup --if-missing --quiet", Action::setUpDescriptions},
        {"--db a.mdb dtc lookup P0301", Action::lookUpCodes},
        {"dtc import a.txt --overwrite --quiet", Action::importDescriptions},
        {"dtc export -", Action::exportDescriptions},
    };
    for (const auto& [words, action, port, location] : rows) {
        const CommandLine line = parse(words);
        EXPECT_EQ(line.action, action) << words << ": " << line.complaint;
        EXPECT_EQ(line.connection.portNumber.value_or(0), port) << words;
        EXPECT_EQ(line.connection.portLocation, location) << words;
    }
    EXPECT_EQ(parse("--speed 38400").connection.speedPosition, 1);
    const CommandLine clear = parse("codes --clear --yes --timeout 7");
    EXPECT_TRUE(clear.clearCodes);
    EXPECT_EQ(clear.timeout, std::chrono::seconds(7));

    const CommandLine loops = parse("poll d.obc --loops 100000 --log a.log --export a.txt --quiet");
    EXPECT_EQ(loops.loops, 100000);
    EXPECT_FALSE(loops.seconds);
    EXPECT_TRUE(loops.quiet);
    for (const CommandLine& line : {loops, parse("--log a.log poll --export a.txt d.obc")}) {
        EXPECT_EQ(line.designPath, "d.obc");
        EXPECT_EQ(line.logPath, "a.log");
        EXPECT_EQ(line.exportPath, "a.txt");
    }
    const CommandLine seconds = parse("poll d.obc --seconds 86400");
    EXPECT_EQ(seconds.seconds, std::chrono::seconds(86400));
    EXPECT_EQ(parse("poll d.obc").loops, 1000);
    EXPECT_EQ(parse("export a.log b.txt").exportPath, "b.txt");
}

TEST(CommandLineTest, TakesTheParametersOfAScan)
{
    const struct {
        const char* words;
        const char* boxes; ///< header, modes, PIDs, suffix
    } rows[] = {
        {"scan", "686AF1 01-01 00-1F "},
        {"scan --mode 1-a --pid 0-ff --suffix 0", "686AF1 1-A 0-FF 0"},
        {"scan --mode 9 --pid 2 --header 6810f1", "6810F1 9-9 2-2 "},
        {"scan --pid none --suffix none --header ATSHZZ", "ATSHZZ 01-01 - "},
        {"scan --pid= --suffix=", "686AF1 01-01 - "},
        {"scan --mode 3-5 --header 686af1", "686AF1 3-5 00-1F "}, // passes mode 04 over
        {"scan --mode 3-5 --header 6810F1 --allow-clear", "6810F1 3-5 00-1F "},
    };
    for (const auto& [words, boxes] : rows) {
        const CommandLine line = parse(words);
        EXPECT_EQ(line.action, Action::scan) << words << ": " << line.complaint;
        const ScanParameters& scan = line.scan;
        EXPECT_EQ(scan.cmdHead + " " + scan.modeStart + "-" + scan.modeStop + " " + scan.pidStart + "-" +
                      scan.pidStop + " " + scan.cmdSuffix,
                  boxes)
            << words;
    }
    EXPECT_EQ(parse("scan").filter, ScanFilter::all);
    EXPECT_EQ(parse("scan --show valid").filter, ScanFilter::valid);
    EXPECT_EQ(parse("scan --show nonzero").filter, ScanFilter::validNonZero);
    EXPECT_EQ(parse("scan --show data").filter, ScanFilter::exceptNoData);
    EXPECT_TRUE(parse("scan --decimal").decimal && !parse("scan --decimal").ascii);
    EXPECT_TRUE(parse("scan --ascii").ascii && !parse("scan --ascii").decimal);

    const std::pair<const char*, const char*> refused[] = {
        {"scan --header 7E8", "--header 7E8: Header must be 6 bytes"},
        {"scan --mode 100", "--mode 100: Mode must be 1 or 2 hex digits"},
        {"scan --mode 1-", "--mode 1-: Mode must be 1 or 2 hex digits"},
        {"scan --pid -5", "--pid -5: Pid must be 0 to 4 hex digits"},
        {"scan --pid 1-2-3", "--pid 1-2-3: Pid must be 0 to 4 hex digits"},
        {"scan --suffix 0G", "--suffix 0G: Suffix must be 0 to 2 hex digits"},
        {"scan --show most", "--show most: give all, valid, nonzero or data"},
    };
    for (const auto& [words, complaint] : refused)
        EXPECT_EQ(parse(words).complaint, complaint);
    EXPECT_EQ(parse("scan --mode 3-5 --header 6810F1").complaint.find(erasesDataText), 0U);
}

TEST(CommandLineTest, TakesWhatTheDescriptionsNeed)
{
    const CommandLine lookUp = parse("dtc lookup P0301 u0123 --db a.mdb");
    EXPECT_EQ(lookUp.codes, (std::vector<std::string>{"P0301", "u0123"}));
    EXPECT_EQ(lookUp.databasePath, "a.mdb");
    const std::pair<const char*, DtcFields> rows[] = {{"dtc import a.txt", DtcFields::comma},
                                                      {"dtc import a.txt --comma", DtcFields::comma},
                                                      {"dtc import a.txt --tab", DtcFields::tab},
                                                      {"dtc export a.txt --space", DtcFields::space},
                                                      {"dtc export a.txt --fixed", DtcFields::fixed}};
    for (const auto& [words, fields] : rows) {
        const CommandLine line = parse(words);
        EXPECT_EQ(line.textPath, "a.txt") << words;
        const DtcTextOptions& options = line.textOptions;
        EXPECT_EQ(options.fields, fields) << words;
        EXPECT_FALSE(options.dupOver || options.noNotes || options.delimNotes) << words;
    }
    const DtcTextOptions import = parse("dtc import a.txt --overwrite --no-notes").textOptions;
    EXPECT_TRUE(import.dupOver && import.noNotes && !import.delimNotes);
    EXPECT_TRUE(parse("dtc export a.txt --delim-notes").textOptions.delimNotes);
    EXPECT_EQ(parse("dtc find P0301").complaint,
              "unknown command \"dtc find P0301\"; there are: dtc setup, dtc "
              "lookup CODE..., dtc import FILE, dtc export FILE");
}

TEST(CommandLineTest, RefusesWhatIsWrong)
{
    for (const char* words : {"code",
                              "codes twice",
                              "--prot com1",
                              "--port com3=",
                              "--port",
                              "--speed 19200",
                              "--simulate --port com2",
                              "codes --clear",
                              "--clear --yes",
                              "--timeout 3",
                              "codes --timeout x",
                              "codes --timeout -1",
                              "terminal ATZ",
                              "terminal --hex --oct",
                              "codes --dec",
                              "poll",
                              "poll a.obc b.obc",
                              "poll a.obc --loops 0",
                              "poll a.obc --loops 100001",
                              "poll a.obc --seconds 0",
                              "poll a.obc --loops 1 --seconds 1",
                              "poll a.obc --log=",
                              "codes --loops 3",
                              "--log a.log",
                              "poll a.obc --log a.txt --export ./a.txt",
                              "poll a.obc --log a.obc",
                              "export a.log",
                              "scan 0100",
                              "scan --dec",
                              "codes --decimal",
                              "dtc",
                              "setup",
                              "dtc setup a.txt",
                              "dtc lookup",
                              "dtc import",
                              "dtc export a.txt b.txt",
                              "dtc export a.txt --tab --comma",
                              "dtc export a.txt --overwrite",
                              "dtc import a.txt --delim-notes",
                              "dtc lookup P0301 --tab",
                              "dtc lookup P0301 --if-missing",
                              "dtc setup --db=",
                              "codes --db a.mdb",
                              "export a.log a.log",
                              "export a.log a.txt --simulate"}) {
        EXPECT_TRUE(parse(words).action == Action::refuse && !parse(words).complaint.empty()) << words;
    }
}

} // namespace
} // namespace zint
