#include "link/portDirectory.h"
#include "support/fixedPortList.h"
#include "support/memorySettings.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

struct PortDirectoryTest : testing::Test {
    MemorySettings settings;
    FixedPortList system;
    PortDirectory directory{settings, system};

    std::string textOf(int number) const { return directory.target(PortNumber{number}).text(); }
};

TEST_F(PortDirectoryTest, TheRunsAssignmentComesBeforeTheUsersAndThatBeforeTheDetectedPort)
{
    system.ports = {{"/dev/ttyUSB0", "FT232R USB UART", ""}, {"/dev/rfcomm0", "", ""}};
    EXPECT_EQ(textOf(1), "/dev/ttyUSB0 - FT232R USB UART");
    EXPECT_EQ(textOf(2), "/dev/rfcomm0");
    EXPECT_EQ(textOf(8), "nothing connected");

    directory.assign(PortNumber{1}, "/tmp/zint-sim");
    directory.assign(PortNumber{8}, "/dev/ttyUSB0");
    EXPECT_EQ(textOf(1), "/tmp/zint-sim - nothing connected");
    system.devices = {"/tmp/zint-sim"};
    EXPECT_EQ(textOf(1), "/tmp/zint-sim");
    EXPECT_EQ(textOf(8), "/dev/ttyUSB0 - FT232R USB UART");

    directory.assignForThisRun(PortNumber{1}, std::string(PortDirectory::simulated));
    EXPECT_EQ(textOf(1), "simulated vehicle");
    EXPECT_TRUE(directory.target(PortNumber{1}).connected);
    EXPECT_EQ(directory.assignment(PortNumber{1}), "/tmp/zint-sim");
    EXPECT_EQ(settings.get("Ports", "com1"), "/tmp/zint-sim") << "kept for the next run";

    directory.assign(PortNumber{1}, "/dev/rfcomm0");
    EXPECT_EQ(textOf(1), "/dev/rfcomm0") << "what the user assigns now ends the assignment of the run";
    directory.assign(PortNumber{1}, "");
    EXPECT_EQ(textOf(1), "/dev/ttyUSB0 - FT232R USB UART");
    EXPECT_EQ(settings.get("Ports", "com1", "removed"), "removed");
}

TEST_F(PortDirectoryTest, UsesTheSystemsOwnNumbersWhereThereAreSuch)
{
    system.numbersAreFixed = true;
    system.ports = {{"COM7", "USB Serial", "1A86:7523"}};
    EXPECT_EQ(textOf(7), "COM7 - USB Serial");
    EXPECT_EQ(textOf(1), "COM1 - nothing connected") << "not the first detected port";
    directory.assign(PortNumber{1}, "COM7");
    EXPECT_EQ(textOf(1), "COM7 - USB Serial");
}

TEST_F(PortDirectoryTest, ReadsPortNames)
{
    EXPECT_EQ(PortDirectory::numberOf("com1"), PortNumber{1});
    EXPECT_EQ(PortDirectory::numberOf("COM8"), PortNumber{8});
    for (const std::string_view text : {"", "com", "com0", "com9", "com10", "com1 ", "/dev/com1", "1"})
        EXPECT_EQ(PortDirectory::numberOf(text), std::nullopt) << text;
}

} // namespace
} // namespace zint
