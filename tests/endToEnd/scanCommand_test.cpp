#include "endToEnd/simulator.h"
#include "endToEnd/zintObd.h"
#include "sim/pseudoTerminal.h"

#include <QTest>
#include <gtest/gtest.h>

#include <algorithm>
#include <regex>

namespace zint {
namespace {

QStringList scanArguments(const Simulator& simulator, const char* options)
{
    return words("scan --port") + QStringList(simulator.path()) + words(options);
}

TEST(ScanCommandEndToEnd, PrintsWhatTheWindowShowsWithTheHabitsOfAdapters)
{
    for (const char* habits : {"--latency 0", "--latency 2 --pieces 1 --no-announcement", "--protocol can",
                               R"(--line-feeds --leading-line-end --after-prompt \r\n)"}) {
        const Outcome run =
            runZint(scanArguments(Simulator(habits), "--pid 0-2 --show data --ascii --decimal --names"));
        EXPECT_EQ(std::to_string(run.status) + run.errors + run.output,
                  "0Header: 686AF1 Mode:01-01 Pid:0-2 Suffix:\n"
                  "V 0100  BE 3F B8 13    [.?..] 3191846931 Supported PID\n"
                  "V 0101  83 07 65 04    [..e.] 2198299908 MIL Status\n"
                  "Scan Completed\n  Events(s):3\n    No Data:1\n    Invalid:0\n       Zero:0\n\n\n")
            << habits;
    }
    const Simulator erased("--latency 0 --no-announcement");
    for (const char* codes : {"V 03  01 33 03 01 C1 23 \n", "V 03  00 00 00 00 00 00 \n"})
        EXPECT_NE(runZint(scanArguments(erased, "--header 6810f1 --mode 3-4 --pid none --allow-clear"))
                      .output.find(std::string(codes) + "V 04  \nScan Completed\n  Events(s):2\n"),
                  std::string::npos);
}

TEST(ScanCommandEndToEnd, FailuresSayWhyAndSumUp)
{
    const char* const silent = "the adapter has not answered within 1 second\n";
    const struct {
        const char* simulator;
        const char* program;
        const char* complaint;
        const char* end; ///< of the output, up to the counters
    } rows[] = {
        {"--disconnect-after 4", "", "com1 - adapter disconnected", "V 0101  83 07 65 04 \nScan Halted\n"},
        {"--no-reset-answer", "--timeout 1", silent, "Suffix:\nScan Halted\n"},
        {"--silent-after 3", "--timeout 1", silent, "V 0100  BE 3F B8 13 \nScan Halted\n"},
        {"", "--header nonsen", "com1 Error on set header", "\nError setting header\nScan Completed\n"},
        {"", "--mode 4", "no request was sent or answered", "functional scans...Scan Completed\n"},
        {"--ignition-off", "--pid 0", "no reply was valid", "\nScan Completed\n"},
        {"", "--port /dev/no-such-port", "com1 - Comm init error: 2: ", ""},
    };
    for (const auto& [options, program, complaint, end] : rows) {
        const Simulator simulator((std::string("--no-announcement --latency 0 ") + options).c_str());
        const Outcome run = runZint(scanArguments(simulator, program));
        expectFailure(run, complaint);
        EXPECT_EQ(std::ranges::count(run.errors, '\n'), 1) << run.errors;
        EXPECT_TRUE(run.output.substr(0, run.output.find("  Events(s):")).ends_with(end)) << run.output;
    }
}

TEST(ScanCommandEndToEnd, ShowsItsProgressAndEndsProperlyWhenAskedTo)
{
    const TemporaryFolder folder;
    const std::string file = folder.path("output");
    const Simulator simulator("--latency 20 --no-announcement");
    PseudoTerminal terminal;
    ZintObd program(scanArguments(simulator, "--pid 0-FFFF"), QString::fromStdString(file),
                    QString::fromStdString(terminal.path()));
    const auto reads = [&](const char* text) { return contents(file).find(text) != std::string::npos; };
    ASSERT_TRUE(QTest::qWaitFor([&] { return reads("N 0003 NO DATA\n") || reads("010003"); }, patienceMs));
    program.send(SIGINT);
    EXPECT_EQ(program.wait().status, 0);
    EXPECT_TRUE(reads("\nScan Halted\n  Events(s):")) << contents(file);
    std::string shown; // a terminal hands the last bytes over when it has time
    const std::regex progress(R"((\r[0-9]+%, [0-9]+ of 65536(, [0-9:]+ left)? *|\r *\r)+)");
    EXPECT_TRUE(QTest::qWaitFor([&] { return (shown += terminal.read()).ends_with(" \r"); }, patienceMs));
    EXPECT_TRUE(std::regex_match(shown, progress)) << shown;
}

} // namespace
} // namespace zint
