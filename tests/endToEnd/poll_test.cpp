#include "endToEnd/programs.h"
#include "forms/formTest.h"
#include "platform/dateText.h"
#include "runner/keptRuns.h"
#include "runner/window/obdPollForm.h"
#include "sim/pseudoTerminal.h"
#include "support/designOf.h"
#include "support/sampleTimes.h"

#include <QDir>

#include <algorithm>
#include <deque>
#include <ranges>
#include <regex>

namespace zint {
namespace {

using RunnerEndToEnd = FormTest;

TEST_F(RunnerEndToEnd, ARunSurvivesThreePullsAndARestartWithAllSamples)
{
    design = designOf({{.code = "0133", .conversion = 9, .frequency = 1},
                       {.code = "011C", .conversion = 20, .frequency = 2, .offset = 1}});
    device = folder.path("obd");
    open<obdPollForm>(context);
    click("reconnect");
    type("textSampleCnt", "40");
    click("mnuResetVal");
    std::optional<Simulator> simulator;
    const auto plugIn = [&](const std::string& options) {
        simulator.reset();
        simulator.emplace("--no-announcement --protocol can --link " + device + " " + options);
    };
    const auto expectToSee = [&](const char* control, const char* text) {
        EXPECT_TRUE(waitFor([&] { return textOf(control).contains(QLatin1String(text)); }))
            << text << ": " << shown("statusBox labelStats");
    };
    const auto expectLoss = [&] { expectToSee("statusBox", "com1 adapter gone, waiting for it"); };
    plugIn("--disconnect-after 9");
    click("comStart");
    expectLoss();
    plugIn("--disconnect-after 14");
    expectToSee("statusBox", "com1 Polling - reconnected once");
    expectLoss();
    plugIn("--disconnect-after 1");
    expectToSee("labelStats", "Err: 3"); // it was lost while it was set up
    plugIn("--latency 30");
    expectToSee("statusBox", "com1 Polling - reconnected 2 times");
    simulator.reset();
    expectLoss();
    plugIn("");
    expectToSee("statusBox", "com1 Polling - reconnected 3 times");
    expectToSee("statusBox", "Completed Polling, all samples filled");
    EXPECT_TRUE(shown("statLab1").starts_with("40 Loops, 60 Events, ")) << shown("statLab1");
    form->close();
    EXPECT_EQ(sampleTimes(KeptRuns::load(KeptRuns(folder.path(), dateText).list().at(0)).samples).size(),
              60U);
}

// Asks for values that stay the same all the time, one that the vehicle does not know, and one never.
const std::string fixedEvents = "|-1\r\n"
                                "0133|Barometer|9|1|0|0|0\r\n"
                                "0105|Unpolled|4|0|0|0|0\r\n"
                                "011C|OBD type|20|2|1|0|0\r\n"
                                "010A|Not There|0|3|0|0|0\r\n"
                                "EOP - end of Parms\r\n";

std::string line(const std::string& text, int number)
{
    return fromQt(toQt(text).section(u'\n', number, number).remove(u'\r'));
}

struct PollEndToEnd : testing::Test {
    TemporaryFolder folder;

    PollEndToEnd()
    {
        TemporaryFolder::write(folder.path("fixed.obc"), "Fixed Values\r\n" + fixedEvents);
        TemporaryFolder::write(folder.path("headers.obc"), "Headers on\r\nATH1" + fixedEvents);
        TemporaryFolder::write(folder.path("bad.obc"), "title\r\n|fast\r\n");
    }

    /// Names with an extension are those of files in the test's folder.
    std::string inFolder(const std::string& command) const
    {
        return std::regex_replace(command, std::regex(R"(\S+\.\S+)"), folder.path("$&"));
    }

    std::string content(const std::string& name) const { return contents(folder.path(name)); }

    static std::string dataFolder(const ZintObd& program) { return program.home().path(".local/share/Zint"); }

    static qsizetype keptFiles(const ZintObd& program)
    {
        return QDir(toQt(dataFolder(program) + "/runs")).entryList(QDir::Files).size();
    }

