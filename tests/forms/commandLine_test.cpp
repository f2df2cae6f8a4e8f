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

TEST(CommandLineTest, Actions)
{
    EXPECT_EQ(parse("").action, Action::showWindows);
    EXPECT_EQ(parse("--simulate --speed 38400").action, Action::showWindows);
    EXPECT_EQ(parse("codes").action, Action::reportCodes);
    EXPECT_EQ(parse("--version").action, Action::showVersion);
    EXPECT_EQ(parse("codes --help").action, Action::showHelp);
}

TEST(CommandLineTest, Ports)
{
    struct Row {
        const char* words;
        int number;
        const char* location;
    };
    for (const Row& row :
         {Row{"--port com3", 3, ""}, Row{"--port COM8", 8, ""}, Row{"--port /dev/ttyUSB1", 1, "/dev/ttyUSB1"},
          Row{"--port com3=/dev/rfcomm0", 3, "/dev/rfcomm0"}, Row{"--port com9", 1, "com9"},
          Row{"--port /dev/a=b", 1, "/dev/a=b"}, Row{"--simulate", 1, "simulated"},
          Row{"--simulate --port com1", 1, "simulated"}}) {
        const CommandLine line = parse(row.words);
        EXPECT_EQ(line.action, Action::showWindows) << row.words << ": " << line.complaint;
        EXPECT_EQ(line.connection.portNumber, row.number) << row.words;
        EXPECT_EQ(line.connection.portLocation, row.location) << row.words;
    }
    EXPECT_EQ(parse("--speed 38400").connection.speedPosition, 1);
    EXPECT_FALSE(parse("").connection.portNumber);
}

TEST(CommandLineTest, WhatIsWrongIsRefused)
{
    for (const char* words : {"code", "codes twice", "--prot com1", "--port com3=", "--port", "--speed 19200",
                              "--simulate --port com2", "codes --clear", "--clear --yes", "--timeout 3",
                              "codes --timeout x", "codes --timeout -1"}) {
        const CommandLine line = parse(words);
        EXPECT_EQ(line.action, Action::refuse) << words;
        EXPECT_FALSE(line.complaint.empty()) << words;
    }
    const CommandLine clear = parse("codes --clear --yes --timeout 7");
    EXPECT_EQ(clear.action, Action::reportCodes);
    EXPECT_TRUE(clear.clearCodes);
    EXPECT_EQ(clear.timeout, std::chrono::seconds(7));
}

} // namespace
} // namespace zint
