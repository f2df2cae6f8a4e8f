#include "runner/pollPrintout.h"
#include "runner/pollReply.h"
#include "runner/poller.h"
#include "support/manualTime.h"
#include "support/scriptedAdapter.h"
#include "support/scriptedDialogs.h"
#include "support/scriptedPrompts.h"
#include "support/temporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace zint {
namespace {

TEST(PollReplyTest, ReadsTheBytesBehindTheEcho)
{
    const std::pair<const char*, std::optional<std::int32_t>> rows[] = {
        {"41 0C 1A F8 \r\r>", 0x1AF8},
        {"41 0C 1AF8\r>", 0x1AF8},
        {"410C1AF8410C1AF8410C1AF8\r>", 0},
        {"41 0C \r\r>", 0},
        {"41 0C 1A F8\r41 0C FF FF \r>", 0x1AF8},
        {"41 0C 1A F8", 0x1A}, // its last byte has no end
        {"41 01 7F FF FF FF \r>", 0x7FFFFFFF},
        {"41 01 80 00 00 00 \r>", std::nullopt},
        {"41 01 FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF \r>", std::nullopt},
        {"41 0c 1a f8\r>", std::nullopt},
        {"NO DATA\r\r>", std::nullopt},
        {"41 0C 1A F8 <DATA ERROR\r>", std::nullopt},
        {"\r>", std::nullopt},
        {"\x80\xFF\x01\r>", std::nullopt},
    };
    for (const auto& [reply, value] : rows)
        EXPECT_EQ(pollValue(reply), value) << reply;
}

TEST(ReplyWatchTest, KnowsWhatAReplyBeginsWith)
{
    for (const auto& [request, echo] :
         {std::pair{"010C", "41 0C"}, {"01 0c1", "41 0C"}, {"03", "43"}, {"22F190", "62 F1"}})
        EXPECT_EQ(echoOf(request), echo) << request;
    for (const char* const request : {"ATRV", "", "0", "01X0"})
        EXPECT_FALSE(echoOf(request)) << request;
}

TEST(ScheduleTest, FindsTheNextRequestHoweverFar)
{
    Design design;
    const auto add = [&design](std::int32_t frequency, std::int32_t offset) {
        design.events.push_back({.frequency = frequency, .offset = offset});
    };
    EXPECT_FALSE(isEverDue(design));
    add(0, 0);
    EXPECT_FALSE(isEverDue(design));
    add(4, 1);
    add(1000000000, 1);
    Turn turn{0, 0};
    for (const Turn& expected : {Turn{3, 1}, {7, 1}, {11, 1}})
        EXPECT_EQ(turn = nextTurn(design, turn), expected);
    EXPECT_EQ(requestsBetween(design, turn, 20), 2);
    EXPECT_EQ(requestsBetween(design, beforeAll, 1000000000), 250000001);
    design.events[1].frequency = 0;
    EXPECT_EQ(nextTurn(design, turn), (Turn{999999999, 2}));
    design.events[1].frequency = 1;
    EXPECT_EQ(nextTurn(design, {5, 2}), (Turn{6, 1}));
    design.events[2] = {.frequency = 3, .offset = -7};
    EXPECT_EQ(nextTurn(design, {6, 1}), (Turn{7, 1}));
    EXPECT_EQ(nextTurn(design, {7, 1}), (Turn{7, 2}));
}

using Kind = RunFiles::Kind;
using Name = RunFiles::Name;

struct PollerTest : testing::Test {
    TemporaryFolder folder;
    EventGate gate;
    ScriptedAdapter adapter{&gate};
    ManualTimer timer;
    ManualTimer silence;
    ManualTimer ticker;
    ManualClock clock;
    ScriptedPrompts prompts;
    ScriptedDialogs dialogs;
    ProgramValues values{.parmInitDir = "/start", .parmLogFile = "yesterday.log"};
    KeptRuns kept{folder.path("kept"), [](auto) { return "today"; }};
    Design design;
    std::optional<Poller> poller;

