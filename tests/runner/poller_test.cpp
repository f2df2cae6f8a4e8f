#include "runner/dataLog.h"
#include "runner/pollPrintout.h"
#include "runner/pollReply.h"
#include "runner/poller.h"
#include "support/manualTime.h"
#include "support/scriptedAdapter.h"
#include "support/scriptedDialogs.h"
#include "support/scriptedPrompts.h"
#include "support/temporaryFolder.h"

#include <gtest/gtest.h>

#include <new>
#include <sstream>

#ifdef ZINT_WRAPS_NEW
namespace {

bool memoryIsShort = false; ///< there is none for a block of samples

} // namespace

/// What the linker puts in the place of operator new, and that operator new itself.
extern "C" void* __real__Znwm(std::size_t size);
extern "C" void* __wrap__Znwm(std::size_t size)
{
    constexpr std::size_t large = 500'000;
    if (memoryIsShort && size > large)
        throw std::bad_alloc();
    return __real__Znwm(size);
}
#endif

namespace zint {
namespace {

TEST(PollReplyTest, ReadsTheBytesBehindTheEcho)
{
    struct Row {
        const char* reply;
        std::optional<std::int32_t> value;
    };
    for (const Row& row : {
             Row{"41 0C 1A F8 \r\r>", 0x1AF8},
             Row{"41 0C 1AF8\r>", 0x1AF8},
             Row{"410C1AF8\r>", 0},
             Row{"410C1AF8410C1AF8410C1AF8\r>", 0},
             Row{"41 0C \r\r>", 0},
             Row{"41 0C 1A F8\r41 0C FF FF \r>", 0x1AF8},
             Row{"41 0C 1A F8>", 0x1AF8},
             Row{"41 0C 1A F8", 0x1A}, // its last byte has no end
             Row{"41 01 7F FF FF FF \r>", 0x7FFFFFFF},
             Row{"41 01 80 00 00 00 \r>", std::nullopt},
             Row{"41 01 FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF \r>", std::nullopt},
             Row{"41 0c 1a f8\r>", std::nullopt},
             Row{"NO DATA\r\r>", std::nullopt},
             Row{"CAN ERROR\r>", std::nullopt},
             Row{"41 0C 1A F8 <DATA ERROR\r>", std::nullopt},
             Row{"\r>", std::nullopt},
             Row{">", std::nullopt},
             Row{"\x80\xFF\x01\r>", std::nullopt},
         })
        EXPECT_EQ(pollValue(row.reply), row.value) << row.reply;
}

TEST(ScheduleTest, FindsTheNextRequestHoweverFar)
{
    Design design;
    const auto add = [&design](std::int32_t frequency, std::int32_t offset) {
        ++design.eventCount();
        design.events().back().frequency = frequency;
        design.events().back().offset = offset;
    };
    EXPECT_FALSE(isEverDue(design));
    add(0, 0);
    EXPECT_FALSE(isEverDue(design));
    add(4, 1);
    add(1000000000, 1);
    Turn turn{0, 0};
    for (const Turn& expected : {Turn{3, 1}, {7, 1}, {11, 1}})
        EXPECT_EQ(turn = nextTurn(design, turn), expected);
    design.events()[1].frequency = 0;
    EXPECT_EQ(nextTurn(design, turn), (Turn{999999999, 2}));
    design.events()[1].frequency = 1;
    EXPECT_EQ(nextTurn(design, {5, 2}), (Turn{6, 1}));
    design.events()[2] = {.frequency = 3, .offset = -7};
    EXPECT_EQ(nextTurn(design, {6, 1}), (Turn{7, 1}));
    EXPECT_EQ(nextTurn(design, {7, 1}), (Turn{7, 2}));
}

struct PollerTest : testing::Test {
    TemporaryFolder folder;
    EventGate gate;
    ScriptedAdapter adapter{&gate};
    ManualTimer timer;
    ManualTimer ticker;
    ManualClock clock;
    ScriptedPrompts prompts;
    ScriptedDialogs dialogs;
    ProgramValues values{.parmInitDir = "/start", .parmLogFile = "yesterday.log"};
    KeptRuns kept{folder.path("kept"), [](auto) { return "today"; }};
    Design design;
    std::optional<Poller> poller;

