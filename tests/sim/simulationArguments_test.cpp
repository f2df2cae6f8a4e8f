#include "sim/simulationArguments.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <utility>
#include <vector>

namespace zint {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;

TEST(SimulationArgumentsTest, DescribeASimulation)
{
    SimulationOptions options = SimulationOptions::realistic();
    const std::vector<std::pair<const char*, const char*>> given{
        {"protocol", "can"},
        {"codes", "P0001,U0123"},
        {"pending", "none"},
        {"latency", "7"},
        {"line-speed", "9600"},
        {"reset-time", "0"},
        {"pieces", "3"},
        {"piece-gap", "2"},
        {"after-prompt", R"(\r\n)"},
        {"rubbish", R"(\0\xfCa\\)"},
        {"error", "2:NO DATA"},
        {"error", "5:<DATA ERROR"},
        {"silent-after", "0"},
        {"disconnect-after", "9"},
        {"no-trailing-blank", ""},
        {"no-announcement", ""},
    };
    for (const auto& [name, value] : given)
        applySimulationArgument(options, name, value);

    EXPECT_EQ(options.vehicle.protocol, VehicleProtocol::can);
    EXPECT_EQ(options.vehicle.storedCodes, (std::vector{"P0001"s, "U0123"s}));
    EXPECT_TRUE(options.vehicle.pendingCodes.empty());
    EXPECT_EQ(options.adapter.latency, 7ms);
    EXPECT_EQ(options.adapter.bitsPerSecond, 9600);
    EXPECT_EQ(options.adapter.resetDuration, 0ms);
    EXPECT_EQ(options.adapter.pieceLength, 3U);
    EXPECT_EQ(options.adapter.pieceGap, 2ms);
    EXPECT_EQ(options.adapter.afterPrompt, "\r\n");
    EXPECT_EQ(options.adapter.rubbish, "\0\xFC"s + "a\\");
    EXPECT_EQ(options.adapter.errors, (std::map<int, std::string>{{2, "NO DATA"}, {5, "<DATA ERROR"}}));
    EXPECT_EQ(options.adapter.promptsUntilSilence, 0);
    EXPECT_EQ(options.adapter.repliesUntilDisconnect, 9);
    EXPECT_FALSE(options.adapter.trailingBlank);
    EXPECT_FALSE(options.adapter.announcesConnection);
}

TEST(SimulationArgumentsTest, RefuseWhatDoesNotFit)
{
    const std::vector<std::pair<const char*, const char*>> wrong{
        {"protocol", "kwp"},   {"codes", "P0133,"},   {"codes", ""},          {"codes", "p0133"},
        {"latency", ""},       {"latency", "-1"},     {"latency", "5ms"},     {"latency", "99999999999"},
        {"garble-every", "0"}, {"error", "NO DATA"},  {"error", "0:X"},       {"error", "1:"},
        {"rubbish", R"(\)"},   {"rubbish", R"(\x1)"}, {"rubbish", R"(\xG0)"}, {"no-such-option", ""},
    };
    for (const auto& [name, value] : wrong) {
        SimulationOptions options;
        EXPECT_THROW(applySimulationArgument(options, name, value), ArgumentError) << name << ' ' << value;
    }
}

} // namespace
} // namespace zint
