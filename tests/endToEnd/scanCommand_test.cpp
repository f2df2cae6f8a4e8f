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

Outcome scanOf(const Simulator& simulator, const char* options)
{
    return runZint(scanArguments(simulator, options));
}

void expectOutput(const Outcome& run, const char* output)
{
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(run.output, output);
}

TEST(ScanCommandEndToEnd, PrintsWhatTheWindowShows)
{
    for (const char* pieces : {"--latency 0", "--latency 2 --pieces 1", "--latency 0 --line-feeds"}) {
        const Simulator simulator((std::string("--no-announcement ") + pieces).c_str());
        expectOutput(scanOf(simulator, "--mode 1-9 --pid none"),
                     "Header: 686AF1 Mode:1-9 Pid:- Suffix:\n"
                     "N 01 NO DATA\n"
                     "N 02 NO DATA\n"
                     "V 03  01 33 03 01 C1 23 \n"
                     "Skipping mode 4 functional scans...N 05 NO DATA\n"
                     "N 06 NO DATA\n"
                     "V 07  04 20 00 00 00 00 \n"
                     "N 08 NO DATA\n"
                     "N 09 NO DATA\n"
                     "Scan Completed\n  Events(s):8\n    No Data:6\n    Invalid:0\n       Zero:0\n\n\n");
        expectOutput(scanOf(simulator, "--mode 9 --pid 0-a --show valid --ascii --decimal"),
                     "Header: 686AF1 Mode:9-9 Pid:0-A Suffix:\n"
                     "V 0900  01 C0 00 00 00    [.....] 7516192768\n"
                     "V 0901  05    [.] 5\n"
                     "V 0902  01 00 00 00 55    [....U] 4294967381\n"
                     "Scan Completed\n  Events(s):11\n    No Data:8\n    Invalid:0\n       Zero:0\n\n\n");
        expectOutput(scanOf(simulator, "--mode 2 --pid 0 --suffix 00"),
                     "Header: 686AF1 Mode:2-2 Pid:0-0 Suffix:00\n"
                     "V 020000  00 7E 3F 80 00 \n"
                     "Scan Completed\n  Events(s):1\n    No Data:0\n    Invalid:0\n       Zero:0\n\n\n");
    }
}

TEST(ScanCommandEndToEnd, ErasesWhenThatIsAllowed)
{
    const Simulator simulator("--latency 0 --no-announcement");
    const char* const erasing = "--header 6810f1 --mode 3-4 --pid none";
    const Outcome refused = scanOf(simulator, erasing);
    EXPECT_EQ(refused.status, 2);
    EXPECT_EQ(refused.output, "");
    for (const char* words : {"erases the trouble codes", "--allow-clear"})
        EXPECT_NE(refused.errors.find(words), std::string::npos) << refused.errors;
    const auto scan = [&] {
        return scanOf(simulator, (std::string(erasing) + " --allow-clear --show nonzero").c_str());
    };
    expectOutput(scan(), "Header: 6810F1 Mode:3-4 Pid:- Suffix:\n"
                         "V 03  01 33 03 01 C1 23 \n"
                         "Scan Completed\n  Events(s):2\n    No Data:0\n    Invalid:0\n       Zero:1\n\n\n");
    expectOutput(scan(), "Header: 6810F1 Mode:3-4 Pid:- Suffix:\n"
                         "Scan Completed\n  Events(s):2\n    No Data:0\n    Invalid:0\n       Zero:2\n\n\n");
}

TEST(ScanCommandEndToEnd, FailuresSayWhyAndSumUp)
{
    const struct {
        const char* simulator;
        const char* program;
        const char* complaint;
        const char* end; ///< of the output, up to the counters
    } rows[] = {
        {"--disconnect-after 4", "", "com1 - adapter disconnected", "V 0101  83 07 65 04 \nScan Halted\n"},
        {"--no-reset-answer", "--timeout 1", "the adapter has not answered within 1 second\n",
         "Suffix:\nScan Halted\n"},
        {"--silent-after 3", "--timeout 1", "the adapter has not answered within 1 second\n",
         "V 0100  BE 3F B8 13 \nScan Halted\n"},
        {"", "--header nonsen", "com1 Error on set header", "\nError setting header\nScan Completed\n"},
        {"", "--port /dev/no-such-port", "com1 - Comm init error: 2: ", ""},
    };
    for (const auto& [options, program, complaint, end] : rows) {
        const Simulator simulator((std::string("--no-announcement --latency 0 ") + options).c_str());
        const Outcome run = scanOf(simulator, program);
        expectFailure(run, complaint);
        EXPECT_EQ(std::ranges::count(run.errors, '\n'), 1) << run.errors;
        const auto counters = run.output.find("  Events(s):");
        EXPECT_EQ(counters == std::string::npos, std::string_view(end).empty()) << run.output;
        EXPECT_TRUE(std::string_view(run.output).substr(0, counters).ends_with(end)) << run.output;
    }
    const Simulator simulator("--latency 0");
    const Outcome full = runZint(scanArguments(simulator, ""), QStringLiteral("/dev/full"));
    expectFailure(full, "could not be written");
    EXPECT_EQ(std::ranges::count(full.errors, '\n'), 1) << full.errors;
}

TEST(ScanCommandEndToEnd, PrintsEachReplyAtOnceAndEndsProperlyWhenAskedTo)
{
    const TemporaryFolder folder;
    const std::string file = folder.path("output");
    for (const int signal : {SIGINT, SIGTERM}) {
        const Simulator simulator("--latency 5 --no-announcement");
        ZintObd program(scanArguments(simulator, "--pid 0-FFFF"), QString::fromStdString(file));
        const std::string begin = "Header: 686AF1 Mode:01-01 Pid:0-FFFF Suffix:\n";
        ASSERT_TRUE(QTest::qWaitFor([&] { return contents(file).size() > begin.size(); }, patienceMs));
        EXPECT_TRUE(contents(file).starts_with(begin)) << contents(file);
        program.send(signal);
        const Outcome run = program.wait();
        EXPECT_EQ(run.status, 0) << run.errors;
        EXPECT_EQ(run.errors, "");
        EXPECT_NE(contents(file).find("\nScan Halted\n  Events(s):"), std::string::npos) << contents(file);
    }
}

TEST(ScanCommandEndToEnd, ATerminalShowsTheProgress)
{
    const Simulator simulator("--latency 20");
    for (const char* options : {"", "--quiet"}) {
        PseudoTerminal terminal;
        ZintObd program(scanArguments(simulator, options), {}, QString::fromStdString(terminal.path()));
        EXPECT_EQ(program.wait().status, 0) << options;
        const std::string shown = terminal.read();
        const std::regex progress(R"((\r[0-9]+%, [0-9]+ of 32(, [0-9:]+ left)? *|\r *\r)+)");
        if (std::string_view(options).empty())
            EXPECT_TRUE(std::regex_match(shown, progress) && shown.ends_with(" \r")) << shown;
        else
            EXPECT_EQ(shown, "");
    }
}

} // namespace
} // namespace zint
