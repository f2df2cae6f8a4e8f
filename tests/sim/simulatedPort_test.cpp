#include "link/commError.h"
#include "sim/simulatedPort.h"
#include "sim/wrongSpeed.h"
#include "support/manualTime.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

using namespace std::chrono_literals;

TEST(SimulatedPortTest, AClosedPortDeliversNothingAndTellsOnceThatTheDeviceIsGone)
{
    ManualTimer timer;
    ManualClock clock;
    Vehicle vehicle;
    SimulatedPort port(timer, clock, vehicle,
                       {.defaultsDelay = 100ms, .pieceLength = 8, .repliesUntilDisconnect = 4});
    std::string replies; // each notification ends with a bar
    port.onNotice = [&](PortNotice notice) {
        replies += port.input() + (notice == PortNotice::deviceGone ? "gone|" : "|");
    };
    const auto ask = [&](const std::string& command) {
        replies.clear();
        port.output(command + "\r");
        while (timer.enabled()) {
            clock.now += timer.interval;
            timer.tick();
        }
        return replies;
    };
    port.open(PortNumber{1}, 9600);
    ask("ATE0");
    EXPECT_EQ(ask("04"), "44 \r|\r>|");
    port.output("ATD\r"); // as each tool does when it closes; the answer comes late
    EXPECT_EQ(timer.interval, 100ms);
    port.close();
    EXPECT_FALSE(timer.enabled());
    EXPECT_THROW(port.output("ATZ\r"), CommError);
    port.open(PortNumber{1}, 9600);
    EXPECT_THROW(port.open(PortNumber{1}, 9600), CommError);
    EXPECT_EQ(ask("ATE0"), "ATE0\r|OK\r|\r>|") << "of this session";
    ask("ATI");
    EXPECT_EQ(ask("0101"), "41 01 00 77 65 65 \r|\r>|") << "what was cleared stays so";
    EXPECT_EQ(ask("03"), "43 00 00 00 00 00 00 \r|\r>|gone|") << "the last reply still comes";
    EXPECT_EQ(ask("0101"), "");
}

TEST(SimulatedPortTest, BytesOfAnotherSpeedAreSampledAsAReceiverDoes)
{
    EXPECT_EQ(heardAtOtherSpeed("ATI\r", 9600, 9600), "ATI\r");
    EXPECT_EQ(heardAtOtherSpeed("U", 38400, 9600), "\xFE") << "0 10101010 1, each fourth bit";
    EXPECT_EQ(heardAtOtherSpeed("\xF0", 9600, 19200), std::string("\0", 1)) << "a long pause is one byte";
}

} // namespace
} // namespace zint
