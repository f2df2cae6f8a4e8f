#include "endToEnd/fixedRun.h"
#include "endToEnd/simulator.h"
#include "endToEnd/zintObd.h"
#include "runner/keptRuns.h"
#include "sim/pseudoTerminal.h"

#include <QTest>
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>

namespace zint {
namespace {

std::ptrdiff_t fileCount(const std::string& folder)
{
    std::error_code missing;
    const std::filesystem::directory_iterator files(utf8Path(folder), missing);
    return missing ? 0 : std::distance(begin(files), end(files));
}

class PollEndToEnd : public testing::Test {
protected:
    PollEndToEnd() { TemporaryFolder::write(folder.path("fixed.obc"), fixedDesign); }

    /// A command line; names with an extension are those of files in the test's folder.
    QStringList arguments(const std::string& line) const
    {
        QStringList found = words(line.c_str());
        for (QString& word : found)
            word = word.contains(u'.') ? QString::fromStdString(folder.path(word.toStdString())) : word;
        return found;
    }

    QStringList polling(const Simulator& simulator, const std::string& options) const
    {
        return arguments("poll fixed.obc --port " + simulator.path().toStdString() + " " + options);
    }

    static std::string runsOf(const ZintObd& program)
    {
        return program.home().path(".local/share/Zint/runs");
    }

    /// Whether samples of the run have come, and are kept, in a file and under its lock.
    static bool isSampling(const ZintObd& program)
    {
        return QTest::qWaitFor([&] { return fileCount(runsOf(program)) > 1; }, patienceMs);
    }

    std::string content(const char* name) const { return contents(folder.path(name)); }

