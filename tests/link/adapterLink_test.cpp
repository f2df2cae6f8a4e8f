#include "link/adapterLink.h"
#include "support/manualTime.h"
#include "support/scriptedAdapter.h"

namespace zint {
namespace {

using Texts = std::vector<std::string>;

/// Writes down what the link tells a tool.
struct Tool final : AdapterLink::Listener {
    Texts told;

    void linkReady() override { told.emplace_back("ready"); }
    void linkReply(std::string_view reply) override { told.emplace_back(reply); }
    void linkReceived() override {}
    void linkNotice(std::string_view text) override { told.emplace_back(text); }
    void linkTimedOut() override { told.emplace_back("timed out"); }
    void linkLost() override { told.emplace_back("lost"); }
};

struct AdapterLinkTest : testing::Test {
    ScriptedAdapter adapter;
    ManualTimer timer, silence;
    Tool tool;
    AdapterLink link{{adapter, {PortNumber{3}, 38400, "/dev/rfcomm0"}, timer, &silence}, tool};

    void openAndGetReady()
    {
        adapter.expectOpening();
        ASSERT_TRUE(link.open());
        adapter.play();
        EXPECT_EQ(takeTold(), Texts{"ready"});
    }

    Texts takeTold() { return std::exchange(tool.told, {}); }

    std::string face() const { return link.status() + "|" + link.counterLine(); }

    /// What the status tells when the time for that has come.
    std::string statusInSilence()
    {
        EXPECT_EQ(silence.interval, std::chrono::seconds(10));
        silence.tick();
        return link.status();
    }
};

TEST_F(AdapterLinkTest, OpensTalksAndCloses)
{
    EXPECT_EQ(face(), "com3 Closed|Bytes In: 0  Out: 0     Errors: 0");
    adapter.expect("ATZ\r").answer("?\r>", 1); // what the adapter answers while opening does not matter
    EXPECT_TRUE(link.open());
    EXPECT_EQ(face(), "com3 Open|Bytes In: 0 Out: 4 Errors: 0");
    EXPECT_TRUE(timer.enabled() && timer.interval == std::chrono::seconds(45));

    adapter.expect("ATE0\r");
    adapter.play();
    EXPECT_EQ(link.status(), "com3 Init");
    EXPECT_FALSE(timer.enabled());
    adapter.receive("BUS INIT: ...OK\r>");
    adapter.expect("0101\r").answer("BUS INIT: ...OK\r41 01 82 07 65 04 \r\r>", 7);
    link.send("0101");
    adapter.play();
    EXPECT_EQ(tool.told, (Texts{"ready", "41 01 82 07 65 04 \r\r>"}));
    EXPECT_EQ(link.counterLine(), "Bytes In: 57 Out: 14 Errors: 0") << "with what is dropped";

    adapter.expect("ATD\r").answer("OK\r\r>");
    link.close();
    adapter.play();
    EXPECT_EQ(face(), "com3 Closed|Bytes In: 57 Out: 18 Errors: 0");
    link.close(); // a closed link stays as it is
    EXPECT_EQ(adapter.history, (Texts{"open com3 38400", "ATZ\r", "ATE0\r", "0101\r", "ATD\r", "close"}));
}

TEST_F(AdapterLinkTest, TellsWhyThePortCannotBeOpened)
{
    adapter.writeError = CommError(5, "Input/output error");
    EXPECT_FALSE(link.open());
    EXPECT_EQ(face(), "com3 - Comm init error: 5: Input/output error|Bytes In: 0 Out: 0 Errors: 0");
    EXPECT_EQ(link.lastFailure(), link.status());
    EXPECT_FALSE(timer.enabled());
    EXPECT_EQ(adapter.history, (Texts{"open com3 38400", "close"})) << "no ATD";

    adapter.workAgain();
    openAndGetReady();
    EXPECT_EQ(link.lastFailure(), "");
}

// Each tool's tests show what it makes of a lost device, a time-out and odd notices.
TEST_F(AdapterLinkTest, TellsOnceOfATimeOutAndOfALostDevice)
{
    adapter.expect("ATZ\r").answer("ATZ\r"); // an echo, but no prompt
    link.open();
    adapter.play();
    EXPECT_EQ(link.counterLine(), "Bytes In: 4 Out: 4 Errors: 0") << "an incomplete reply is counted";
    timer.tick();
    timer.tick();
    EXPECT_EQ(takeTold(), Texts{"timed out"});
    EXPECT_EQ(link.lastFailure(), AdapterLink::notRespondingText);
    adapter.vanish();
    EXPECT_EQ(takeTold(), Texts{"lost"});
    EXPECT_EQ(face(), "com3 - adapter disconnected|Bytes In: 4 Out: 4 Errors: 2");
    EXPECT_EQ(link.lastFailure(), link.status());

    adapter.workAgain();
    openAndGetReady();
    timer.tick();                                            // too late
    adapter.writeError = CommError(5, "Input/output error"); // the notice has not come yet
    link.send("0101");
    link.close();
    EXPECT_EQ(face(), "com3 Closed|Bytes In: 34 Out: 13 Errors: 2") << "what was not sent is not counted";
    EXPECT_EQ(tool.told, Texts());
}

TEST_F(AdapterLinkTest, TellsWhatCameInsteadOfAnAnswer)
{
    adapter.expect("ATZ\r").answer("ATZ\r");
    link.open();
    EXPECT_EQ(statusInSilence(), "com3 Open - nothing received for 10 s");
    EXPECT_TRUE(link.timeoutReason().starts_with("No answer on com3: nothing was received. "));
    adapter.play();
    EXPECT_EQ(link.status(), "com3 Open") << "something was received";
    EXPECT_EQ(statusInSilence(), "com3 Open - no complete answer for 10 s");
    EXPECT_TRUE(link.timeoutReason().starts_with("No answer on com3: what was received is not complete. "));
    adapter.receive("\xFC");
    EXPECT_EQ(statusInSilence(), "com3 Open - received, but not readable: try 9600");
    adapter.expect("ATE0\r").answer("OK\r\r>");
    adapter.receive(std::string("\0ELM327\0\r\r>", 12));
    EXPECT_EQ(link.counters().bytesIn, 4 + 1 + 12) << "bytes 00 are counted, too";
    EXPECT_EQ(statusInSilence(), "com3 Init - no reply for 10 s");
    adapter.play();
    EXPECT_EQ(tool.told, Texts{"ready"});
    EXPECT_FALSE(silence.enabled()) << "nothing is asked";
    adapter.vanish();
    adapter.workAgain();
    adapter.expect("ATZ\r");
    link.open();
    EXPECT_EQ(statusInSilence(), "com3 Open - nothing received for 10 s") << "since it was opened";
    adapter.expect("ATD\r");
    link.close();
    EXPECT_FALSE(timer.enabled() || silence.enabled());
}

} // namespace
} // namespace zint