    /// A design of requests with a frequency each.
    void makePoller(const std::vector<std::pair<const char*, int>>& requests)
    {
        design.title() = "Car";
        design.eventCount() = static_cast<std::int32_t>(requests.size());
        for (std::size_t i = 0; i < requests.size(); ++i)
            design.events()[i] = {.code = requests[i].first,
                                  .description = "event " + std::to_string(i + 1),
                                  .conversion = 5,
                                  .frequency = requests[i].second};
        design.polledCount() = design.eventCount();
        poller.emplace(Poller::Surroundings{.port = adapter,
                                            .timer = timer,
                                            .ticker = ticker,
                                            .clock = clock,
                                            .prompts = prompts,
                                            .dialogs = dialogs,
                                            .values = values,
                                            .kept = kept,
                                            .dateText = [](auto) { return "today"; }},
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

    const PollPanel& panel() const { return poller->panel(); }
    std::string saved(const char* name) const { return contents(folder.path(name)); }
};

TEST_F(PollerTest, PollsLoopAfterLoopToTheEnd)
{
    makePoller({{"010C", 1}, {"0105", 2}});
    EXPECT_EQ(panel().titleLab, "Car (2 events)");
    EXPECT_EQ(panel().statusBox, "Ready");
    EXPECT_EQ(panel().obdGrid[0].minimum, "16384rpm") << "above all that may come";
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
    EXPECT_EQ(panel().ProgressBar1.value, 100);
    EXPECT_EQ(panel().statLab1, "3 Loops, 5 Events, 7 sec, 0.42 Lp/s, 0.71 Ev/s");
    EXPECT_EQ(panel().labelStats, "Bytes In: 107 Out: 38 Err: 1");
    const PollPanel::Row& rpm = panel().obdGrid[0];
    EXPECT_EQ(rpm.value, "1000rpm");
    EXPECT_EQ(rpm.samples, "2");
    EXPECT_EQ(rpm.minimum, "1000rpm");
    EXPECT_EQ(rpm.maximum, "2000rpm");
    EXPECT_TRUE(rpm.maximumIsNew);
    EXPECT_EQ(rpm.shade, PollPanel::Shade::error);
    EXPECT_EQ(rpm.toolTip, "0.28 samples/s, 1 bad reply");
    EXPECT_EQ(panel().obdGrid[1].shade, PollPanel::Shade::usual);
    EXPECT_EQ(poller->noDataCount(), 1);

    dialogs.chosen = folder.path("debug.txt");
    poller->debugLog();
    EXPECT_EQ(saved("debug.txt"), "-1,1,0\r\n4,8000,7\r\n-1,2,0\r\n5,4,7\r\n0,4000,7\r\n0,8,7\r\n");
    poller->pressStart();
    EXPECT_EQ(prompts.takeMessage(), "All samples filled, reset values before polling again");
    poller->resetValues();
    EXPECT_TRUE(poller->samples().isEmpty());
    EXPECT_EQ(panel().ProgressBar1.value, 0);
    EXPECT_FALSE(panel().obdGrid[1].minimum.empty());
    EXPECT_NE(pollPrintout(*poller, [](auto) { return "today"; }).find("Car (2 events)"), std::string::npos);
}

TEST_F(PollerTest, SendsTheDesignsCommandsFirst)
{
    makePoller({{"21 01", 1}});
    design.extraCommands = "ATH1;ATSH 81 10 F1";
    for (const auto& [speed, command] : {std::pair{200, ""},
                                         {-1, ""},
                                         {40, "ATST 0A"},
                                         {52, "ATST 0D"},
                                         {62, "ATST 010"},
                                         {64, "ATST 10"},
                                         {100, "ATST 19"},
                                         {1020, "ATST FF"}}) {
        design.sampleSpeed = static_cast<std::int16_t>(speed);
        if (*command == '\0')
            start({{"ATH1", "OK\r\r>"}, {"ATSH 81 10 F1", "?\r\r>"}, {"21 01", ""}});
        else
            start({{"ATH1", "OK\r\r>"}, {"ATSH 81 10 F1", "?\r\r>"}, {command, "OK\r\r>"}, {"21 01", ""}});
        EXPECT_EQ(panel().statusBox, "com1 Polling") << speed;
        adapter.expect("ATD\r");
        poller->pressStart();
        EXPECT_EQ(panel().statusBox, "com1 Polling Completed ");
    }
    design.extraCommands.clear();
    adapter.expect("ATZ\r").answer(">");
    adapter.expect("ATE0\r");
    adapter.expect("ATD\r");
    poller->pressStart();
    adapter.play();
    EXPECT_EQ(panel().statusBox, "com1 ATST FF");
    poller->unload();
}

TEST_F(PollerTest, RefreshesEverySoManySecondsAndTellsTheTimeLeft)
{
    makePoller({{"010C", 1}});
    for (const auto& [typed, shown] : {std::pair{"0", "10"}, {"5000", "10"}, {"soon", "10"}, {"3", "3"}}) {
        poller->setRefresh(typed);
        adapter.expect("ATZ\r");
        adapter.expect("ATD\r");
        poller->pressStart();
        EXPECT_EQ(panel().scnUpdate.text, shown);
        poller->pressStart();
    }
    for (const auto& [typed, shown] :
         {std::pair{"0", "1000"}, {"200000", "1000"}, {"x", "1000"}, {"100", "100"}}) {
        setLoops(typed);
        EXPECT_EQ(panel().textSampleCnt.text, shown);
    }
    adapter.expectOpening();
    adapter.expect("010C\r").answer("41 0C 00 04 \r\r>");
    adapter.expect("010C\r").answer("41 0C 00 08 \r\r>");
    adapter.expect("010C\r").answer("41 0C 00 0C \r\r>");
    adapter.expect("010C\r");
    poller->pressStart();
    std::string seen;
    poller->onChanged = [&] { seen += panel().obdGrid[0].value + ","; };
    clock.now += std::chrono::seconds(4);
    adapter.play();
    EXPECT_TRUE(seen.ends_with("0rpm,"))
        << "refreshed with the request, before its reply was looked at: " << seen;
    EXPECT_EQ(panel().ProgressBar1.value, 3);
    ticker.tick();
    EXPECT_EQ(panel().ProgressBar1.text, "2:09 left");
    adapter.expect("ATD\r");
    clock.date -= std::chrono::hours(5); // the clock is set back
    poller->pressStart();
    EXPECT_EQ(panel().obdGrid[0].value, "3rpm");
    EXPECT_EQ(poller->samples()[3].time, 4);
}

TEST_F(PollerTest, AnOddEventDoesNotEndTheRunThatIsSavedMeanwhile)
{
    makePoller({{"010C", 1}});
    start({{"010C", "41 0C 00 04 \r\r>"}, {"010C", ""}});
    adapter.sendEvent(1006);
    EXPECT_EQ(panel().statusBox, "com1 Polling - unhandled comm Event: 1006");
    poller->saveLog(); // cancelled
    dialogs.chosen = folder.path("a.log");
    poller->saveLog();
    adapter.expect("ATD\r");
    poller->pressStart();
    poller->unload();
    EXPECT_TRUE(kept.list().empty()) << "saved while it was on, and nothing came after";

    design.events()[0].frequency = 0;
    poller->pressStart();
    EXPECT_TRUE(prompts.takeMessage().starts_with("The design has no event to poll."));
}

TEST_F(PollerTest, ASilentAdapterEndsTheRunAndTheNextIsKeptWithItsOwnStart)
{
    makePoller({{"010C", 1000000}});
    adapter.expect("ATZ\r");
    adapter.expect("ATD\r");
    poller->pressStart();
    timer.tick();
    EXPECT_EQ(prompts.takeMessage(),
              "OBD is not responding... Please verify connections between computer and vehicle");
    EXPECT_FALSE(poller->isPolling());
    EXPECT_TRUE(panel().labelStats.ends_with("Err: 1"));
    clock.date += std::chrono::hours(1);
    adapter.expectOpening();
    adapter.expect("010C\r").answer("41 0C 00 04 \r\r>");
    adapter.expect("ATD\r");
    poller->pressStart();
    clock.now += std::chrono::seconds(2);
    adapter.play();
    EXPECT_EQ(panel().statLab1, "1000000 Loops, 1 Events, 2 sec, 500000 Lp/s, 0.5 Ev/s");
    poller->unload();
    ASSERT_EQ(kept.list().size(), 1U);
    EXPECT_EQ(KeptRuns::load(kept.list()[0]).firstStart, clock.date);
}

TEST_F(PollerTest, WritesItsFilesAndKeepsWhatIsNotSaved)
{
    makePoller({{"010C", 1}});
    const auto run = [this] { start({{"010C", "41 0C 00 04 \r\r>"}, {"ATD", ""}}); };
    setLoops("1");
    run();
    poller->saveLog();
    EXPECT_EQ(dialogs.asked,
              "save /start|yesterday.log|Zint log files (*.log)|*.log|Text files (*.txt)|*.txt|"
              "All files (*.*)|*.*");
    EXPECT_FALSE(kept.list().empty() && !kept.isKeeping()) << "cancelled: still kept";
    dialogs.chosen = folder.path("run.log");
    poller->saveLog();
    EXPECT_EQ(panel().statusBox, "run.log log saved");
    dialogs.asked.clear();
    poller->saveLog();
    EXPECT_EQ(dialogs.asked, "") << "the same file again";
    poller->saveLogAs();
    EXPECT_NE(dialogs.asked, "");
    EXPECT_EQ(values.parmLogFile, "run.log") << "cancelled";
    dialogs.chosen = folder.path("run.txt");
    poller->exportLog();
    EXPECT_EQ(panel().statusBox, "run.txt export saved");
    EXPECT_TRUE(saved("run.txt").ends_with("\r\n0\t1\r\n"));
    dialogs.chosen = "/dev/full";
    poller->saveLogAs();
    EXPECT_EQ(panel().statusBox, "Error Saving log to full");
    EXPECT_FALSE(prompts.takeMessage().empty());
    poller->recover();
    EXPECT_EQ(prompts.takeMessage(), "There is no unsaved run to recover.");

    poller->resetValues();
    dialogs.asked.clear();
    run();
    poller->saveLog();
    EXPECT_NE(dialogs.asked, "") << "another run, another name";
    poller->unload();
    prompts.chosen = 0;
    dialogs.chosen = folder.path("recovered.log");
    poller->recover();
    EXPECT_EQ(prompts.question, "Recover Unsaved Run\nUnsaved runs\ntoday   Car (1 samples)");
    EXPECT_EQ(saved("recovered.log"), saved("run.log"));
    EXPECT_TRUE(kept.list().empty());
}

#ifdef ZINT_WRAPS_NEW
TEST_F(PollerTest, StopsWhenThereIsNoMemoryAndGoesOnWhenThereIsAgain)
{
    constexpr std::int32_t full = 65536 - 1 - 1; // a block's samples: without the header, and one to go
    makePoller({{"010C", 1}, {"0105", full}});
    design.events()[1].offset = 1; // first due when there is room for its header, but not for its sample
    setLoops("100000");
    adapter.expectOpening();
    for (std::int32_t i = 0; i < full; ++i)
        adapter.expect("010C\r").answer("41 0C 00 04 \r\r>");
    adapter.expect("0105\r");
    adapter.expect("010C\r");
    adapter.expect("ATD\r");
    poller->pressStart();
    adapter.play();
    memoryIsShort = true;
    adapter.receive("41 05 04 \r\r>");
    memoryIsShort = false;
    EXPECT_TRUE(prompts.takeMessage().starts_with("There is no memory for more samples"));
    EXPECT_FALSE(poller->isPolling());
    EXPECT_FALSE(adapter.isOpen());

    const auto logOf = [](const Design& polled, const SampleStore& samples) {
        std::ostringstream log;
        writeLog(log, polled, samples, "today");
        return log.str();
    };
    const auto holds = [&](std::int32_t count) { // of the first event, none of the second
        EXPECT_EQ(poller->samples().events()[0].sampleCount, count);
        const std::string log = logOf(design, poller->samples());
        std::istringstream stream(log);
        const DataLog read = readLog(stream);
        EXPECT_EQ(read.samples.size(), static_cast<std::size_t>(count) + 1);
        EXPECT_TRUE(logOf(read.design, read.samples) == log);
        return log;
    };
    holds(full);
    clock.now += std::chrono::seconds(5);
    start({{"010C", "41 0C 00 08 \r\r>"}, {"010C", "41 0C 00 0C \r\r>"}, {"010C", ""}});
    adapter.expect("ATD\r");
    poller->pressStart();
    const std::string log = holds(full + 2);
    EXPECT_TRUE(log.ends_with("\r\n0,4\r\n5,8\r\n5,12\r\n")) << "seconds since the first start";
    poller->unload();
    const KeptRun run = KeptRuns::load(kept.list().at(0));
    EXPECT_TRUE(logOf(run.design, run.samples) == log);
}
#endif

} // namespace
} // namespace zint