    /// A design of requests with a frequency each.
    void makePoller(const std::vector<std::pair<const char*, int>>& requests,
                    std::size_t mostRecords = SampleStore::mostRecords)
    {
        design.title = "Car";
        design.events.clear();
        for (const auto& [code, frequency] : requests)
            design.events.push_back({.code = code,
                                     .description = "event " + std::to_string(design.events.size() + 1),
                                     .conversion = 5,
                                     .frequency = frequency});
        poller.emplace(Poller::Surroundings{.port = adapter,
                                            .timer = timer,
                                            .silence = silence,
                                            .ticker = ticker,
                                            .clock = clock,
                                            .prompts = prompts,
                                            .values = values,
                                            .kept = kept,
                                            .dateText = [](auto) { return "today"; },
                                            .mostRecords = mostRecords},
                       ConnectionChoice{}, design);
        poller->load();
    }

    void setLoops(const char* loops)
    {
        poller->setMaxLoops(loops);
        poller->resetValues();
    }

    /// Starts a run up to its last request. @param requests each with its reply
    void start(const std::vector<std::pair<std::string, const char*>>& requests)
    {
        adapter.expectOpening();
        for (const auto& [request, reply] : requests)
            adapter.expect(request + "\r").answer(reply);
        poller->pressStart();
        adapter.play();
    }

    /// A reply comes while 010C is asked over and over.
    void reply(const char* text)
    {
        adapter.expect("010C\r");
        adapter.receive(text);
    }

    void wait(int seconds)
    {
        clock.now += std::chrono::seconds(seconds);
        ticker.tick();
    }

    void pressStop()
    {
        adapter.expect("ATD\r");
        poller->pressStart();
    }

    /// The user chooses a file, or cancels, and it is written.
    std::string save(Kind kind, Name name = Name::usual)
    {
        return poller->save(kind, poller->chooseFile(kind, name, dialogs));
    }

