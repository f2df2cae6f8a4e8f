#include "commands/commandLine.h"
#include "commands/commandSession.h"

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
        {"--version", Action::showVersion},
        {"codes --help", Action::showHelp},
        {"--port COM8", Action::showWindows, 8},
        {"--port com3=/dev/rfcomm0", Action::showWindows, 3, "/dev/rfcomm0"},
        {"--port /dev/a=b", Action::showWindows, 1, "/dev/a=b"},
        {"codes --simulate --speed 38400", Action::reportCodes, 1, "simulated"},
        {"poll d.obc --port com2", Action::poll, 2},
        {"export a.log a.txt", Action::exportLog},
        {"terminal --dec", Action::terminal},
        {"dtc setup --quiet", Action::setUpDescriptions},
        {"--db a.mdb dtc lookup P0301", Action::lookUpCodes},
        {"dtc import a.txt --overwrite --quiet", Action::importDescriptions},
        {"dtc export -", Action::exportDescriptions},
    };
    for (const auto& [words, action, port, location] : rows) {
        const CommandLine line = parse(words);
        EXPECT_EQ(line.action, action) << words << ": " << line.complaint;
        EXPECT_EQ(line.connection.portNumber.value_or(PortNumber{0}), PortNumber{port}) << words;
        EXPECT_EQ(line.connection.portLocation, location) << words;
    }
    EXPECT_EQ(parse("--speed 38400").connection.speedPosition, 1);
    EXPECT_EQ(parse("codes --timeout 7").timeout, std::chrono::seconds(7));
    const CommandLine poll = parse("--log a.log poll --export a.txt d.obc --loops 100000");
    EXPECT_EQ(poll.designPath + poll.logPath + poll.exportPath, "d.obca.loga.txt");
    EXPECT_EQ(poll.loops, 100000);
    EXPECT_EQ(parse("poll d.obc --seconds 86400").seconds, std::chrono::seconds(86400));
}

TEST(CommandLineTest, TakesTheParametersOfAScan)
{
    const std::pair<const char*, const char*> rows[] = {
        // header, modes, PIDs, suffix
        {"scan", "686AF1 01-01 00-1F "},
        {"scan --mode 1-a --pid 0-ff --suffix 0", "686AF1 1-A 0-FF 0"},
        {"scan --mode 9 --pid none --suffix none --header 6810f1", "6810F1 9-9 - "},
        {"scan --mode 3-5", "686AF1 3-5 00-1F "}, // passes mode 04 over
        {"scan --pid 5-0", "686AF1 01-01 5-0 "},  // one PID
        {"scan --mode 3-5 --header 6810F1 --allow-clear", "6810F1 3-5 00-1F "},
    };
    for (const auto& [words, boxes] : rows) {
        const ScanParameters scan = parse(words).scan;
        EXPECT_EQ(scan.cmdHead + " " + scan.modeStart + "-" + scan.modeStop + " " + scan.pidStart + "-" +
                      scan.pidStop + " " + scan.cmdSuffix,
                  boxes)
            << words;
    }
    EXPECT_EQ(parse("scan --show nonzero").filter, ScanFilter::validNonZero);
    const CommandLine formats = parse("scan --decimal --names");
    EXPECT_TRUE(formats.decimal && formats.names && !formats.ascii && parse("scan --ascii").ascii);
    EXPECT_EQ(parse("scan --mode 1-").complaint, "--mode 1-: Mode must be 1 or 2 hex digits");
    EXPECT_EQ(parse("scan --mode 5-0").complaint, "--mode 5-0: the range ends before it begins");
    EXPECT_EQ(parse("scan --mode 3-5 --header 6810F1").complaint.find(erasesDataText), 0U);
}

TEST(CommandLineTest, TakesWhatTheDescriptionsNeed)
{
    EXPECT_EQ(parse("dtc lookup P0301 u0123").codes, (std::vector<std::string>{"P0301", "u0123"}));
    EXPECT_EQ(parse("dtc export a.txt --fixed").textOptions.fields, DtcFields::fixed);
    const DtcTextOptions import = parse("dtc import a.txt --overwrite --no-notes").textOptions;
    EXPECT_TRUE(import.dupOver && import.noNotes && !import.delimNotes && import.fields == DtcFields::comma);
    EXPECT_EQ(parse("dtc find P0301").complaint,
              "unknown command \"dtc find P0301\"; there are: dtc setup, dtc "
              "lookup CODE..., dtc import FILE, dtc export FILE");
}

TEST(CommandLineTest, RefusesWhatIsWrong)
{
    const QStringList rows =
        QStringLiteral(
            "code|codes twice|--prot com1|--port com3=|--port com9|--port COM10=/dev/a|--speed 19200|"
            "--simulate --port com2|codes --clear|codes --timeout -1|terminal --hex --oct|poll|"
            "poll a.obc --loops 0|poll a.obc --loops 1 --seconds 1|poll a.obc --log=|codes --loops 3|"
            "poll a.obc --log a.txt --export ./a.txt|poll a.obc --log a.obc|export a.log a.log|"
            "dtc lookup|dtc export a.txt --tab --comma")
            .split(u'|');
    for (const QString& words : rows) {
        const CommandLine line = parse(words.toLatin1());
        EXPECT_TRUE(line.action == Action::refuse && !line.complaint.empty()) << words.toStdString();
    }
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
