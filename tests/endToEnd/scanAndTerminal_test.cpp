#include "endToEnd/programs.h"
#include "sim/pseudoTerminal.h"

#include <algorithm>

namespace zint {
namespace {

TEST(ScanCommandEndToEnd, PrintsWhatTheWindowShows)
{
    const Outcome run = VehicleRun("", "scan --pid 0-2 --show data --ascii --decimal --names").program.wait();
    EXPECT_EQ(run.all(), "0|Header: 686AF1 Mode:01-01 Pid:0-2 Suffix:\n"
                         "V 0100  BE 3F B8 13    [.?..] 3191846931 Supported PID\n"
                         "V 0101  83 07 65 04    [..e.] 2198299908 MIL Status\n"
                         "Scan Completed\n  Events(s):3\n    No Data:1\n    Invalid:0\n       Zero:0\n\n\n|");
}

TEST(ScanCommandEndToEnd, ShowsItsProgressAndEndsProperlyWhenAskedTo)
{
    const TemporaryFolder folder;
    const std::string file = folder.path("output");
    PseudoTerminal terminal;
    VehicleRun scan("--no-announcement", "scan --pid 0-7F", {.output = file, .errors = terminal.path()});
    std::string shown;
    ASSERT_TRUE(waitFor([&] { return (shown += terminal.read()).find("%, ") != std::string::npos; }));
    scan.program.send(SIGINT);
    EXPECT_EQ(scan.program.wait().status, 0);
    EXPECT_NE(contents(file).find("\nScan Halted\n  Events(s):"), std::string::npos) << contents(file);
}

TEST(TerminalCommandEndToEnd, SendsLinesAndPrintsWhatTheWindowShows)
{
    VehicleRun run(R"(--no-announcement --pieces 7 --line-feeds --leading-line-end --after-prompt \r\n)",
                   "terminal --dec");
    run.program.type("010D\r\n0100\nATZZ\n\n0902");
    const auto [status, output, errors] = run.program.wait();
    EXPECT_EQ(status, 0) << errors;
    EXPECT_TRUE(output.starts_with("Initializing...ATZ")) << output;
    EXPECT_EQ(output.substr(std::min(output.find(">010D"), output.size())),
              ">010D  65  13  0  \n>0100  65  0  190  63  184  19  \n>ATZZ  ?\n>  ?\n"
              ">0902  73  2  1  0  0  0  85  \n73  2  2  57  90  78  84  \n73  2  3  66  68  50  57  \n"
              "73  2  4  49  90  48  48  \n73  2  5  48  48  52  50  \n");
}

TEST(TerminalCommandEndToEnd, WhatIsPipedWaitsAndWhatIsTypedGoesOutAtOnce)
{
    const TemporaryFolder folder;
    const std::string file = folder.path("output");
    const auto shows = [&](const char* end) {
        return waitFor([&] { return contents(file).ends_with(end); });
    };
    VehicleRun piped("--silent-after 2", "terminal", {.output = file});
    piped.program.type("0100\n0101\n");
    EXPECT_TRUE(shows("\n>0100  ")) << contents(file);
    piped.program.send(SIGINT);
    expectFailure(piped.program.wait(), "ended before the adapter had answered all commands");

    PseudoTerminal keyboard;
    VehicleRun typed("--silent-after 2", "terminal", {.output = file, .input = keyboard.path()});
    EXPECT_TRUE(waitFor([&] { return keyboard.takeOpening(); }));
    keyboard.write("0100\n0101\n");
    EXPECT_TRUE(shows("\n>0100  >0101  ")) << contents(file);
    typed.program.send(SIGTERM);
    EXPECT_EQ(typed.program.wait().status, 0);
}

} // namespace
} // namespace zint
