#include "endToEnd/simulator.h"
#include "endToEnd/zintObd.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

const std::string litReport = "Service Engine Soon Light is ON\n\n"
                              "Diagnostic (MIL) Codes: 3 code(s) reported\n"
                              "  P0133 O2 sensor circuit slow response (bank 1 sensor 1)\n"
                              "  P0301 Cylinder 1 misfire detected\n"
                              "  U0123 Lost communication with yaw rate sensor module\n\n"
                              "Readiness\n";

Outcome codesOf(const Simulator& simulator, const char* options = "")
{
    return runZint(words("codes --port") + QStringList{simulator.path()} + words(options));
}

TEST(CodesEndToEnd, ReadsAndClears)
{
    const Simulator simulator("--latency 5");
    const Outcome read = codesOf(simulator, "--speed 38400");
    EXPECT_EQ(read.status, 0) << read.errors;
    EXPECT_TRUE(read.output.starts_with(litReport)) << read.output;
    EXPECT_NE(read.output.find("  Evaporative System Test Incomplete\n"), std::string::npos) << read.output;

    const Outcome cleared = codesOf(simulator, "--clear --yes");
    EXPECT_EQ(cleared.status, 0) << cleared.errors;
    EXPECT_NE(cleared.output.find("OFF\n\nDiagnostic (MIL) Codes\n  No codes reported\n"), std::string::npos)
        << cleared.output;
    EXPECT_EQ(codesOf(simulator).output, cleared.output) << "the vehicle forgot that its codes were cleared";
}

TEST(CodesEndToEnd, ReadsThroughTheHabitsOfAdapters)
{
    for (const char* habit :
         {"--pieces 1 --piece-gap 1", "--pieces 7 --latency 30", "--line-speed 9600", "--line-feeds",
          "--no-announcement --single-line-end", "--rubbish \\0\\xFC", "--no-trailing-blank"}) {
        const Outcome read = codesOf(Simulator(habit));
        EXPECT_EQ(read.status, 0) << habit << read.errors;
        EXPECT_TRUE(read.output.starts_with(litReport)) << habit << read.output;
    }
}

TEST(CodesEndToEnd, FailuresSayWhy)
{
    const struct {
        const char* simulator;
        const char* program;
        const char* complaint;
    } rows[] = {
        {"--disconnect-after 2", "", "com1 - adapter disconnected"},
        {"--no-reset-answer", "--timeout 1", "the exchange was not complete after 1 seconds"},
        {"--silent-after 3", "--timeout 1", "the exchange was not complete after 1 seconds"},
        {"--ignition-off", "", "Please try again, ignition must be ON."},
        {"", "--port /dev/no-such-port", "com1 - Comm init error: 2: "},
    };
    for (const auto& [simulator, program, complaint] : rows) {
        const Outcome read = codesOf(Simulator(simulator), program);
        expectFailure(read, complaint);
        EXPECT_EQ(read.output, "") << simulator;
    }
}

TEST(CodesEndToEnd, UsageAndVersion)
{
    EXPECT_EQ(runZint(words("codes --clear")).status, 2);
    EXPECT_EQ(runZint(words("--version")).output, "Zint 1.5.1\n");
    EXPECT_NE(runZint(words("--help")).output.find("--simulate"), std::string::npos);
    expectFailure(runZint({}), "there is no display");
    EXPECT_TRUE(runZint(words("codes --simulate")).output.starts_with(litReport));
    expectFailure(runZint(words("codes --simulate"), QStringLiteral("/dev/full")), "could not be written");
}

} // namespace
} // namespace zint
