#include "runner/pollerTest.h"
#include "support/sampleTimes.h"

namespace zint {
namespace {

using namespace std::chrono_literals;

/// A run of two events over two loops that may survive its adapter.
struct ReconnectTest : PollerTest {
    /// All that is sent, with its answer.
    const std::vector<std::pair<std::string, std::string>> exchange{
        {"ATZ", "ELM327 v1.5\r\r>"},   {"ATE0", "OK\r\r>"},        {"ATH0", "OK\r\r>"},
        {"010C", "41 0C 00 04 \r\r>"}, {"0105", "41 05 50 \r\r>"}, {"010C", "41 0C 00 08 \r\r>"}};
    const std::size_t setUp = 3; ///< the exchange begins with so many commands
    int losses = 0;

    ReconnectTest()
    {
        makePoller({every(1, "010C"), every(2, "0105")});
        design.extraCommands = "ATH0";
        poller->letReconnect(60s);
        setLoops("2");
    }

    void expectAnswered(std::size_t from, std::size_t to)
    {
        for (; from < to; ++from)
            adapter.expect(exchange.at(from).first + "\r").answer(exchange.at(from).second);
    }

    /// The adapter gets a step and vanishes after part of its answer at most.
    void pullAt(std::size_t step, const char* answer = "")
    {
        adapter.expect(exchange.at(step).first + "\r");
        poller->isPolling() ? wait(1) : poller->pressStart();
        adapter.play();
        adapter.receive(answer);
        adapter.vanish();
        EXPECT_EQ(panel().statusBox + panel().comStart, "com1 adapter gone, waiting for itStop Polling");
        EXPECT_TRUE(poller->isInterrupted());
        ++losses;
    }
};

TEST_F(ReconnectTest, ARunGoesOnWhereverItsAdapterVanishes)
{
    for (std::size_t first = 0; first < exchange.size(); ++first) {   // what is not answered
        for (std::size_t second = 0; second <= setUp + 1; ++second) { // likewise, after that; or nothing
            SCOPED_TRACE(exchange[first].first + std::to_string(first) + ", then " + std::to_string(second));
            const std::size_t request = std::max(first, setUp);
            expectAnswered(0, first);
            pullAt(first, first + 1 == exchange.size() ? "41 0C 00 0" : "");
            wait(5);
            if (second <= setUp) {
                adapter.workAgain();
                expectAnswered(0, second);
                pullAt(second < setUp ? second : request);
                wait(2);
            }
            adapter.workAgain();
            expectAnswered(0, setUp);
            expectAnswered(request, exchange.size());
            adapter.expect("ATD\r");
            wait(1);
            adapter.play();
            EXPECT_EQ(panel().statusBox, "Completed Polling, all samples filled");
            EXPECT_TRUE(panel().labelStats.ends_with(" Err: " + std::to_string(losses)))
                << panel().labelStats;
            EXPECT_EQ(poller->lastFailure(), "");
            std::vector<std::int32_t> times(request - setUp, 0);
            times.resize(3, second <= setUp ? 9 : 6);
            EXPECT_EQ(sampleTimes(poller->samples()), times);
            EXPECT_EQ(poller->samples()[4].isFirst, request > setUp) << "no line over the wait";
            EXPECT_TRUE(panel().statLab1.starts_with("2 Loops, 3 Events, ")) << panel().statLab1;
            poller->resetValues();
        }
    }
    EXPECT_EQ(values.requestSeconds, 0) << "only the waits took time";
    EXPECT_EQ(prompts.takeMessage(), "");
}

TEST_F(ReconnectTest, TheWaitEndsAsTheUserWants)
{
    poller->setTimeLimit("30");
    const std::pair<std::string, std::function<void()>> rows[] = {
        {"stopped", [&] { poller->pressStart(); }},
        {"unchecked", [&] { poller->letReconnect(std::nullopt); }},
        {"closed", [&] { poller->unload(); }},
        {"patience", [&] { wait(20); }},
        {"time limit", [&] { wait(29); }},
    };
    for (const auto& [why, end] : rows) {
        SCOPED_TRACE(why);
        poller->letReconnect(why == "patience" ? 20s : Reconnection::withoutEnd);
        expectAnswered(0, 4);
        pullAt(4);
        wait(1); // a try in vain
        EXPECT_EQ(panel().ProgressBar1.text, "0:29 left");
        end();
        EXPECT_FALSE(poller->isPolling() || ticker.enabled());
        EXPECT_EQ(panel().lengthHint.starts_with("Ended after 0:30"), why == "time limit");
        EXPECT_EQ(panel().statusBox, "com1 - adapter disconnected");
        EXPECT_EQ(poller->lastFailure(), panel().statusBox);
        adapter.workAgain();
        poller->resetValues();
    }
}

TEST_F(ReconnectTest, LeavesAnotherAdapterAloneAndTriesAgainWhatDoesNotAnswer)
{
    poller->onReply = [this] { clock.now += 1s; };
    expectAnswered(0, 4);
    pullAt(4);
    adapter.workAgain();
    device = "/dev/ttyUSB1"; // has become the first port of the machine
    wait(10);
    EXPECT_EQ(panel().ProgressBar1.text, "") << "nobody knows how long that takes";
    device = "/dev/ttyUSB0";
    adapter.expect("ATZ\r");
    adapter.expect("ATD\r");
    wait(1);
    timer.tick();
    EXPECT_TRUE(poller->isWaiting());
    EXPECT_EQ(prompts.takeMessage(), "") << "a box would hold up what nobody watches";
    expectAnswered(0, setUp);
    adapter.expect("0105\r");
    wait(1);
    adapter.play();
    EXPECT_EQ(panel().statusBox, "com1 Polling - reconnected once");
    EXPECT_FALSE(poller->isInterrupted());
    clock.now += 2s;
    adapter.expect("010C\r");
    adapter.receive("41 05 50 \r\r>");
    pressStop();
    EXPECT_EQ(panel().statusBox, "com1 Polling Completed ");
    EXPECT_EQ(values.requestSeconds, 3) << "the wait is none that requests take";
}

using RenewalTest = PollerTest;

TEST_F(RenewalTest, SendsTheSettingsAnewToAnAdapterThatHasLostThem)
{
    constexpr const char* echoed = "010C\r41 0C 00 04 \r\r>";
    const std::vector<const char*> rows[] = {
        {echoed, echoed, echoed, echoed},
        {"41 0C 00 \rLV RESET\r\r>", "UNABLE TO CONNECT\r\r>"}, // its search is blocked
        {"ELM327 v1.5\r\r>", echoed},
        {"410C0004\r\r>", "NO DATA\r\r>", "410C0004\r\r>", "410C0004\r\r>", echoed},
    };
    poller->letReconnect(60s);
    start({{"010C", ""}});
    for (std::vector<const char*> replies : rows) {
        SCOPED_TRACE(replies.front());
        const char* const last = replies.back();
        replies.pop_back();
        for (const char* const text : replies)
            reply(text);
        adapter.expectOpening(); // in place of a request
        adapter.expect("010C\r");
        adapter.receive(last);
        EXPECT_EQ(panel().statusBox, "com1 adapter has lost its settings, sending them anew");
        EXPECT_TRUE(poller->isInterrupted() && timer.enabled());
        adapter.play();
        EXPECT_FALSE(poller->isInterrupted());
        reply();
        clock.now += 10min;
    }
    EXPECT_EQ(sampleTimes(poller->samples()).size(), 4U) << "nothing that only reads as a value";
    EXPECT_EQ(panel().statusBox, "com1 Polling - set up anew 4 times");
    EXPECT_FALSE(poller->sawMismatch());
    for (int i = 0; i < 9; ++i)
        reply("7F 01 12 \r\r>"); // the vehicle's word, with all settings in order
    pressStop();
}

TEST(RenewalPauseTest, DoesNotResetForEverWhatNeverMatches)
{
    Renewal renewal;
    std::vector<int> begun; // seconds
    for (int second = 0; second <= 1200; ++second) {
        const Renewal::Time now = std::chrono::seconds(second);
        renewal.take(ReplyFit::match, "", now); // one event among others
        for (int i = 0; i < 3 && (second < 600 || second == 1200); ++i)
            renewal.take(ReplyFit::mismatch, "", now);
        EXPECT_EQ(renewal.wasVain(), second > 0);
        if (renewal.isDue(now)) {
            renewal.begin(now);
            begun.push_back(second);
        }
    }
    EXPECT_EQ(begun, (std::vector{0, 10, 30, 70, 150, 310, 1200})) << "the last one is of a new series";
}

} // namespace
} // namespace zint