    const PollPanel& panel() const { return poller->panel(); }
    std::string saved(const char* name) const { return contents(folder.path(name)); }
};

TEST_F(PollerTest, PollsLoopAfterLoopToTheEnd)
{
    makePoller({{"010C", 1}, {"0105", 2}});
    EXPECT_EQ(panel().titleLab, "Car (2 events)");
    EXPECT_EQ(panel().statusBox, "Ready");
    EXPECT_EQ(panel().lengthHint, "at most about 5:33 with this design");
    EXPECT_EQ(panel().obdGrid[0].minimum, "16384rpm") << "above all that may come";
    EXPECT_FALSE(panel().obdGrid[0].minimumIsNew) << "nothing has changed at the opening";
    EXPECT_EQ(panel().obdGrid[1].toolTip, "");
    setLoops("3");
    adapter.expectOpening();
    adapter.expect("010C\r").answer("41 0C 1F 40 \r\r>"); // loop 0
    adapter.expect("0105\r").answer("41 05 04 \r\r>", 3);
    adapter.expect("010C\r").answer("NO DATA\r\r>");      // 1
    adapter.expect("010C\r").answer("41 0C 0F A0 \r\r>"); // 2
    adapter.expect("0105\r").answer("BUS INIT: OK\r41 05 08 \r\r>");
    adapter.expect("ATD\r");
    poller->pressStart();
    EXPECT_EQ(panel().statusBox, "com1 Opening...");
    EXPECT_EQ(panel().labelStats, "Bytes In: 0 Out: 4 Errors: 0");
    clock.now += std::chrono::seconds(7);
    adapter.play();

    EXPECT_EQ(panel().statusBox, "Completed Polling, all samples filled");
    EXPECT_EQ(panel().lengthHint,
              "Ended after 3 loops. For longer runs raise Max Poll Loops, then New Poll.");
    EXPECT_TRUE(poller->isComplete());
    EXPECT_FALSE(ticker.enabled());
    EXPECT_EQ(panel().ProgressBar1.value, 100);
    EXPECT_EQ(panel().statLab1, "3 Loops, 5 Events, 7 sec, 0.42 Lp/s, 0.71 Ev/s");
    EXPECT_EQ(panel().labelStats, "Bytes In: 107 Out: 38 Err: 1");
    const PollPanel::Row& rpm = panel().obdGrid[0];
    EXPECT_EQ(rpm.value + rpm.samples + rpm.minimum + rpm.maximum, "1000rpm21000rpm2000rpm");
    EXPECT_TRUE(rpm.maximumIsNew);
    EXPECT_EQ(rpm.shade, PollPanel::Shade::error);
    EXPECT_EQ(rpm.toolTip, "Good replies: 2, bad: 1, 0.28 samples/s");
    EXPECT_EQ(panel().obdGrid[1].shade, PollPanel::Shade::usual);
    EXPECT_EQ(poller->noDataCount(), 1);

    poller->pressStart();
    EXPECT_EQ(prompts.takeMessage(), "All samples filled, reset values before polling again");
    poller->resetValues();
    EXPECT_TRUE(poller->samples().isEmpty());
    EXPECT_EQ(panel().ProgressBar1.value, 0);
    EXPECT_EQ(panel().statusBox, "Values reset. The unsaved run is under Recover Unsaved Run...");
    poller->resetValues();
    EXPECT_EQ(panel().statusBox, "Values reset.");
    EXPECT_NE(pollPrintout(*poller, [](auto) { return "today"; }).find("Car (2 events)"), std::string::npos);
}

TEST_F(PollerTest, SendsTheDesignsCommandsFirst)
{
    makePoller({{"21 01", 1}});
    design.extraCommands = "ATH1;;ATSH 81 10 F1";
    using Ms = std::chrono::milliseconds;
    const std::pair<SampleSpeed, const char*> speeds[] = {{Ms(200), ""},       {{}, ""},
                                                          {Ms(52), "ATST 0D"}, {Ms(62), "ATST 010"},
                                                          {Ms(64), "ATST 10"}, {Ms(1020), "ATST FF"}};
    for (const auto& [speed, command] : speeds) {
        design.sampleSpeed = speed;
        std::vector<std::pair<std::string, const char*>> steps = {
            {"ATH1", "OK\r\r>"}, {"", "?\r\r>"}, {"ATSH 81 10 F1", "?\r\r>"}};
        if (*command != '\0')
            steps.emplace_back(command, "OK\r\r>");
        steps.insert(steps.end(), {{"21 01", "61 01 \r>"}, {"21 01", ""}});
        start(steps);
        EXPECT_EQ(panel().statusBox, "com1 Polling") << command;
        pressStop();
        EXPECT_EQ(panel().statusBox, "com1 Polling Completed ");
    }
    EXPECT_TRUE(panel().labelStats.ends_with(" Out: 297 Err: 0")) << panel().labelStats;
    design.extraCommands.clear();
    adapter.expect("ATZ\r").answer(">");
    adapter.expect("ATE0\r");
    poller->pressStart();
    adapter.play();
    EXPECT_EQ(panel().statusBox, "com1 ATST FF");
    pressStop();
}

TEST_F(PollerTest, ReplacesNumbersOutOfRange)
{
    makePoller({{"010C", 1}});
    for (const auto& [typed, shown] :
         {std::pair{"3", "3"}, {"nan", "3"}, {"soon", "3"}, {"0", "10"}, {"5000", "10"}}) {
        poller->setRefresh(typed);
        adapter.expect("ATZ\r");
        poller->pressStart();
        EXPECT_EQ(panel().scnUpdate, shown) << typed;
        pressStop();
    }
    for (const auto& [typed, shown] :
         {std::pair{"100", "100"}, {"inf", "100"}, {"x", "100"}, {"0", "1000"}, {"200000", "1000"}}) {
        setLoops(typed);
        EXPECT_EQ(panel().textSampleCnt, shown) << typed;
    }
    for (const char* const typed : {"soon", "0", "86401"}) {
        poller->setTimeLimit(typed);
        poller->pressStart();
        EXPECT_NE(prompts.takeMessage().find(" is no time limit. Give 1 to 86400"), std::string::npos);
    }
}

TEST_F(PollerTest, RefreshesEverySoManySecondsAndTellsTheTimeLeft)
{
    makePoller({{"010C", 1}});
    poller->setRefresh("3");
    setLoops("100");
    start({{"010C", ""}});
    wait(1);
    wait(1);
    EXPECT_EQ(panel().hint, " - first values in 2 s") << "as at first: each change may be read aloud";
    wait(1);
    reply("41 0C 00 04 \r\r>");
    EXPECT_EQ(panel().obdGrid[0].samples, "0") << "not yet: the refresh is due behind the third second";
    clock.now += std::chrono::seconds(1);
    reply("41 0C 00 04 \r\r>");
    EXPECT_EQ(panel().obdGrid[0].samples, "1")
        << "refreshed with the request, before its reply was looked at";
    EXPECT_EQ(panel().obdGrid[0].shade, PollPanel::Shade::constant);
    EXPECT_TRUE(panel().obdGrid[0].minimumIsNew);
    EXPECT_EQ(panel().statusBox + panel().hint, "com1 Polling");
    clock.now += std::chrono::seconds(5);
    reply("41 0C 00 04 \r\r>");
    EXPECT_FALSE(panel().obdGrid[0].minimumIsNew);
    EXPECT_EQ(panel().ProgressBar1.value, 3);
    wait(1);
    EXPECT_EQ(panel().ProgressBar1.text, "4:51 left") << "97 loops of 3 s, up to the last reply";
    EXPECT_EQ(panel().lengthHint, "about 5:00 with this design (3 s per loop)");
    EXPECT_EQ(values.requestSeconds, 3) << "for the designer";
    clock.date -= std::chrono::hours(5); // the clock is set back
    pressStop();
    EXPECT_EQ(panel().statLab1, "3 Loops, 3 Events, 10 sec, 0.3 Lp/s, 0.3 Ev/s");

    clock.now += std::chrono::hours(1);
    start({{"010C", "41 0C 00 08 \r\r>"}, {"010C", ""}});
    pressStop();
    EXPECT_EQ(panel().statLab1, "4 Loops, 1 Events, ") << "the loops go on";
    EXPECT_EQ(poller->samples()[4].time, 3610);
}

TEST_F(PollerTest, AResetGoesOnPollingWithTheTimesOfTheFirstStart)
{
    makePoller({{"010C", 1}});
    design.events[0].conversion = 17;
    start({{"010C", ""}});
    reply("41 0C 00 04 \r\r>");
    clock.now += std::chrono::seconds(5);
    poller->resetValues();
    EXPECT_TRUE(panel().statusBox.ends_with("under Recover Unsaved Run..."));
    EXPECT_EQ(panel().obdGrid[0].minimum, "655.36gm/sec");
    EXPECT_EQ(kept.list().size(), 1U);
    reply("41 0C 00 08 \r\r>");
    EXPECT_EQ(poller->samples()[1].time, 5);
    pressStop();
    poller->unload();
    EXPECT_EQ(kept.list().size(), 2U);

    std::filesystem::remove_all(folder.path("kept"));
    std::ofstream(folder.path("kept")) << "no folder";
    start({{"010C", "41 0C 00 04 \r\r>"}, {"010C", ""}});
    pressStop();
    poller->resetValues();
    EXPECT_EQ(panel().statusBox, "Values reset. The unsaved run could not be kept.");
}

TEST_F(PollerTest, EndsWhenItsTimeIsUpHoweverFastTheAdapterIs)
{
    makePoller({{"010C", 1}});
    setLoops("1");
    poller->limitByTime(std::chrono::seconds(60));
    start({{"010C", ""}});
    for (int i = 0; i < 1000; ++i)
        reply("41 0C 00 04 \r\r>");
    wait(30);
    reply("41 0C 00 04 \r\r>");
    EXPECT_EQ(panel().ProgressBar1.value, 50);
    EXPECT_EQ(panel().ProgressBar1.text, "0:30 left");
    clock.now += std::chrono::seconds(30);
    adapter.expect("010C\r");
    adapter.expect("ATD\r");
    adapter.receive("41 0C 00 04 \r\r>");
    EXPECT_TRUE(poller->isComplete());
    EXPECT_EQ(poller->loopCount(), 1002);
    EXPECT_EQ(panel().lengthHint, "Ended after 1:00, the time limit. Start Polling goes on.");
    adapter.expect("ATZ\r");
    poller->pressStart();
    adapter.expect("ATD\r");
    wait(60); // a silent adapter does not hold it up
    EXPECT_FALSE(poller->isPolling());
}

TEST_F(PollerTest, TellsWhenRepliesDoNotMatchSayNoDataOrStopComing)
{
    makePoller({{"010C", 1}});
    int replies = 0;
    poller->onReply = [&replies] { ++replies; };
    poller->setRefresh("3600");
    setLoops("100000");
    start({{"010C", ""}});
    EXPECT_EQ(replies, 2);
    const auto shows = [this](const std::string& hint) {
        ticker.tick();
        EXPECT_EQ(panel().hint, hint);
    };
    reply("41 0C 00 04 \r\r>");
    const std::string usual = " - first values in 3600 s";
    for (const char* const odd : {"7F 01 12 \r\r>", "48 6B 10 41 0C 00 04 \r\r>", "410C0004\r\r>"}) {
        shows(usual);
        reply(odd);
    }
    shows(" - Replies do not match the requests: stop and start again");
    EXPECT_EQ(poller->samples().size(), 4U) << "stored where it reads as a value";
    reply("41 0C 00 04 \r\r>");
    shows(usual);
    EXPECT_TRUE(poller->sawMismatch());

    for (int i = 0; i < 9; ++i)
        reply("CAN ERROR\r\r>");
    shows(usual);
    reply("SEARCHING...\rUNABLE TO CONNECT\r\r>");
    shows(" - No data from the vehicle (UNABLE TO CONNECT): ignition on?");
    reply("BUS INIT: ...ERROR\r\r>");
    shows(" - No data from the vehicle (BUS INIT: ...ERROR): ignition on?");
    adapter.sendNotice(PortNotice{1006});
    wait(12);
    silence.tick();
    EXPECT_EQ(panel().statusBox + panel().hint,
              "com1 Polling - unhandled comm Event: 1006 - no reply for 10 s");
    dialogs.chosen = folder.path("a.log");
    save(Kind::log);
    pressStop();
    EXPECT_EQ(panel().statusBox + panel().hint, "com1 Polling Completed ");
    poller->unload();
    EXPECT_TRUE(kept.list().empty()) << "nothing came after the log";
    poller->loadLog();
    EXPECT_EQ(panel().statusBox, "Loading is not in this version; zint-obd export turns a log into a table");
}

TEST_F(PollerTest, ASilentAdapterEndsTheRunAndTheNextIsKeptWithItsOwnStart)
{
    makePoller({{"010C", 1000000}});
    adapter.expect("ATZ\r");
    adapter.expect("ATD\r");
    poller->pressStart();
    silence.tick();
    EXPECT_EQ(panel().hint, " - nothing received for 10 s");
    timer.tick();
    EXPECT_EQ(prompts.takeMessage(),
              "OBD is not responding... Please verify connections between computer and vehicle");
    EXPECT_EQ(values.lastFailureText, "") << "the trouble dialog tells of another tool";
    EXPECT_FALSE(poller->isPolling() || poller->isComplete());
    EXPECT_TRUE(panel().labelStats.ends_with("Err: 1"));
    clock.date += std::chrono::hours(1);
    design.events[0].offset = 1; // the first request goes out all the same
    adapter.expectOpening();
    adapter.expect("010C\r").answer("41 0C 00 04 \r\r>");
    adapter.expect("ATD\r");
    poller->pressStart();
    clock.now += std::chrono::seconds(2);
    adapter.play();
    EXPECT_EQ(panel().statLab1, "999999 Loops, 1 Events, 2 sec, 499999.5 Lp/s, 0.5 Ev/s");
    poller->unload();
    ASSERT_EQ(kept.list().size(), 1U);
    EXPECT_EQ(KeptRuns::load(kept.list()[0]).firstStart, clock.date);
    poller->resetValues();
    design.events[0].frequency = 0;
    poller->pressStart();
    EXPECT_TRUE(prompts.takeMessage().starts_with("The design has no event to poll."));
}

TEST_F(PollerTest, WritesItsFilesAndKeepsWhatIsNotSaved)
{
    makePoller({{"010C", 1}});
    const auto run = [this] { start({{"010C", "41 0C 00 04 \r\r>"}, {"ATD", ""}}); };
    setLoops("1");
    run();
    EXPECT_EQ(save(Kind::log), "");
    EXPECT_EQ(dialogs.asked,
              "save /start|yesterday.log|Zint log files (*.log)|*.log|Text files (*.txt)|*.txt|"
              "All files (*.*)|*.*");
    EXPECT_TRUE(kept.failure().empty());
    dialogs.chosen = folder.path("run.log");
    EXPECT_EQ(save(Kind::log), "");
    EXPECT_EQ(panel().statusBox, "run.log log saved");
    EXPECT_EQ(values.parmInitDir, folder.path());
    dialogs.asked.clear();
    save(Kind::log);
    EXPECT_EQ(dialogs.asked, "") << "the same file again";
    save(Kind::log, Name::asked);
    EXPECT_NE(dialogs.asked, "");
    EXPECT_EQ(values.parmLogFile, "run.log") << "cancelled";
    dialogs.chosen = folder.path("run.txt");
    save(Kind::table);
    EXPECT_EQ(panel().statusBox, "run.txt export saved");
    EXPECT_TRUE(saved("run.txt").ends_with("\r\n0\t1\r\n"));
    dialogs.chosen = folder.path("dump.txt");
    save(Kind::dump);
    EXPECT_EQ(panel().statusBox, "dump.txt debug data saved");
    EXPECT_EQ(saved("dump.txt"), "-1,1,0\r\n0,4,0\r\n");
    dialogs.chosen = "/dev/full";
    EXPECT_NE(save(Kind::table, Name::asked), "");
    EXPECT_EQ(panel().statusBox, "Error Saving export to full");
    EXPECT_EQ(values.parmExport + values.parmInitDir, folder.path("run.txt") + folder.path());
    dialogs.chosen = "/dev/full";
    EXPECT_NE(save(Kind::log, Name::asked), "");
    EXPECT_EQ(panel().statusBox, "Error Saving log to full");
    EXPECT_EQ(values.parmLog, "/dev/full") << "the next save tries it again";
    poller->recover(dialogs);
    EXPECT_EQ(prompts.takeMessage(), "There is no unsaved run to recover.");

    poller->resetValues();
    dialogs.asked.clear();
    run();
    save(Kind::log);
    EXPECT_NE(dialogs.asked, "") << "another run, another name";
    poller->unload();
    prompts.chosen = 0;
    dialogs.chosen = folder.path("recovered.log");
    poller->recover(dialogs);
    EXPECT_EQ(prompts.question, "Recover Unsaved Run\nUnsaved runs\ntoday   Car (1 sample in 0:00)");
    EXPECT_EQ(saved("recovered.log"), saved("run.log"));
    EXPECT_TRUE(kept.list().empty());
}

TEST_F(PollerTest, TellsAtTheOpeningOfARunThatWasCutOff)
{
    {
        KeptRuns crashed(folder.path("kept"), [](auto) { return "then"; });
        design.events.resize(1);
        SampleStore samples;
        samples.reset(design);
        samples.add(0, 1, 1);
        crashed.begin(design, samples, {});
    }
    makePoller({{"010C", 1}});
    EXPECT_EQ(panel().statusBox,
              "An earlier run was cut off. \"Recover Unsaved Run...\" in the File menu has it.");
}

TEST_F(PollerTest, StopsWhenThereIsNoRoomAndKeepsWhatThereIs)
{
    makePoller({{"010C", 1}, {"0105", 3}}, 4);
    design.events[1].offset = 1; // first due when there is room for its header, but not for its sample
    start({{"010C", "41 0C 00 04 \r\r>"}, {"010C", "41 0C 00 08 \r\r>"}, {"010C", ""}});
    adapter.expect("0105\r").answer("41 05 04 \r\r>");
    adapter.expect("010C\r");
    adapter.expect("ATD\r");
    clock.now += std::chrono::seconds(5);
    adapter.receive("41 0C 00 0C \r\r>");
    adapter.play();
    EXPECT_TRUE(prompts.takeMessage().starts_with("There is no memory for more samples"));
    EXPECT_FALSE(adapter.isOpen());
    dialogs.chosen = folder.path("full.log");
    save(Kind::log);
    EXPECT_TRUE(saved("full.log").ends_with("\r\n 4 \r\n##1\r\n0,4\r\n0,8\r\n5,12\r\n")) << saved("full.log");
    poller->unload();
}

} // namespace
} // namespace zint
