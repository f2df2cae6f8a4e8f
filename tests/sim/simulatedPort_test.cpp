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
    std::vector<PortNotice> notices;
    std::string replies;

    SimulatedPortTest()
    {
        port.onNotice = [this](PortNotice notice) {
            notices.push_back(notice);
            replies += port.input();
        };
        open();
        ask("ATE0");
    }

    void open() { port.open(PortNumber{1}, 9600); }

    std::string ask(const std::string& command)
    {
        notices.clear();
        replies.clear();
        port.output(command + "\r");
        for (int ticks = 0; timer.enabled() && ticks < 100; ++ticks) {
            clock.now += timer.interval;
            timer.tick();
        }
        return replies;
    }
};

TEST_F(SimulatedPortTest, DeliversRepliesWhenTheirTimeHasCome)
{
    notices.clear();
    replies.clear();
    port.output("010D\r");
    EXPECT_EQ(timer.interval, 30ms);
    clock.now += 29ms; // a timer that ticks early
    timer.tick();
    EXPECT_EQ(timer.interval, 1ms);
    clock.now += 1ms;
    timer.tick();
    EXPECT_TRUE(notices.empty()) << "not a whole line";
    timer.tick();
    EXPECT_EQ(notices, std::vector{PortNotice::received});
    EXPECT_EQ(replies, "41 0D 00 \r");
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
    open();
    EXPECT_THROW(open(), CommError);
    EXPECT_EQ(ask("0101"), "41 01 00 77 65 65 \r\r>") << "of this session; what was cleared stays so";
    ask("ATI");
    ask("ATI");
    EXPECT_EQ(ask("03"), "43 00 00 00 00 00 00 \r\r>") << "the last reply still comes";
    EXPECT_EQ(notices.back(), PortNotice::deviceGone);
    EXPECT_EQ(ask("0101"), "");
    EXPECT_TRUE(notices.empty());
}

} // namespace
} // namespace zint
