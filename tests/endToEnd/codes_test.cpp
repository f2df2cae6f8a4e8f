#include "endToEnd/simulator.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

const std::string litReport = "Service Engine Soon Light is ON\n\n"
                              "Diagnostic (MIL) Codes: 3 code(s) reported\n"
                              "  P0133\n  P0301\n  U0123\n\n"
                              "Readiness\n";

Outcome codesAt(const Simulator& simulator, const QStringList& more = {})
{
    return runZint(QStringList{QStringLiteral("codes"), QStringLiteral("--port"), simulator.path()} + more);
}

QStringList words(const char* text)
{
    return QString::fromLatin1(text).split(u' ', Qt::SkipEmptyParts);
}

TEST(CodesEndToEnd, ReadsAndClears)
{
    const Simulator simulator(words("--reset-time 20 --latency 5"));
    const Outcome read = codesAt(simulator);
    EXPECT_EQ(read.status, 0) << read.errors;
    EXPECT_TRUE(read.output.starts_with(litReport)) << read.output;
    EXPECT_NE(read.output.find("  Evaporative System Test Incomplete\n"), std::string::npos) << read.output;

    const Outcome cleared = codesAt(simulator, words("--clear --yes"));
    EXPECT_EQ(cleared.status, 0) << cleared.errors;
    EXPECT_NE(cleared.output.find("OFF\n\nDiagnostic (MIL) Codes\n  No codes reported\n"), std::string::npos)
        << cleared.output;
    EXPECT_EQ(codesAt(simulator).output, cleared.output) << "the vehicle forgot that its codes were cleared";
}

TEST(CodesEndToEnd, ReadsThroughTheHabitsOfAdapters)
{
    for (const char* habit : {"--pieces 1 --piece-gap 1", "--pieces 7 --latency 30", "--line-speed 9600",
                              "--line-feeds", "--no-announcement --single-line-end", "--rubbish \\0\\xFC",
                              "--no-trailing-blank", "--speed 38400"}) {
        SCOPED_TRACE(habit);
        const bool forProgram = std::string(habit).starts_with("--speed");
        const Simulator simulator(words("--reset-time 20") + (forProgram ? QStringList() : words(habit)));
        const Outcome read = codesAt(simulator, forProgram ? words(habit) : QStringList());
        EXPECT_EQ(read.status, 0) << read.errors;
        EXPECT_TRUE(read.output.starts_with(litReport)) << read.output;
    }
}

TEST(CodesEndToEnd, FailuresSayWhy)
{
    struct Row {
        const char* simulator;
        const char* program;
        const char* complaint;
    };
    for (const Row& row : {
             Row{"--disconnect-after 2", "", "com1 - adapter disconnected"},
             Row{"--no-reset-answer", "--timeout 1", "the exchange was not complete after 1 seconds"},
             Row{"--silent-after 3", "--timeout 1", "the exchange was not complete after 1 seconds"},
             Row{"--ignition-off", "", "Please try again, ignition must be ON."},
         }) {
        SCOPED_TRACE(row.simulator);
        const Simulator simulator(words("--reset-time 20") + words(row.simulator));
        const Outcome read = codesAt(simulator, words(row.program));
        EXPECT_EQ(read.status, 1);
        EXPECT_EQ(read.output, "");
        EXPECT_NE(read.errors.find(row.complaint), std::string::npos) << read.errors;
    }
    const Outcome missing = runZint(words("codes --port /dev/no-such-port"));
    EXPECT_EQ(missing.status, 1);
    EXPECT_NE(missing.errors.find("com1 - Comm init error: 2: "), std::string::npos) << missing.errors;
}

TEST(CodesEndToEnd, UsageAndVersion)
{
    EXPECT_EQ(runZint(words("codes --clear")).status, 2);
    EXPECT_EQ(runZint(words("nonsense")).status, 2);
    EXPECT_EQ(runZint(words("--version")).output, "Zint 1.5.1\n");
    EXPECT_NE(runZint(words("--help")).output.find("--simulate"), std::string::npos);
    const Outcome noDisplay = runZint({});
    EXPECT_EQ(noDisplay.status, 1);
    EXPECT_NE(noDisplay.errors.find("there is no display"), std::string::npos);
    EXPECT_TRUE(runZint(words("codes --simulate")).output.starts_with(litReport));
}

} // namespace
} // namespace zint
