#include "link/commError.h"
#include "sim/simulatedPort.h"
#include "support/manualTime.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

using namespace std::chrono_literals;

struct SimulatedPortTest : testing::Test {
    ManualTimer timer;
    ManualClock clock;
    Vehicle vehicle;
    SimulatedPort port{
        timer, clock, vehicle, {.latency = 30ms, .pieceLength = 8, .repliesUntilDisconnect = 4}};
    std::string replies; ///< each notification ends with a bar

    SimulatedPortTest()
    {
        port.onNotice = [this](PortNotice notice) {
            replies += port.input() + (notice == PortNotice::deviceGone ? "gone|" : "|");
        };
        port.open(PortNumber{1}, 9600);
        ask("ATE0");
    }

    std::string ask(const std::string& command)
    {
        replies.clear();
        port.output(command + "\r");
        while (timer.enabled()) {
            clock.now += timer.interval;
            timer.tick();
        }
        return replies;
    }
};

TEST_F(SimulatedPortTest, DeliversRepliesWhenTheirTimeHasCome)
{
    replies.clear();
    port.output("010D\r");
    EXPECT_EQ(timer.interval, 30ms);
    clock.now += 29ms; // a timer that ticks early
    timer.tick();
    EXPECT_EQ(timer.interval, 1ms);
    clock.now += 1ms;
    timer.tick();
    EXPECT_EQ(replies, "") << "not a whole line";
    timer.tick();
    EXPECT_EQ(replies, "41 0D 00 \r|");
    port.onNotice = [this](PortNotice) { port.close(); };
    ask("010D");
    EXPECT_FALSE(port.isOpen());
}

TEST_F(SimulatedPortTest, AClosedPortDeliversNothingAndTellsOnceThatTheDeviceIsGone)
{
    ask("04");
    port.output("0101\r");
    port.output("ATD\r"); // as each tool does when it closes
    port.close();
    EXPECT_FALSE(timer.enabled());
    EXPECT_THROW(port.output("ATZ\r"), CommError);
    port.open(PortNumber{1}, 9600);
    EXPECT_THROW(port.open(PortNumber{1}, 9600), CommError);
    EXPECT_EQ(ask("0101"), "41 01 00 77 65 65 \r|\r>|") << "of this session; what was cleared stays so";
    ask("ATI");
    ask("ATI");
    EXPECT_EQ(ask("03"), "43 00 00 00 00 00 00 \r|\r>|gone|") << "the last reply still comes";
    EXPECT_EQ(ask("0101"), "");
}

} // namespace
} // namespace zint
