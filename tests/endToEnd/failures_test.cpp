#include "endToEnd/programs.h"

#include <deque>

namespace zint {
namespace {

TEST(FailuresEndToEnd, EachCommandSaysOnceWhyAndPrintsWhatItHas)
{
    const char* const silent = "the adapter has not answered within 1 second\n";
    const struct {
        const char* simulator;
        const char* command;
        const char* complaint;
        const char* end = ""; ///< of the output, up to the counters of a scan
        const char* outputFile = "";
    } rows[] = {
        {"--disconnect-after 2", "codes", "com1 - adapter disconnected\n"},
        {"--silent-after 2", "codes --timeout 1", "the exchange was not complete after 1 second\n"},
        {"--ignition-off", "codes", "must be ON.\nThe adapter answered: BUS INIT: ...ERROR\n"},
        {"", "codes --port /dev/no-such-port", "com1 - Comm init error: 2: "},
        {"", "codes", "the report could not be written to standard output\n", "", "/dev/full"},
        {"--disconnect-after 4", "scan", "com1 - adapter disconnected\n",
         "V 0101  83 07 65 04 \nScan Halted\n"},
        {"--silent-after 3", "scan --timeout 1", silent, "V 0100  BE 3F B8 13 \nScan Halted\n"},
        {"", "scan --header nonsen", "com1 Error on set header", "\nError setting header\nScan Completed\n"},
        {"", "scan --mode 4", "no request was sent or answered", "functional scans...Scan Completed\n"},
        {"--ignition-off", "scan --pid 0", "no reply was valid", "\nScan Completed\n"},
        {"", "scan", "the report could not be written to standard output\n", "", "/dev/full"},
        {"--no-reset-answer", "terminal --timeout 1", silent, "\n"},
        {"--silent-after 2", "terminal --timeout 1", silent, ">ATS0  OK\n"},
        {"--single-line-end", "terminal --dec", "com1 - Overflow: a number is larger",
         ">0100  4100BE3FB813\n>010D  4263168 \n"}, // no reason to stop
        {"", "terminal", "the report could not be written to standard output\n", "", "/dev/full"},
    };
    std::deque<VehicleRun> runs;
    for (const auto& row : rows) {
        const std::string simulator = std::string("--no-announcement ") + row.simulator;
        runs.emplace_back(simulator, row.command, Channels{.output = row.outputFile})
            .program.type("ATS0\n0100\n010D\n"); // the terminal reads it
    }
    for (const auto& row : rows) {
        SCOPED_TRACE(row.command + std::string(" ") + row.simulator);
        const Outcome run = runs.front().program.wait();
        runs.pop_front();
        expectFailure(run, row.complaint);
        EXPECT_EQ(run.errors.rfind("zint-obd: "), 0U) << run.errors;
        EXPECT_TRUE(run.output.substr(0, run.output.find("  Events(s):")).ends_with(row.end)) << run.output;
    }
}

} // namespace
} // namespace zint
