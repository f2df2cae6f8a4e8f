#include "link/adapterLink.h"
#include "support/manualTimer.h"
#include "support/scriptedAdapter.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace zint {
namespace {

/// Writes down what the link tells a tool.
struct Tool final : AdapterLink::Listener {
    std::vector<std::string> told;
    std::function<void()> onReady;

    void linkReady() override
    {
        told.emplace_back("ready");
        if (onReady)
            onReady();
    }
    void linkReply(std::string_view reply) override { told.emplace_back(reply); }
    void linkReceived() override { ++received; }
    void linkStatusChanged() override { told.emplace_back("status"); }
    void linkTimedOut() override { told.emplace_back("timed out"); }
    void linkLost() override { told.emplace_back("lost"); }

    int received = 0;
};

using Told = std::vector<std::string>;

struct AdapterLinkTest : testing::Test {
    ScriptedAdapter adapter;
    ManualTimer timer;
    Tool tool;
    AdapterLink link{adapter, timer, {.portNumber = 3, .portName = "com3", .speed = "38400"}, tool};

    void openAndGetReady()
    {
        adapter.expectOpening();
        ASSERT_TRUE(link.open());
        adapter.play();
        ASSERT_EQ(tool.told, Told{"ready"});
        tool.told.clear();
    }
};

TEST_F(AdapterLinkTest, ShowsAClosedPortAtFirst)
{
    EXPECT_EQ(link.status(), "com3 Closed");
    EXPECT_EQ(link.counterLine(), "Bytes In: 0  Out: 0     Errors: 0");
    EXPECT_TRUE(adapter.history().empty()) << "the port is opened for an exchange only";
}

TEST_F(AdapterLinkTest, ResetsTheAdapterAndSwitchesItsEchoOff)
{
    adapter.expect("ATZ\r").answer("ATZ\r\r\rELM327 v1.5\r\r>").inChunksOf(5);
    adapter.expect("ATE0\r").answer("ATE0\rOK\r\r>");

    EXPECT_TRUE(link.open());
    EXPECT_EQ(link.status(), "com3 Open");
    EXPECT_EQ(link.counterLine(), "Bytes In: 0 Out: 4 Errors: 0");
    EXPECT_TRUE(timer.enabled());
    EXPECT_EQ(timer.interval(), std::chrono::seconds(45));

    adapter.receive("E");
    EXPECT_EQ(link.counterLine(), "Bytes In: 1 Out: 4 Errors: 0") << "counted before the reply is complete";
    EXPECT_TRUE(timer.enabled());

    tool.onReady = [this] { EXPECT_EQ(link.status(), "com3 Init"); };
    adapter.play();
    EXPECT_FALSE(timer.enabled());
    EXPECT_EQ(tool.told, Told{"ready"});
    EXPECT_EQ(link.counterLine(), "Bytes In: 31 Out: 9 Errors: 0");
    EXPECT_EQ(adapter.history(), (std::vector<std::string>{"open 3 38400,N,8,1", "ATZ\r", "ATE0\r"}));
}

TEST_F(AdapterLinkTest, DoesNotCareWhatTheAdapterAnswersWhileOpening)
{
    adapter.expect("ATZ\r").answer("?\r>");
    adapter.expect("ATE0\r").answer("BUS INIT: ...OK\r>");
    link.open();
    adapter.play();
    EXPECT_EQ(tool.told, Told{"ready"});
}

TEST_F(AdapterLinkTest, HandsOutRepliesAndCountsBytes)
{
    openAndGetReady();
    const auto inBefore = link.counters().bytesIn;
    const auto outBefore = link.counters().bytesOut;
    const int receivedBefore = tool.received;

    adapter.expect("0101\r").answer("BUS INIT: ...OK\r41 01 82 07 65 04 \r\r>").inChunksOf(7);
    link.send("0101");
    EXPECT_EQ(link.counters().bytesOut - outBefore, 5);
    adapter.play();
    EXPECT_EQ(tool.told, Told{"41 01 82 07 65 04 \r\r>"});
    EXPECT_EQ(link.counters().bytesIn - inBefore, 37) << "the dropped line is counted all the same";
    EXPECT_EQ(tool.received - receivedBefore, 6) << "once per notification";

    adapter.expect("03\r");
    link.send("03");
    EXPECT_EQ(link.counters().bytesOut - outBefore, 5 + 3);
}

TEST_F(AdapterLinkTest, ClosesWithTheAdaptersDefaultsRestored)
{
    openAndGetReady();
    adapter.expect("ATD\r").answer("OK\r\r>");
    link.close();
    adapter.play();
    EXPECT_FALSE(link.isOpen());
    EXPECT_EQ(link.status(), "com3 Closed");
    EXPECT_EQ(link.counterLine(), "Bytes In: 30 Out: 13 Errors: 0");
    ASSERT_EQ(adapter.history().size(), 5U);
    EXPECT_EQ(adapter.history()[3], "ATD\r") << "before the port is closed";
    EXPECT_EQ(adapter.history()[4], "close");

    link.close();
    EXPECT_EQ(adapter.history().size(), 5U) << "a closed link stays as it is";

    tool.told.clear();
    openAndGetReady();
    EXPECT_EQ(link.counterLine(), "Bytes In: 60 Out: 22 Errors: 0") << "the window goes on counting";
}

TEST_F(AdapterLinkTest, TellsWhyThePortCannotBeOpened)
{
    adapter.refuseToOpen(CommError(13, "Permission denied"));
    EXPECT_FALSE(link.open());
    EXPECT_EQ(link.status(), "com3 - Comm init error: 13: Permission denied");
    EXPECT_EQ(link.counterLine(), "Bytes In: 0 Out: 0 Errors: 0") << "refreshed, and no error counted";
    EXPECT_FALSE(timer.enabled());
    EXPECT_TRUE(adapter.history().empty());
}

TEST_F(AdapterLinkTest, ClosesThePortAgainWhenTheResetCannotBeSent)
{
    adapter.refuseToWrite(CommError(5, "Input/output error"));
    EXPECT_FALSE(link.open());
    EXPECT_EQ(link.status(), "com3 - Comm init error: 5: Input/output error");
    EXPECT_EQ(link.counterLine(), "Bytes In: 0 Out: 0 Errors: 0");
    EXPECT_FALSE(timer.enabled());
    EXPECT_EQ(adapter.history(), (std::vector<std::string>{"open 3 38400,N,8,1", "close"})) << "no ATD";

    adapter.workAgain();
    openAndGetReady();
}

TEST_F(AdapterLinkTest, CountsAnEventThatTheDriverDoesNotExplain)
{
    adapter.expect("ATZ\r");
    link.open();
    adapter.sendEvent(commEvent::unknown);
    EXPECT_EQ(link.status(), "com3 Open - unhandled comm Event: 0");
    EXPECT_EQ(tool.told, Told{"status"});
    EXPECT_EQ(link.counters().errors, 1);
    EXPECT_EQ(link.counterLine(), "Bytes In: 0 Out: 4 Errors: 0") << "shown with the next reply";
    EXPECT_TRUE(timer.enabled());
    EXPECT_EQ(tool.received, 0);
}

TEST_F(AdapterLinkTest, PassesOverLineEvents)
{
    adapter.expect("ATZ\r");
    link.open();
    for (const int event : {1, 3, 7, 1001, 1006, 1009})
        adapter.sendEvent(event);
    EXPECT_EQ(link.status(), "com3 Open");
    EXPECT_EQ(link.counters().errors, 0);
    EXPECT_TRUE(tool.told.empty());
    EXPECT_EQ(tool.received, 0);
}

TEST_F(AdapterLinkTest, TimesOutOnceWhenTheResetIsNotAnswered)
{
    adapter.expect("ATZ\r").answer("ATZ\r"); // an echo, but no prompt
    link.open();
    adapter.play();
    timer.tick();
    EXPECT_EQ(tool.told, Told{"timed out"});
    EXPECT_EQ(link.counters().errors, 1);
    EXPECT_TRUE(link.isOpen()) << "the tool ends its exchange itself";
    timer.tick();
    EXPECT_EQ(tool.told.size(), 1U);

    adapter.expect("ATD\r");
    link.close();
    tool.told.clear();
    openAndGetReady();
}

TEST_F(AdapterLinkTest, DropsATickThatComesTooLate)
{
    openAndGetReady();
    timer.tick();
    adapter.expect("ATD\r");
    link.close();
    timer.tick();

    adapter.expect("ATZ\r");
    adapter.expect("ATD\r");
    link.open();
    link.close();
    timer.tick();
    EXPECT_TRUE(tool.told.empty());
    EXPECT_EQ(link.counters().errors, 0);
}

TEST_F(AdapterLinkTest, EndsTheExchangeWhenTheDeviceVanishes)
{
    for (const bool resetAnswered : {false, true}) {
        SCOPED_TRACE(resetAnswered);
        tool.told.clear();
        if (resetAnswered) {
            openAndGetReady();
        } else {
            adapter.expect("ATZ\r");
            link.open();
        }
        const auto errorsBefore = link.counters().errors;
        adapter.vanish();
        EXPECT_EQ(link.status(), "com3 - adapter disconnected");
        EXPECT_EQ(link.counters().errors, errorsBefore + 1);
        EXPECT_EQ(link.counterLine(), link.counters().text());
        EXPECT_FALSE(timer.enabled());
        EXPECT_FALSE(link.isOpen());
        EXPECT_EQ(adapter.history().back(), "close") << "nothing is sent to a device that is gone";
        EXPECT_EQ(tool.told, Told{"lost"});

        EXPECT_FALSE(link.open());
        EXPECT_EQ(link.status(), "com3 - Comm init error: 2: No such file or directory");
        adapter.workAgain();
    }
}

TEST_F(AdapterLinkTest, SendsQuietlyToADeviceThatHasJustVanished)
{
    openAndGetReady();
    adapter.refuseToWrite(CommError(5, "Input/output error"));
    link.send("0101");
    EXPECT_EQ(link.counters().bytesOut, 9) << "what was not sent is not counted";
    link.close();
    EXPECT_EQ(link.status(), "com3 Closed");
    EXPECT_FALSE(adapter.isOpen());
}

} // namespace
} // namespace zint
