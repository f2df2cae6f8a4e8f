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
}

TEST(CommandLineTest, RefusesWhatIsWrong)
{
    for (const char* words : {"code", "codes twice", "--prot com1", "--port com3=", "--port", "--speed 19200",
                              "--simulate --port com2", "codes --clear", "--clear --yes", "--timeout 3",
                              "codes --timeout x", "codes --timeout -1"}) {
        EXPECT_TRUE(parse(words).action == Action::refuse && !parse(words).complaint.empty()) << words;
    }
}

} // namespace
} // namespace zint
