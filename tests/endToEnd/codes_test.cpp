#include "endToEnd/simulator.h"
#include "endToEnd/zintObd.h"
#include "sim/pseudoTerminal.h"

#include <QTest>
#include <gtest/gtest.h>

#include <array>
#include <functional>

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
    EXPECT_EQ(cleared.status + again.status, 0);
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
    const std::string can = codesOf(Simulator("--protocol can --codes P0420")).output;
    EXPECT_TRUE(can.starts_with("This vehicle answers in the CAN layout")) << can;
    EXPECT_NE(can.find("Read in that layout:\nP0420"), std::string::npos) << can;
    EXPECT_NE(can.find("1 code(s) reported\n  P0104"), std::string::npos) << can;
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
    const std::string errors = terminal.read();
    EXPECT_TRUE(errors.starts_with("trying the simulated vehicle at 9600...")) << errors;
    EXPECT_NE(errors.find("dtc.mdb"), std::string::npos) << errors;
}

/// The test is the adapter: answers each request, and does something at the last one.
Outcome converse(const char* options, const std::vector<std::array<std::string, 2>>& requests,
                 const std::function<void(ZintObd&)>& atLast = {})
{
    PseudoTerminal terminal;
    ZintObd program(words("codes --port") + QStringList{QString::fromStdString(terminal.path())} +
                    words(options));
    EXPECT_TRUE(QTest::qWaitFor([&terminal] { return terminal.takeOpening(); }, patienceMs));
    for (const auto& [request, answer] : requests) {
        std::string sent;
        EXPECT_TRUE(QTest::qWaitFor([&] { return (sent += terminal.read()) == request + "\r"; }, patienceMs))
            << sent;
        if (answer.empty())
            atLast(program);
        terminal.write(answer);
    }
    return program.wait();
}

TEST(CodesEndToEnd, AnInterruptedReadResetsTheAdapterAndARefusedClearFails)
{
    expectFailure(converse("", {{"ATZ", "\r>"}, {"ATE0", "\r>"}, {"0101", ""}, {"ATD", "OK\r\r>"}},
                           [](ZintObd& program) { program.send(SIGINT); }),
                  "ended before it was complete");
    const std::string status = "41 01 81 07 65 00 \r>", code = "43 01 33 00 00 00 00 \r>";
    // clang-format off
    expectFailure(converse("--clear --yes", {{"ATZ", ">"}, {"ATE0", ">"}, {"0101", status}, {"04", "7F 04 22 \r>"},
                                             {"0101", status}, {"03", code}, {"ATD", "OK\r\r>"}}),
                  "codes are still stored");
    // clang-format on
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
