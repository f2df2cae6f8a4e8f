#include "endToEnd/programs.h"
#include "link/transcriptText.h"

#include <regex>

namespace zint {
namespace {

/// A transcript without its comments, which tell the time.
std::string wire(const std::string& path)
{
    std::string lines;
    readTranscriptLines(contents(path), [&](const TranscriptLine& line) {
        if (line.kind != TranscriptLine::Kind::comment)
            lines += (line.kind == TranscriptLine::Kind::command ? "> " : "") + std::string(line.text) + "\n";
    });
    return lines;
}

/// What a command has printed without the date of a report.
std::string timeless(const std::string& text)
{
    return std::regex_replace(text, std::regex("[A-Z][a-z]+day, .*[AP]M"), "");
}

TEST(TranscriptEndToEnd, WhatWasRecordedPlaysBackByteForByte)
{
    const TemporaryFolder folder;
    const std::string recorded = folder.path("recorded.txt");
    const std::string again = folder.path("again.txt");
    TemporaryFolder::write(folder.path("four.obc"),
                           "Four\r\n|-1\r\n010C|RPM|5|1|0|0|0\r\n010D|Speed|7|1|0|0|0\r\n"
                           "0105|Coolant|4|2|0|0|0\r\nEOP - end of Parms\r\n");
    for (const auto& [adapter, command] :
         std::vector<std::pair<std::string, std::string>>{{"--protocol can --units 2", "report"},
                                                          {"--line-feeds", "report --quick"},
                                                          {"", "poll --loops 20 " + folder.path("four.obc")},
                                                          {"--protocol can", "scan --mode 9 --pid 0-A"}}) {
        SCOPED_TRACE(command);
        Simulator simulator(adapter);
        const Outcome first = runZint(simulator.with(command + " --transcript " + recorded));
        EXPECT_EQ(first.status, 0) << first.errors;
        const Outcome second =
            runZint(words("--port replay:" + recorded + " " + command + " --transcript " + again));
        EXPECT_EQ(second.status, first.status) << second.errors;
        EXPECT_EQ(timeless(second.output), timeless(first.output));
        EXPECT_EQ(wire(again), wire(recorded));
        EXPECT_GT(wire(recorded).size(), 400U);
    }
}

TEST(TranscriptEndToEnd, TellsOfAFileBeforeTheVehicleIsAsked)
{
    expectFailure(runZint(words("report --simulate --transcript /nowhere/car.txt")),
                  "\"/nowhere/car.txt\" can't be written: No such file or directory");
    expectFailure(runZint(words("report --port replay:/nowhere/car.txt")), "can't be read: No such file");
}

} // namespace
} // namespace zint