    TemporaryFolder folder;
    const std::string files = " --log run.log --export run.txt";
};

TEST_F(PollEndToEnd, WritesWhatTheVehicleSent)
{
    const Simulator simulator("--latency 0 --no-announcement");
    const auto started = std::chrono::system_clock::now();
    ZintObd program(polling(simulator, "--loops 4" + files));
    const Outcome run = program.wait();
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(line(run.output, 1), "Fixed Values (3 events)");
    EXPECT_TRUE(line(run.output, 2).starts_with("4 Loops, 8 Events, ")) << run.output;
    EXPECT_TRUE(line(run.output, 3).ends_with(" Out: 53 Err: 2")) << run.output << "with ATD at the end";
    // The least number that is displayed in hexadecimal begins at -1.
    EXPECT_EQ(run.output.substr(run.output.find("\n\n")), "\n\n"
                                                          "Event      Value  Samples         Min    Max\n"
                                                          "Barometer  99kPa        4       99kPa  99kPa\n"
                                                          "OBD type     &H1        2  &HFFFFFFFF    &H1\n"
                                                          "Not There      -        0           -      -\n");
    expectFourLoops(content("run.log"), content("run.txt"), started);
    EXPECT_EQ(fileCount(runsOf(program)), 0) << "what is saved needs no recovery";
    EXPECT_EQ(runZint(arguments("export run.log again.txt")).status, 0);
    EXPECT_EQ(content("again.txt"), content("run.txt"));
}

TEST_F(PollEndToEnd, EndsWhenItsTimeIsOverOrItIsAskedTo)
{
    for (const int signal : {0, SIGINT, SIGTERM, SIGHUP}) {
        const Simulator simulator("--latency 0");
        ZintObd program(polling(simulator, (signal == 0 ? "--seconds 1" : "--seconds 100") + files));
        if (signal != 0) {
            ASSERT_TRUE(isSampling(program));
            program.send(signal);
        }
        const Outcome run = program.wait();
        EXPECT_EQ(run.status, 0) << run.errors;
        EXPECT_TRUE(signal != 0 || run.output.find(" 1 sec, ") != std::string::npos) << run.output;
        EXPECT_NE(content("run.log").find("\r\n##2\r\n"), std::string::npos);
        EXPECT_NE(content("run.txt"), "");
        std::filesystem::remove(folder.path("run.log"));
        std::filesystem::remove(folder.path("run.txt"));
    }
}

TEST_F(PollEndToEnd, EndsAtOnceWhenAskedTwice)
{
    const Simulator simulator("--latency 2");
    ZintObd program(polling(simulator, "--loops 100000" + files));
    ASSERT_TRUE(isSampling(program));
    for (const int signal : {SIGSTOP, SIGINT, SIGTERM, SIGCONT}) // both are there before it can do anything
        program.send(signal);
    EXPECT_EQ(program.wait().status, -1);
    EXPECT_EQ(content("run.log"), "");
    const KeptRuns kept(program.home().path(".local/share/Zint"), [](auto) { return "then"; });
    ASSERT_EQ(kept.list().size(), 1U) << "it can be recovered";
    EXPECT_FALSE(KeptRuns::load(kept.list().front()).samples.isEmpty());
}

TEST_F(PollEndToEnd, FailuresSayWhyAndKeepWhatThereIs)
{
    const struct {
        const char* simulator;
        const char* program;
        const char* complaint;
        bool isSampled;
    } rows[] = {
        {"--no-announcement --disconnect-after 7", "", "com1 - adapter disconnected", true},
        {"", "--port /dev/no-such-port", "com1 - Comm init error: 2: ", false},
        {"--ignition-off", "--loops 3", "nothing was sampled", false},
        {"--no-reset-answer", "--seconds 1", "nothing was sampled", false},
        {"--no-announcement --silent-after 6", "--timeout 1", "the adapter has not answered within", true},
    };
    for (const auto& [simulator, program, complaint, isSampled] : rows) {
        TemporaryFolder::write(folder.path("run.log"), "from before");
        expectFailure(runZint(polling(Simulator(simulator), program + files)), complaint);
        EXPECT_EQ(content("run.log").find("\r\n##2\r\n") != std::string::npos, isSampled) << simulator;
        EXPECT_EQ(content("run.log") == "from before", !isSampled) << simulator;
        EXPECT_EQ(content("run.txt") != "", isSampled) << simulator;
        std::filesystem::remove(folder.path("run.txt"));
    }
}

TEST_F(PollEndToEnd, FilesThatCantBeReadOrWrittenAreTold)
{
    const Simulator simulator("--latency 2");
    TemporaryFolder::write(folder.path("bad.obc"), "title\r\n|fast\r\n");
    const std::pair<QStringList, const char*> rows[] = {
        {polling(simulator, "--log none/run.log"), "none/run.log\" can't be written: No such"},
        {arguments("poll none.obc"), "can't be read: No such"},
        {arguments("poll bad.obc"), "bad.obc\" is no polling design: Type mismatch"},
        {arguments("export bad.obc run.txt"), "bad.obc\": This is no whole data log, line 2: "},
    };
    for (const auto& [command, reason] : rows) {
        const Outcome run = runZint(command);
        expectFailure(run, reason);
        EXPECT_EQ(run.output + content("run.txt"), "");
    }
    std::filesystem::create_directory(folder.path("gone")); // goes away while the run is on
    ZintObd program(polling(simulator, "--loops 100000 --log gone/run.log --export run.txt"));
    ASSERT_TRUE(isSampling(program));
    std::filesystem::remove_all(folder.path("gone"));
    program.send(SIGINT);
    expectFailure(program.wait(), "run.log\" can't be written");
    EXPECT_NE(content("run.txt"), "") << "the other file is written all the same";
    EXPECT_EQ(fileCount(runsOf(program)), 1) << "it can be recovered";
}

TEST_F(PollEndToEnd, TellsThatRepliesDoNotMatchTheRequests)
{
    const std::string fixed = fixedDesign;
    TemporaryFolder::write(folder.path("fixed.obc"), "Headers on\r\nATH1" + fixed.substr(fixed.find('|')));
    expectFailure(runZint(polling(Simulator("--no-announcement"), "--loops 9")),
                  "Replies do not match the requests: stop and start again");
}

TEST_F(PollEndToEnd, ATerminalShowsTheProgress)
{
    const Simulator simulator("--latency 5");
    for (const char* const options : {"--seconds 1", "--loops 9 --quiet"}) {
        PseudoTerminal terminal;
        ZintObd program(polling(simulator, options), {}, QString::fromStdString(terminal.path()));
        EXPECT_EQ(program.wait().status, 0) << options;
        std::string shown; // a terminal hands the last bytes over when it has time
        const std::regex progress(R"((\r[0-9]+%, [0-9]+ Loops(, [0-9:]+ left)? *)+\r *\r)");
        if (std::string_view(options).ends_with("quiet"))
            EXPECT_EQ(terminal.read(), "");
        else
            EXPECT_TRUE(QTest::qWaitFor([&] { return std::regex_match(shown += terminal.read(), progress); },
                                        patienceMs))
                << options << shown;
    }
}

} // namespace
} // namespace zint
