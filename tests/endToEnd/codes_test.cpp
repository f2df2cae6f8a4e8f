#include "endToEnd/programs.h"
#include "sim/pseudoTerminal.h"

#include <array>

namespace zint {
namespace {

const std::string litReport = "Service Engine Soon Light is ON\n\n"
                              "Diagnostic (MIL) Codes: 3 code(s) reported\n"
                              "  P0133 O2 sensor circuit slow response (bank 1 sensor 1)\n"
                              "  P0301 Cylinder 1 misfire detected\n"
                              "  U0123 Lost communication with yaw rate sensor module\n\n"
                              "Readiness\n";

TEST(CodesEndToEnd, ReadsAndClears)
{
    const Simulator simulator(
        "--keep-unread --late-defaults 100 --line-speed 9600 --pieces 7 --line-feeds --no-trailing-blank");
    const Outcome read = runZint(simulator.with("codes --speed 38400"));
    EXPECT_TRUE(read.output.starts_with(litReport)) << read.output;
    EXPECT_EQ(read.errors, "") << "the shipped descriptions serve without a database";
    const QStringList clear = simulator.with("codes --clear --yes");
    const Outcome cleared = runZint(clear);
    EXPECT_NE(cleared.output.find("Codes\n  No codes reported\n"), std::string::npos) << cleared.output;
    const Outcome again = runZint(clear);
    EXPECT_EQ(again.output, cleared.output) << "the vehicle forgot that its codes were cleared";
    EXPECT_EQ(cleared.errors + again.errors.substr(0, 26), "zint-obd: nothing to clear");
}

TEST(CodesEndToEnd, ReadsOverTheNetworkOneClientAfterTheOther)
{
    Simulator simulator("--tcp 0 --protocol can --codes P0420");
    const QStringList command = words("codes --port " + simulator.nextLine());
    for (int round = 0; round < 2; ++round)
        EXPECT_TRUE(runZint(command).output.starts_with("This vehicle answers in the CAN layout"));
    expectFailure(runZint(words("codes --port tcp:127.0.0.1:1")), "look up the adapter's port");
}

/// Clears. The test is the adapter: answers each request, and interrupts the program at one without an
/// answer.
Outcome converse(const std::vector<std::array<const char*, 2>>& requests)
{
    PseudoTerminal terminal;
    ZintObd program(words("codes --clear --yes --port " + terminal.path()));
    EXPECT_TRUE(waitFor([&terminal] { return terminal.takeOpening(); }));
    for (const auto& [request, answer] : requests) {
        std::string sent;
        EXPECT_TRUE(waitFor([&] { return (sent += terminal.read()) == request; })) << sent;
        if (std::string_view(answer).empty())
            program.send(SIGINT);
        terminal.write(answer);
    }
    return program.wait();
}

TEST(CodesEndToEnd, AnInterruptedClearResetsTheAdapterAndARefusedOneFails)
{
    const char* const status = "41 01 81 07 65 00 \r>";
    expectFailure(
        converse({{"ATZ\r", ">"}, {"ATE0\r", ">"}, {"0101\r", status}, {"04\r", ""}, {"ATD\r", "OK\r>"}}),
        "ended before it was complete\nzint-obd: the clear was sent; whether");
    expectFailure(converse({{"ATZ\r", ">"},
                            {"ATE0\r", ">"},
                            {"0101\r", status},
                            {"04\r", "7F 04 22 \r>"},
                            {"0101\r", status},
                            {"03\r", "43 01 33 00 00 00 00 \r>"},
                            {"ATD\r", "OK\r\r>"}}),
                  "codes are still stored");
}

TEST(CodesEndToEnd, UsageVersionAndDebugInfo)
{
    const Outcome wrong = runZint(words("codes --clear"));
    EXPECT_EQ(wrong.status, 2);
    EXPECT_TRUE(wrong.errors.ends_with("\nzint-obd codes --help tells the options.\n")) << wrong.errors;
    EXPECT_EQ(runZint(words("--version")).output, "Zint 1.5.1\n");
    EXPECT_NE(runZint(words("codes --help")).output.find("\n  --simulate "), std::string::npos);
    ZintObd program(words("--debug-info --simulate"));
    const std::string info = program.wait().output;
    EXPECT_TRUE(info.starts_with("Zint 1.5.1\nBuilt with ")) << info;
    EXPECT_EQ(info.find(program.home().path()), std::string::npos) << info;
    EXPECT_NE(info.find("\nSettings: ~/.config/Zint/Zint.conf (missing)\n"), std::string::npos) << info;
    EXPECT_NE(info.find("\n  com1: simulated vehicle\n"), std::string::npos) << info;
    expectFailure(runZint({}), "there is no display");
}

} // namespace
} // namespace zint
