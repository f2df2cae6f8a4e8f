#include "link/commError.h"
#include "sim/simulatedPort.h"
#include "support/manualClock.h"
#include "support/manualTimer.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <utility>
#include <vector>

namespace zint {
namespace {

using namespace std::chrono_literals;

class SimulatedPortTest : public testing::Test {
protected:
    void plugIn(AdapterOptions options)
    {
        port.emplace(timer, clock, vehicle, std::move(options));
        port->setReceiveThreshold(1);
        port->onComm = [this] {
            EXPECT_FALSE(insideCall) << "a notification from inside a call";
            events.push_back(port->lastCommEvent());
            if (onEvent)
                onEvent();
        };
    }

    void open()
    {
        guarded([this] { port->open(); });
    }
    void close()
    {
        guarded([this] { port->close(); });
    }
    void output(std::string_view text)
    {
        guarded([this, text] { port->output(text); });
    }

    /// Lets time pass until nothing more is to come.
    void run()
    {
        for (int ticks = 0; timer.enabled(); ++ticks) {
            ASSERT_LT(ticks, 1000) << "the timer never stops";
            clock.advance(timer.interval());
            timer.tick();
        }
    }

    std::string ask(const std::string& command)
    {
        output(command + "\r");
        run();
        return port->input();
    }

    ManualTimer timer;
    ManualClock clock;
    Vehicle vehicle;
    std::optional<SimulatedPort> port;
    std::vector<int> events;
    std::function<void()> onEvent;

private:
    template <typename Call>
    void guarded(Call call)
    {
        insideCall = true;
        call();
        insideCall = false;
    }

    bool insideCall = false;
};

TEST_F(SimulatedPortTest, DeliversRepliesBetweenEvents)
{
    plugIn({});
    open();
    output("ATE0\r");
    EXPECT_EQ(port->inBufferCount(), 0) << "nothing arrives before the next event";
    run();
    EXPECT_EQ(events, std::vector{commEvent::receive});
    EXPECT_EQ(port->inBufferCount(), 10);
    EXPECT_EQ(port->input(), "ATE0\rOK\r\r>");
    EXPECT_EQ(port->inBufferCount(), 0);
    EXPECT_FALSE(timer.enabled());
}

TEST_F(SimulatedPortTest, WaitsAsLongAsTheAdapterTakes)
{
    plugIn({.latency = 30ms});
    open();
    ask("ATE0");
    output("0101\r");
    EXPECT_EQ(timer.interval(), 30ms);
    clock.advance(29ms); // a timer that ticks early
    timer.tick();
    EXPECT_EQ(port->inBufferCount(), 0);
    EXPECT_EQ(timer.interval(), 1ms);
    run();
    EXPECT_EQ(port->input(), "41 01 83 07 65 04 \r\r>");
}

TEST_F(SimulatedPortTest, AnswersAProgramThatWritesFromTheNotification)
{
    plugIn({.latency = 1ms});
    open();
    int requests = 0;
    std::string replies;
    onEvent = [&] {
        replies += port->input();
        if (replies.ends_with('>') && ++requests <= 3)
            port->output("010D\r");
    };
    output("ATE0\r");
    run();
    EXPECT_EQ(replies, "ATE0\rOK\r\r>41 0D 00 \r\r>41 0D 00 \r\r>41 0D 00 \r\r>");
}

TEST_F(SimulatedPortTest, NotifiesFromTheThresholdOn)
{
    plugIn({.pieceLength = 4});
    port->setReceiveThreshold(10);
    open();
    output("ATE0\r"); // ten characters come back
    run();
    EXPECT_EQ(events.size(), 1U);
    EXPECT_EQ(port->inBufferCount(), 10);

    port->setReceiveThreshold(0);
    ask("0101");
    EXPECT_EQ(events.size(), 1U);
}

TEST_F(SimulatedPortTest, ReadsAsMuchAsTheInputLengthSays)
{
    plugIn({});
    port->setInputLength(5);
    open();
    EXPECT_EQ(ask("ATE0"), "ATE0\r");
    EXPECT_EQ(port->inBufferCount(), 5);
}

TEST_F(SimulatedPortTest, AClosedPortDeliversNothing)
{
    plugIn({.latency = 10ms});
    open();
    ask("ATE0");
    events.clear();
    output("0101\r");
    close();
    EXPECT_FALSE(timer.enabled());
    EXPECT_FALSE(port->isOpen());
    close();
    open();
    run();
    EXPECT_TRUE(events.empty()) << "the reply belonged to the session before";
    EXPECT_EQ(ask("ATI"), "ELM327 v1.5\r\r>") << "the echo is still off";
}

TEST_F(SimulatedPortTest, CanBeClosedInTheNotification)
{
    plugIn({.pieceLength = 2});
    open();
    onEvent = [this] { port->close(); };
    output("ATZ\r");
    run();
    EXPECT_EQ(events.size(), 1U);
    EXPECT_EQ(port->inBufferCount(), 0);
}

TEST_F(SimulatedPortTest, TellsOnceThatTheDeviceIsGone)
{
    plugIn({.repliesUntilDisconnect = 2});
    for (int session = 0; session < 2; ++session) {
        open();
        ask("ATZ");
        events.clear();
        EXPECT_TRUE(ask("ATE0").ends_with("OK\r\r>")) << "the last reply still arrives";
        EXPECT_EQ(events, (std::vector{commEvent::receive, commEvent::deviceGone}));
        EXPECT_EQ(ask("0101"), "");
        EXPECT_EQ(events.size(), 2U);
        EXPECT_TRUE(port->isOpen());
        close();
    }
}

TEST_F(SimulatedPortTest, TheVehicleOutlivesThePort)
{
    plugIn({});
    open();
    ask("ATE0");
    EXPECT_EQ(ask("04"), "44 \r\r>");
    close();
    plugIn({});
    open();
    EXPECT_EQ(ask("ATE0"), "ATE0\rOK\r\r>") << "another adapter";
    EXPECT_EQ(ask("0101"), "41 01 00 77 65 65 \r\r>");
}

TEST_F(SimulatedPortTest, RefusesWhatARealPortRefuses)
{
    plugIn({});
    EXPECT_THROW(port->output("ATZ\r"), CommError);
    port->setSettings("fast");
    EXPECT_THROW(port->open(), CommError);
    EXPECT_FALSE(port->isOpen());
    port->setSettings("38400,N,8,1");
    port->open();
    EXPECT_THROW(port->open(), CommError);
    EXPECT_TRUE(port->isOpen());
}

} // namespace
} // namespace zint
