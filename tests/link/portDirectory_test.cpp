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

TEST(PortLocation, ReadsAndShowsWhatAPortStandsFor)
{
    using Kind = PortLocation::Kind;
    struct Row {
        const char* text;
        Kind kind;
        const char* path;
        const char* shown;
        int number = 0; ///< port or speed
        const char* problem = "";
    };
    const char* const badPort = "\"tcp:HOST:PORT\" needs a port from 1 to 65535, such as 35000";
    const Row rows[] = {
        {"", Kind::nothing, "", "nothing connected"},
        {"simulated", Kind::simulated, "", "simulated vehicle"},
        {"Simulated:units=2", Kind::simulated, "units=2", "simulated vehicle (units=2)"},
        {"ttyUSB0", Kind::device, "ttyUSB0", "ttyUSB0"},
        {"COM7@500000", Kind::device, "COM7", "COM7", 500000},
        {"/dev/a@b@9600", Kind::device, "/dev/a@b", "/dev/a@b", 9600},
        {"/dev/a@b", Kind::device, "/dev/a@b", "/dev/a@b"},
        {"@9600", Kind::device, "@9600", "@9600"},
        {"a@1234567890", Kind::device, "a@1234567890", "a@1234567890"},
        {"a@0", Kind::device, "a", "a", 0, "The speed behind \"@\" is in bits per second, such as 115200"},
        {"tcp:192.168.0.10:3333", Kind::network, "192.168.0.10", "192.168.0.10:3333", 3333},
        {"TCP:host", Kind::network, "host", "host:35000", 35000},
        {"tcp:[::1]:1", Kind::network, "::1", "[::1]:1", 1},
        {"tcp::1", Kind::network, "", ":1", 1, "\"tcp:HOST:PORT\" needs a host, such as 192.168.0.10"},
        {"tcp:h:", Kind::network, "h", "h:0", 0, badPort},
        {"tcp:h:65536", Kind::network, "h", "h:65536", 65536, badPort},
        {"tcp:h:1x", Kind::network, "h", "h:0", 0, badPort},
        {"replay:a:b.txt", Kind::recording, "a:b.txt", "recording \"a:b.txt\""},
        {"replay:", Kind::recording, "", "recording \"\"", 0, "\"replay:FILE\" needs the name of a file"},
    };
    for (const Row& row : rows) {
        const PortLocation place = portLocation(row.text);
        EXPECT_EQ(place.kind, row.kind) << row.text;
        EXPECT_EQ(place.path, row.path);
        EXPECT_EQ(place.text(), row.shown);
        EXPECT_EQ(row.kind == Kind::network ? place.tcpPort : place.bitsPerSecond.value_or(0), row.number);
        EXPECT_EQ(place.problem, row.problem) << row.text;
    }
}

TEST_F(PortDirectoryTest, TellsWhatIsConnectedAndWhatCannotBeUsed)
{
    system.ports = {{"/dev/ttyUSB0", "FT232R USB UART", ""}};
    for (const auto& [location, text] : {
             std::pair("ttyUSB0@115200", "ttyUSB0 at 115200 - FT232R USB UART"),
             {"/dev/rfcomm0@9600", "/dev/rfcomm0 at 9600 - nothing connected"},
             {"tcp:192.168.0.10:35000", "192.168.0.10:35000 - network adapter"},
             {"tcp:h:0", "tcp:h:0 - \"tcp:HOST:PORT\" needs a port from 1 to 65535, such as 35000"},
             {"replay:/no/such", "recording \"/no/such\" - there is no such file"},
             {"replay:/bin/sh", "recording \"/bin/sh\""},
         }) {
        directory.assign(PortNumber{1}, location);
        EXPECT_EQ(textOf(1), text);
    }
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
