#include "endToEnd/fixedRun.h"
#include "endToEnd/simulator.h"
#include "endToEnd/zintObd.h"
#include "runner/keptRuns.h"
#include "sim/pseudoTerminal.h"

#include <QElapsedTimer>
#include <QTest>
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <sstream>

namespace zint {
namespace {

std::size_t fileCount(const std::string& folder)
{
    std::error_code missing;
    const std::filesystem::directory_iterator files(utf8Path(folder), missing);
    return missing ? 0 : static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

class PollEndToEnd : public testing::Test {
protected:
    PollEndToEnd() { TemporaryFolder::write(design, fixedDesign); }

    QStringList pollArguments(const Simulator& simulator, const char* options) const
    {
        return words("poll --port") + QStringList{simulator.path(), QString::fromStdString(design)} +
               words(options);
    }

    QStringList fileArguments() const
    {
        return {QStringLiteral("--log"), QString::fromStdString(log), QStringLiteral("--export"),
                QString::fromStdString(table)};
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

    TemporaryFolder folder;
    std::string design = folder.path("fixed.obc");
    std::string log = folder.path("run.log");
    std::string table = folder.path("run.txt");
};

TEST_F(PollEndToEnd, WritesWhatTheVehicleSent)
{
    const Simulator simulator("--latency 0 --no-announcement");
    const auto started = std::chrono::system_clock::now();
    ZintObd program(pollArguments(simulator, "--loops 4") + fileArguments());
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
    expectFourLoops(contents(log), contents(table), started);
    EXPECT_EQ(fileCount(runsOf(program)), 0U) << "what is saved needs no recovery";

    const std::string again = folder.path("again.txt");
    const Outcome turned =
        runZint({QStringLiteral("export"), QString::fromStdString(log), QString::fromStdString(again)});
    EXPECT_EQ(turned.status, 0) << turned.errors;
    EXPECT_EQ(contents(again), contents(table));
}

TEST_F(PollEndToEnd, EndsWhenItsTimeIsOverOrItIsAskedTo)
{
    for (const int signal : {0, SIGINT, SIGTERM, SIGHUP}) {
        const Simulator simulator("--latency 0");
        ZintObd program(pollArguments(simulator, signal == 0 ? "--seconds 1" : "--seconds 100") +
                        fileArguments());
        if (signal != 0) {
            ASSERT_TRUE(isSampling(program));
            program.send(signal);
        }
        const Outcome run = program.wait();
        EXPECT_EQ(run.status, 0) << run.errors;
        EXPECT_TRUE(signal != 0 || run.output.find(" 1 sec, ") != std::string::npos) << run.output;
        EXPECT_NE(contents(log).find("\r\n##2\r\n"), std::string::npos);
        EXPECT_TRUE(fileExists(table));
        for (const std::string& path : {log, table})
            std::filesystem::remove(path);
    }
}

TEST_F(PollEndToEnd, EndsAtOnceWhenAskedTwice)
{
    const Simulator simulator("--latency 2");
    ZintObd program(pollArguments(simulator, "--loops 100000") + fileArguments());
    ASSERT_TRUE(isSampling(program));
    program.send(SIGSTOP); // so that both are there before it can do anything about the first
    program.send(SIGINT);
    program.send(SIGTERM);
    program.send(SIGCONT);
    EXPECT_EQ(program.wait().status, -1);
    EXPECT_FALSE(fileExists(log));

    const KeptRuns kept(runsOf(program), [](auto) { return "then"; });
    ASSERT_EQ(kept.list().size(), 1U) << "it can be recovered";
    const KeptRun run = KeptRuns::load(kept.list().front());
    EXPECT_EQ(run.design.title, "Fixed Values");
    EXPECT_FALSE(run.samples.isEmpty());
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
        TemporaryFolder::write(log, "from before");
        expectFailure(runZint(pollArguments(Simulator(simulator), program) + fileArguments()), complaint);
        EXPECT_EQ(contents(log).find("\r\n##2\r\n") != std::string::npos, isSampled) << simulator;
        EXPECT_EQ(contents(log) == "from before", !isSampled) << simulator;
        EXPECT_EQ(fileExists(table), isSampled) << simulator;
        std::filesystem::remove(table);
    }
}

TEST_F(PollEndToEnd, FilesThatCantBeReadOrWrittenAreTold)
{
    const Simulator simulator("--latency 2");
    const auto refused = [&](const QStringList& arguments, const char* reason) {
        const Outcome run = runZint(arguments);
        expectFailure(run, reason);
        EXPECT_EQ(run.output, "");
    };
    const QString missing = QString::fromStdString(folder.path("none/run"));
    refused(pollArguments(simulator, "--log") + QStringList{missing}, "none/run\" can't be written: No such");
    refused(words("poll") + QStringList{missing}, "can't be read: No such");
    const QString bad = QString::fromStdString(folder.path("bad"));
    TemporaryFolder::write(folder.path("bad"), "title\r\n|fast\r\n");
    refused(words("poll") + QStringList{bad}, "bad\" is no polling design: Type mismatch");
    refused(words("export") + QStringList{bad, QString::fromStdString(table)},
            "bad\": This is no whole data log, line 2: ");
    EXPECT_FALSE(fileExists(table));

    const TemporaryFolder other; // goes away while the run is on; the other file must be written all the same
    ZintObd program(pollArguments(simulator, "--loops 100000 --log") +
                    QStringList{QString::fromStdString(other.path("run.log")), QStringLiteral("--export"),
                                QString::fromStdString(table)});
    ASSERT_TRUE(isSampling(program));
    std::filesystem::remove_all(other.path());
    program.send(SIGINT);
    expectFailure(program.wait(), "run.log\" can't be written");
    EXPECT_TRUE(fileExists(table));
    EXPECT_EQ(fileCount(runsOf(program)), 1U) << "it can be recovered";
}

TEST_F(PollEndToEnd, TellsThatRepliesDoNotMatchTheRequests)
{
    const std::string fixed = fixedDesign;
    TemporaryFolder::write(design, "Headers on\r\nATH1" + fixed.substr(fixed.find('|')));
    expectFailure(runZint(pollArguments(Simulator("--no-announcement"), "--loops 9")),
                  "Replies do not match the requests: stop and start again");
}

TEST_F(PollEndToEnd, ATerminalShowsTheProgress)
{
    const Simulator simulator("--latency 5");
    for (const char* options : {"--seconds 1", "--loops 9 --quiet"}) {
        PseudoTerminal terminal;
        ZintObd program(pollArguments(simulator, options), {}, QString::fromStdString(terminal.path()));
        EXPECT_EQ(program.wait().status, 0) << options;
        const std::string shown = terminal.read();
        const std::regex progress(R"((\r[0-9]+%, [0-9]+ Loops(, [0-9:]+ left)? *)+\r *\r)");
        if (std::string_view(options).ends_with("quiet"))
            EXPECT_EQ(shown, "");
        else
            EXPECT_TRUE(std::regex_match(shown, progress)) << options << shown;
    }
}

} // namespace
} // namespace zint