    /// Whether samples of the run have come, and are kept, in a file and under its lock.
    static bool isSampling(const ZintObd& program)
    {
        return waitFor([&] { return keptFiles(program) > 1; });
    }
};

TEST_F(PollEndToEnd, WritesWhatTheVehicleSent)
{
    const Simulator simulator("--latency 0 --no-announcement");
    const auto started = std::chrono::system_clock::now();
    ZintObd program(simulator.with(inFolder("poll fixed.obc --loops 4 --log run.log --export run.txt")));
    const Outcome run = program.wait();
    EXPECT_EQ(std::to_string(run.status) + run.errors, "0");
    EXPECT_EQ(line(run.output, 0), "Fixed Values (3 events)");
    EXPECT_TRUE(line(run.output, 1).starts_with("4 Loops, 8 Events, ")) << run.output;
    EXPECT_TRUE(line(run.output, 2).ends_with(" Out: 53 Err: 2")) << run.output << "with ATD at the end";
    // The least number that is displayed in hexadecimal begins at -1.
    EXPECT_EQ(run.output.substr(run.output.find("\n\n")), "\n\n"
                                                          "Event      Value  Samples         Min    Max\n"
                                                          "Barometer  99kPa        4       99kPa  99kPa\n"
                                                          "OBD type     &H1        2  &HFFFFFFFF    &H1\n"
                                                          "Not There      -        0           -      -\n");
    const std::string log = content("run.log");
    const std::string date = line(log, 6);
    const auto isThen = [&](int seconds) {
        return dateText(started + std::chrono::seconds(seconds)) == date;
    };
    EXPECT_TRUE(std::ranges::any_of(std::views::iota(0, 10), isThen)) << date;
    EXPECT_EQ(std::regex_replace(log.substr(log.find(" 8 ")), std::regex("\n[0-9],"), "\nT,"),
              " 8 \r\n##1\r\nT,99\r\nT,99\r\nT,99\r\nT,99\r\n##2\r\nT,1\r\nT,1\r\n");
    const std::string table = content("run.txt");
    EXPECT_TRUE(table.starts_with("Fixed Values " + date + "\r\n")) << table;
    EXPECT_EQ(keptFiles(program), 0) << "what is saved needs no recovery";
    EXPECT_EQ(runZint(words(inFolder("export run.log again.txt"))).status, 0);
    EXPECT_EQ(content("again.txt"), table);
    EXPECT_EQ(runZint(words(inFolder("export run.log again.csv --decimals comma"))).status, 0);
    EXPECT_TRUE(content("again.csv").starts_with("Time (s);Barometer (kPa);OBD type;Not There (?)\r\n0,"));
    expectFailure(runZint(words(inFolder("export bad.obc again.txt"))),
                  "bad.obc\": This is no whole data log, line 2: ");
    for (const auto& [picture, begin] : {std::pair{"run.png --events 1", "\x89PNG"}, {"run.PDF", "%PDF"}}) {
        const Outcome plot = runZint(words(inFolder(std::string("plot run.log ") + picture)));
        EXPECT_EQ(std::to_string(plot.status) + plot.errors, "0");
        EXPECT_EQ(content(fromQt(words(picture).front())).substr(0, 4), begin);
    }
    expectFailure(runZint(words(inFolder("plot run.log run.png --events 1,4"))), "no event 4; it has 3");
    expectFailure(runZint(words(inFolder("plot run.log run.png --from 9 --to 99"))),
                  "no samples after 9 seconds");
}

TEST_F(PollEndToEnd, PollsOwnParametersUnderTheirHeadersBesideThoseOfTheStandard)
{
    const Simulator simulator("--latency 0 --protocol can --all-parameters --units 2 --moment 9000 "
                              "--combined refused --transmission-combined refused");
    const Channels home{.home = folder.path()};
    EXPECT_EQ(runZint(words("parameters add Oil 221940 A-40 --header 7E1 --unit C"), home).status, 0);
    const std::string events = "poll --events 0C,221940,04 --combine --loops 2 --csv - --quiet";
    EXPECT_EQ(
        std::regex_replace(runZint(simulator.with(events + inFolder(" --transcript run.txt")), home).all(),
                           std::regex("\n[0-9.]+"), "\nT"),
        "0|Time (s),Event,Value,Unit\n"
        "T,Engine speed,775.2,rpm\nT,Calculated engine load,20.0,%\nT,Oil,17,C\n"
        "T,Engine speed,775.2,rpm\nT,Calculated engine load,20.0,%\nT,Oil,17,C\n|");
    std::string sent;
    for (const QString& row : toQt(content("run.txt")).split(u'\n'))
        sent += row.startsWith(u"> ") ? fromQt(row.mid(2).trimmed()) + "|" : "";
    EXPECT_EQ(sent,
              "ATZ|ATE0|0100|ATDPN|010C04|010C|0104|ATSH 7E1|221940|ATSH 7DF|010C|0104|ATSH 7E1|221940|ATD|");
}

TEST_F(PollEndToEnd, ATerminalShowsTheProgress)
{
    PseudoTerminal loud;
    PseudoTerminal mute;
    VehicleRun timed("", inFolder("poll fixed.obc --seconds 1"), {.errors = loud.path()});
    VehicleRun quiet("", inFolder("poll fixed.obc --quiet --log run.log"), {.errors = mute.path()});
    ASSERT_TRUE(isSampling(quiet.program));
    quiet.program.send(SIGHUP);
    EXPECT_EQ(quiet.program.wait().status, 0);
    EXPECT_NE(content("run.log").find("\r\n##1\r\n"), std::string::npos);
    const Outcome run = timed.program.wait();
    EXPECT_TRUE(run.status == 0 && run.output.find(" 1 sec, ") != std::string::npos) << run.output;
    std::string shown; // a terminal hands the last bytes over when it has time
    const std::regex progress(R"((\r[0-9]+%, [0-9]+ Loops(, [0-9:]+ left)? *)+\r *\r)");
    EXPECT_TRUE(waitFor([&] { return std::regex_match(shown += loud.read(), progress); })) << shown;
    EXPECT_EQ(mute.read(), "");
}

TEST_F(PollEndToEnd, EndsAtOnceWhenAskedTwice)
{
    VehicleRun run("", inFolder("poll fixed.obc --loops 100000 --log run.log"));
    ASSERT_TRUE(isSampling(run.program));
    for (const int signal : {SIGSTOP, SIGINT, SIGTERM, SIGCONT}) // both are there before it can do anything
        run.program.send(signal);
    EXPECT_EQ(run.program.wait().status, -1);
    EXPECT_EQ(content("run.log"), "");
    const KeptRuns kept(dataFolder(run.program), [](auto) { return "then"; });
    ASSERT_EQ(kept.list().size(), 1U) << "it can be recovered";
    EXPECT_FALSE(KeptRuns::load(kept.list().front()).samples.isEmpty());
}

TEST_F(PollEndToEnd, FailuresSayWhyAndKeepWhatThereIs)
{
    const struct {
        const char* simulator;
        const char* command; ///< behind the names of both files
        const char* complaint;
        bool isSampled = false;
    } rows[] = {
        {"--disconnect-after 7", "poll fixed.obc", "com1 - adapter disconnected", true},
        {"--disconnect-after 7", "poll fixed.obc --reconnect 1",
         "com1 - adapter disconnected, waiting for it for 1 second\n", true},
        {"--silent-after 6", "poll fixed.obc --timeout 1", "the adapter has not answered within", true},
        {"", "poll fixed.obc --port /dev/no-such-port", "com1 - Comm init error: 2: "},
        {"--ignition-off", "poll fixed.obc --loops 3", "nothing was sampled"},
        {"--no-reset-answer", "poll fixed.obc --seconds 1", "nothing was sampled"},
        {"", "poll headers.obc --loops 9", "Replies do not match the requests: stop and start again"},
        {"", "poll headers.obc --loops 9 --reconnect 1", "the adapter has lost its settings, which are sent"},
        {"", "poll none.obc", "can't be read: No such"},
        {"", "poll bad.obc", "bad.obc\" is no polling design: Type mismatch"},
        {"", "poll fixed.obc --export none/run.txt", "none/run.txt\" can't be written: No such"},
    };
    std::deque<VehicleRun> runs;
    for (const auto& row : rows) {
        const std::string name = std::to_string(runs.size());
        TemporaryFolder::write(folder.path(name + ".log"), "from before");
        runs.emplace_back(std::string("--no-announcement ") + row.simulator,
                          inFolder("--log " + name + ".log --export " + name + ".txt " + row.command));
    }
    for (std::size_t i = 0; i < runs.size(); ++i) {
        SCOPED_TRACE(rows[i].complaint);
        expectFailure(runs[i].program.wait(), rows[i].complaint);
        const std::string log = content(std::to_string(i) + ".log");
        EXPECT_EQ(log.find("\r\n##2\r\n") != std::string::npos, rows[i].isSampled) << log;
        EXPECT_EQ(log == "from before", !rows[i].isSampled) << log;
        EXPECT_EQ(content(std::to_string(i) + ".txt") != "", rows[i].isSampled);
    }
}

TEST_F(PollEndToEnd, WritesTheOtherFileWhenOneCannotBeWritten)
{
    std::filesystem::create_directory(folder.path("gone")); // goes away while the run is on
    VehicleRun run("", inFolder("poll fixed.obc --log gone/run.log --export run.txt"));
    ASSERT_TRUE(isSampling(run.program));
    std::filesystem::remove_all(folder.path("gone"));
    run.program.send(SIGINT);
    expectFailure(run.program.wait(), "run.log\" can't be written");
    EXPECT_NE(content("run.txt"), "");
    EXPECT_EQ(keptFiles(run.program), 1) << "it can be recovered";
}

} // namespace
} // namespace zint
