#include "endToEnd/simulator.h"
#include "endToEnd/zintObd.h"
#include "sim/pseudoTerminal.h"

#include <QTest>
#include <gtest/gtest.h>

#include <array>

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
    const Simulator simulator("--latency 5 --keep-unread --late-defaults 100");
    EXPECT_TRUE(codesOf(simulator, "--speed 38400").output.starts_with(litReport));
    const Outcome cleared = codesOf(simulator, "--clear --yes");
    EXPECT_NE(cleared.output.find("Codes\n  No codes reported\n"), std::string::npos) << cleared.output;
    const Outcome again = codesOf(simulator, "--clear --yes");
    EXPECT_EQ(again.output, cleared.output) << "the vehicle forgot that its codes were cleared";
    EXPECT_EQ(cleared.errors + again.errors.substr(0, 26), "zint-obd: nothing to clear");
}

TEST(CodesEndToEnd, ReadsThroughTheHabitsOfAdapters)
{
    for (const char* habit :
         {"--pieces 1 --piece-gap 1", "--pieces 7 --latency 30", "--line-speed 9600", "--line-feeds",
          "--no-announcement --single-line-end", "--rubbish \\0\\xFC", "--no-trailing-blank"}) {
        const Outcome read = codesOf(Simulator(habit));
        EXPECT_EQ(read.errors, "") << habit << ": the shipped descriptions serve without a database";
        EXPECT_TRUE(read.output.starts_with(litReport)) << habit << read.output;
    }
    EXPECT_TRUE(codesOf(Simulator("--protocol can --codes P0420"))
                    .output.starts_with("This vehicle answers in the CAN"));
}

TEST(CodesEndToEnd, FailuresSayWhy)
{
    const std::array<const char*, 3> rows[] = {
        {"--disconnect-after 2", "", "com1 - adapter disconnected"},
        {"--no-reset-answer", "--timeout 1", "the exchange was not complete after 1 second\n"},
        {"--silent-after 3", "--clear --yes --timeout 2",
         "after 2 seconds\nzint-obd: the clear was sent; whether"},
        {"--ignition-off", "", "must be ON.\nThe adapter answered: BUS INIT: ...ERROR\n"},
        {"", "--port /dev/no-such-port", "com1 - Comm init error: 2: "},
    };
    for (const auto& [simulator, options, complaint] : rows) {
        const Outcome read = codesOf(Simulator(simulator), options);
        expectFailure(read, complaint);
        EXPECT_EQ(read.output, "") << simulator;
    }
    PseudoTerminal terminal;
    ZintObd program(words("codes --simulate"), {}, QString::fromStdString(terminal.path()), "damaged");
    const Outcome read = program.wait();
    EXPECT_TRUE(read.status == 1 && read.output.starts_with("Service Engine Soon Light is ON"))
        << read.output;
    std::string errors; // a terminal hands the last bytes over when it has time
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return (errors += terminal.read()).find("dtc.mdb") != std::string::npos; }, patienceMs));
    EXPECT_TRUE(errors.starts_with("trying the simulated vehicle at 9600...")) << errors;
}

/// The test is the adapter: answers each request, and interrupts the program at one without an answer.
Outcome converse(const char* options, const std::vector<std::array<const char*, 2>>& requests)
{
    PseudoTerminal terminal;
    ZintObd program(words("codes --port") + Arguments{terminal.path()} + words(options));
    EXPECT_TRUE(QTest::qWaitFor([&terminal] { return terminal.takeOpening(); }, patienceMs));
    for (const auto& [request, answer] : requests) {
        std::string sent;
        EXPECT_TRUE(QTest::qWaitFor([&] { return (sent += terminal.read()) == request; }, patienceMs))
            << sent;
        if (std::string_view(answer).empty())
            program.send(SIGINT);
        terminal.write(answer);
    }
    return program.wait();
}

TEST(CodesEndToEnd, AnInterruptedReadResetsTheAdapterAndARefusedClearFails)
{
    expectFailure(converse("", {{"ATZ\r", "\r>"}, {"ATE0\r", "\r>"}, {"0101\r", ""}, {"ATD\r", "OK\r\r>"}}),
                  "ended before it was complete");
    const char* const status = "41 01 81 07 65 00 \r>";
    expectFailure(converse("--clear --yes", {{"ATZ\r", ">"},
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
    expectFailure(runZint(words("")), "there is no display");
    for (const char* command : {"codes --simulate", "scan --simulate"})
        EXPECT_EQ(runZint(words(command), QStringLiteral("/dev/full")).errors,
                  "zint-obd: the report could not be written to standard output\n");
}

} // namespace
} // namespace zint
