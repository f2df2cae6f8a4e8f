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
    EXPECT_EQ(seconds.loops, 100000) << "the time ends the run, not the usual number of loops";
    EXPECT_EQ(parse("poll d.obc").loops, 1000);
    EXPECT_EQ(parse("export a.log b.txt").exportPath, "b.txt");
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
                              "poll a.obc --timeout 3",
                              "poll a.obc --log=",
                              "codes --loops 3",
                              "--log a.log",
                              "poll a.obc --log a.txt --export ./a.txt",
                              "poll a.obc --log a.obc",
                              "export a.log",
                              "export a.log a.log",
                              "export a.log a.txt --simulate"}) {
        EXPECT_TRUE(parse(words).action == Action::refuse && !parse(words).complaint.empty()) << words;
    }
}

} // namespace
} // namespace zint
