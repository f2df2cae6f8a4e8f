#include "endToEnd/simulator.h"
#include "endToEnd/zintObd.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

Outcome terminalOf(const Simulator& simulator, const char* options, const char* input)
{
    ZintObd program(words("terminal --port") + QStringList(simulator.path()) + words(options));
    program.type(input);
    return program.wait();
}

TEST(TerminalCommandEndToEnd, SendsLinesAndPrintsWhatTheWindowShows)
{
    for (const char* pieces : {"", "--pieces 1", "--pieces 7 --line-feeds"}) {
        const Outcome run =
            terminalOf(Simulator((std::string("--no-announcement --latency 5 ") + pieces).c_str()), "--dec",
                       "010D\r\n0100\nATZZ\n\n0902");
        EXPECT_EQ(run.status, 0) << run.errors;
        const std::string_view output = run.output;
        const auto first = output.find("\n>010D");
        ASSERT_NE(first, std::string_view::npos) << output;
        EXPECT_TRUE(output.starts_with("Initializing...ATZ")) << output;
        EXPECT_EQ(output.substr(first + 1), ">010D  65  13  0  \n"
                                            ">0100  65  0  190  63  184  19  \n"
                                            ">ATZZ  ?\n"
                                            ">  ?\n"
                                            ">0902  73  2  1  0  0  0  85  \n"
                                            "73  2  2  57  90  78  84  \n"
                                            "73  2  3  66  68  50  57  \n"
                                            "73  2  4  49  90  48  48  \n"
                                            "73  2  5  48  48  52  50  \n")
            << pieces;
    }
}

TEST(TerminalCommandEndToEnd, TellsWhatFailed)
{
    const struct {
        const char* simulator;
        const char* options;
        const char* complaint;
    } rows[] = {
        {"--disconnect-after 3", "", "com1 - adapter disconnected"},
        {"--no-reset-answer", "--timeout 1", "the adapter has not answered within 1 seconds"},
        {"--silent-after 2", "--timeout 1", "the adapter has not answered within 1 seconds"},
        {"", "--port /dev/no-such-port", "com1 - Comm init error: 2: "},
    };
    for (const auto& [simulator, options, complaint] : rows)
        expectFailure(terminalOf(Simulator(simulator), options, "0100\n0101\n"), complaint);
}

} // namespace
} // namespace zint
