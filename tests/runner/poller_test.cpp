#include "runner/pollPrintout.h"
#include "runner/pollerTest.h"
#include "runner/runBoxes.h"

namespace zint {
namespace {

using namespace std::chrono_literals;

TEST_F(PollerTest, PollsLoopAfterLoopToTheEnd)
{
    makePoller({every(1, "01 0C"), every(2, "0105"), {.description = "A<B", .conversion = 17}});
    EXPECT_EQ(panel().titleLab + ", " + panel().statusBox, "Car (3 events), Ready");
    EXPECT_EQ(panel().lengthHint, "at most about 5:33 with this design");
    const PollPanel::Row& row = panel().obdGrid[0];
    EXPECT_EQ(row.minimum + panel().obdGrid[2].minimum, "16384rpm655.36gm/sec") << "above all that may come";
    EXPECT_FALSE(row.minimumIsNew) << "nothing has changed at the opening";
    setLoops("3");
    poller->onReply = [this] { clock.now += 1s; };
    start({{"01 0C", "41 0C 1F 40 \r\r>"},
           {"0105", "41 05 04 \r\r>"},
           {"01 0C", "NO DATA\r\r>"},
           {"01 0C", "41 0C 0F A0 \r\r>"},
           {"0105", "BUS INIT: OK\r41 05 08 \r\r>"},
           {"ATD", ""}});
    EXPECT_EQ(panel().statusBox, "Completed Polling, all samples filled");
    EXPECT_EQ(panel().lengthHint, "Ended after 3 loops. For longer runs raise Max Poll Loops, then New Poll. "
                                  "Measured: 1.67 s per loop.");
    EXPECT_FALSE(ticker.enabled());
    EXPECT_EQ(panel().ProgressBar1.value, 100);
    EXPECT_EQ(panel().statLab1, "3 Loops, 5 Events, 7 sec, 0.42 Lp/s, 0.71 Ev/s");
    EXPECT_TRUE(panel().labelStats.ends_with(" Out: 39 Err: 1")) << "5 for each request but the first";
    EXPECT_EQ(row.value + row.samples + row.minimum + row.maximum, "1000rpm21000rpm2000rpm");
    EXPECT_TRUE(row.maximumIsNew);
    EXPECT_EQ(row.shade, PollPanel::Shade::error);
    EXPECT_EQ(row.toolTip, "Good replies: 2, bad: 1, 0.28 samples/s");
    EXPECT_EQ(panel().obdGrid[1].shade, PollPanel::Shade::usual);
    EXPECT_NE(pollPrintout(*poller, dateText).find(">A&lt;B</td><td align=\"right\">0gm/sec</td>"),
              std::string::npos);
    poller->setMaxLoops("4");
    EXPECT_EQ(panel().lengthHint, "about 0:06 with this design (1.5 s per loop)");
}

TEST_F(PollerTest, WantsAResetWhenAllLoopsAreOver)
{
    makePoller({every(1000000, "010C", 1)});
    start({{"010C", good}, {"ATD", ""}});
    EXPECT_EQ(panel().statLab1, "999999 Loops, 1 Events, ") << "the first request goes out, due or not";
    poller->setMaxLoops("0");
    poller->pressStart();
    EXPECT_EQ(prompts.takeMessage(), "All samples filled, reset values before polling again");
    poller->resetValues();
    EXPECT_EQ(panel().ProgressBar1.value, 0);
    EXPECT_EQ(panel().textSampleCnt, "1000") << "which counts from the reset on";
}

TEST_F(PollerTest, SendsTheDesignsCommandsFirst)
{
    design.extraCommands = "ATH1;;ATSH 81 10 F1";
    std::string during;
    poller->onReply = [&] {
        during = panel().statusBox;
        clock.now += 3s;
    };
    start({{"ATH1", "OK\r\r>"}, {"", "?\r\r>"}, {"ATSH 81 10 F1", "?\r\r>"}, {"010C", ""}});
    wait(0);
    EXPECT_EQ(during + ", " + panel().statusBox, "com1 ATH1;;ATSH 81 10 F1, com1 Polling");
    EXPECT_EQ(panel().hint, "") << "something has been heard all the time";
    pressStop();
}

TEST(RunBoxesTest, ReplaceNumbersOutOfRange)
{
    const std::pair<const char*, std::int64_t> rows[] = {
        {" +3 ", 3}, {"2.6", 3},  {"nan", 7},         {"inf", 7},       {"soon", 7},
        {"", 7},     {"0", 1000}, {"100000", 100000}, {"100001", 1000}, {"1e999", 1000}};
    for (const auto& [typed, loops] : rows)
        EXPECT_EQ(loopsIn(typed, 7), loops) << typed;
    EXPECT_EQ(refreshSecondsIn("3600", 7), 3600);
    EXPECT_EQ(refreshSecondsIn("3601", 7), 10);
    EXPECT_EQ(timeLimitIn("86400"), 24h);
    EXPECT_FALSE(timeLimitIn("86401") || timeLimitIn("0") || timeLimitIn("soon"));
}

TEST_F(PollerTest, RefreshesWithTheRequestBeforeItReadsTheReply)
{
    const PollPanel::Row& row = panel().obdGrid[0];
    poller->setRefresh(" 3");
    start({{"010C", ""}});
    EXPECT_EQ(panel().scnUpdate, "3");
    wait(1);
    wait(1);
    EXPECT_EQ(panel().hint, " - first values in 2 s") << "as at first: each change may be read aloud";
    wait(1);
    reply();
    EXPECT_EQ(row.samples, "0") << "not yet: the refresh is due behind the third second";
    clock.now += 1s;
    reply();
    EXPECT_EQ(row.samples + panel().hint, "1");
    EXPECT_EQ(row.shade, PollPanel::Shade::constant);
    EXPECT_TRUE(row.minimumIsNew);
    pressStop();
    EXPECT_FALSE(row.minimumIsNew);
}

TEST_F(PollerTest, EstimatesTheTimeLeft)
{
    setLoops("100");
    poller->setTimeLimit("1000"); // the loops are over before
    start({{"010C", ""}});
    for (int i = 0; i < 3; ++i) {
        clock.now += 3s;
        reply();
    }
    wait(1);
    EXPECT_EQ(panel().ProgressBar1.value, 3);
    EXPECT_EQ(panel().ProgressBar1.text, "4:51 left") << "97 loops of 3 s, up to the last reply";
    EXPECT_EQ(panel().lengthHint, "about 5:00 with this design (3 s per loop)");
    EXPECT_EQ(values.requestSeconds, 3) << "for the designer";
    pressStop();
}

TEST_F(PollerTest, GoesOnAfterAStopWithTheLoopsAndTheTimesOfTheFirstStart)
{
    start({{"010C", good}, {"010C", ""}});
    clock.now += 10s;
    clock.date -= 5h; // the clock is set back
    pressStop();
    EXPECT_EQ(panel().statLab1, "1 Loops, 1 Events, 10 sec, 0.1 Lp/s, 0.1 Ev/s");
    clock.now += 1h;
    start({{"010C", good}, {"010C", ""}});
    clock.now += 2s;
    pressStop();
    EXPECT_EQ(panel().statLab1, "2 Loops, 1 Events, 2 sec, 1 Lp/s, 0.5 Ev/s");
    EXPECT_EQ(panel().obdGrid[0].toolTip, "Good replies: 2, bad: 0, 0.5 samples/s");
    EXPECT_EQ(poller->samples()[2].time, 3610);
}

TEST_F(PollerTest, AResetGoesOnPollingWithTheTimesOfTheFirstStart)
{
    clock.date += 1h;
    start({{"010C", good}, {"010C", ""}});
    clock.now += 5s;
    poller->resetValues();
    reply();
    EXPECT_EQ(poller->samples()[1].time, 5);
    pressStop();
    poller->unload();
    EXPECT_EQ(kept.list().size(), 2U) << "each is a run of its own";
    for (const KeptEntry& entry : kept.list())
        EXPECT_EQ(KeptRuns::load(entry).firstStart, clock.date);
}

TEST_F(PollerTest, EndsWhenItsTimeIsUpHoweverFastTheAdapterIs)
{
    setLoops("1");
    poller->limitByTime(60s);
    start({{"010C", ""}, {"010C", ""}, {"010C", ""}, {"ATD", ""}});
    wait(30);
    EXPECT_EQ(panel().ProgressBar1.value, 50);
    EXPECT_EQ(panel().ProgressBar1.text, "0:30 left");
    adapter.receive(good);
    clock.now += 30s;
    adapter.receive(good);
    EXPECT_EQ(panel().lengthHint, "Ended after 1:00, the time limit. Start Polling goes on.");
    adapter.expect("ATZ\r");
    poller->pressStart();
    adapter.expect("ATD\r");
    wait(60); // a silent adapter does not hold it up
    EXPECT_FALSE(poller->isPolling());
}

TEST_F(PollerTest, TellsBehindTheStatusWhatTheRepliesMean)
{
    start({{"010C", ""}});
    for (int i = 0; i < 14; ++i)
        reply(i == 4 ? good : "NO DATA\r\r>");
    wait(0);
    EXPECT_EQ(panel().hint, " - first values in 10 s");
    reply("BUS INIT: ...ERROR\r\r>");
    wait(0);
    EXPECT_EQ(panel().hint, " - No data from the vehicle (BUS INIT: ...ERROR): ignition on?");
    EXPECT_EQ(poller->noDataCount(), 13);
    adapter.sendNotice(PortNotice::unexplained);
    wait(10);
    EXPECT_EQ(panel().statusBox + panel().hint, "com1 Polling - unhandled comm Event: 0 - no reply for 10 s");
    pressStop();
    EXPECT_EQ(panel().statusBox + panel().hint, "com1 Polling Completed ");
}

TEST_F(PollerTest, ASilentAdapterEndsTheRun)
{
    adapter.expect("ATZ\r");
    adapter.expect("ATD\r");
    poller->pressStart();
    EXPECT_EQ(panel().statusBox + ", " + panel().labelStats, "com1 Opening..., Bytes In: 0 Out: 4 Errors: 0");
    silence.tick();
    EXPECT_EQ(panel().hint, " - nothing received for 10 s");
    timer.tick();
    EXPECT_TRUE(prompts.takeMessage().starts_with("OBD is not responding..."));
    EXPECT_EQ(values.lastFailureText, "") << "the trouble dialog tells of another tool";
    EXPECT_FALSE(poller->isPolling());
}

TEST_F(PollerTest, TellsWhatIsAgainstAStart)
{
    poller->setTimeLimit("soon");
    poller->pressStart();
    EXPECT_EQ(prompts.takeMessage(),
              "\"soon\" is no time limit. Give 1 to 86400 seconds, or leave the box empty.");
    makePoller({every(0, "010C")});
    poller->pressStart();
    EXPECT_TRUE(prompts.takeMessage().starts_with("The design has no event to poll."));
}

TEST_F(PollerTest, KeepsWhatIsNotSaved)
{
    start({{"010C", good}, {"010C", ""}});
    ticker.tick();
    EXPECT_FALSE(std::filesystem::is_empty(folder.path("runs"))) << "a crash may come at any time";
    poller->save(RunFiles::Kind::log, folder.path("a.log"));
    EXPECT_FALSE(std::filesystem::is_empty(folder.path("runs"))) << "more may come";
    pressStop();
    EXPECT_TRUE(std::filesystem::is_empty(folder.path("runs")));
}

TEST_F(PollerTest, TellsAtTheOpeningOfARunThatWasCutOff)
{
    std::filesystem::create_directory(folder.path("runs"));
    TemporaryFolder::write(folder.path("runs/x.run"),
                           "Car\r\n|200\r\n010C||0|1|0\r\nEOP - end of Parms\r\n0\r\n1,0,0\r\n");
    poller->load();
    EXPECT_EQ(panel().statusBox,
              "An earlier run was cut off. \"Recover Unsaved Run...\" in the File menu has it.");
}

TEST_F(PollerTest, StopsWhenThereIsNoRoomAndKeepsWhatThereIs)
{
    makePoller({every(1, "010C"), every(3, "0105", 1)}, 5); // for three samples and the header of 0105
    start({{"010C", good}, {"010C", good}, {"010C", good}, {"0105", good}, {"010C", ""}, {"ATD", ""}});
    EXPECT_TRUE(prompts.takeMessage().starts_with("There is no memory for more samples"));
    EXPECT_FALSE(poller->isPolling());
    EXPECT_EQ(poller->samples().size(), 4U);
}

} // namespace
} // namespace zint
