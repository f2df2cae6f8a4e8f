#include "sim/vehicle.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace zint {
namespace {

using namespace std::chrono_literals;

constexpr auto iso = VehicleProtocol::iso9141;
constexpr auto can = VehicleProtocol::can;

Messages ask(Vehicle& vehicle, const Message& request, std::chrono::microseconds now = 0s)
{
    return vehicle.answer(request, now);
}

class VehicleOfEitherProtocol : public testing::TestWithParam<VehicleProtocol> {
protected:
    Vehicle vehicle{{.protocol = GetParam()}};

    bool answers(const Message& request) { return !ask(vehicle, request).empty(); }

    /// The four bytes at the end of the answer to a request for supported items.
    std::uint32_t mask(const Message& request)
    {
        const Messages answer = ask(vehicle, request);
        EXPECT_EQ(answer.size(), 1U);
        std::uint32_t bits = 0;
        for (std::size_t i = answer.at(0).size() - 4; i < answer.at(0).size(); ++i)
            bits = bits << 8 | answer[0][i];
        return bits;
    }
};

INSTANTIATE_TEST_SUITE_P(Protocols, VehicleOfEitherProtocol, testing::Values(iso, can));

bool isSet(std::uint32_t mask, int place)
{
    return (mask >> (32 - place) & 1U) != 0;
}

TEST_P(VehicleOfEitherProtocol, SupportsExactlyWhatItSaysInModeOne)
{
    std::optional<std::uint32_t> bits = mask({0x01, 0x00});
    for (int pid = 1; pid <= 0xFF; ++pid) {
        const int place = (pid - 1) % 32 + 1;
        const bool promised = bits && isSet(*bits, place);
        EXPECT_EQ(answers({0x01, static_cast<std::uint8_t>(pid)}), promised) << "PID " << pid;
        if (isSupportPid(static_cast<std::uint8_t>(pid)))
            bits = promised ? std::optional(mask({0x01, static_cast<std::uint8_t>(pid)})) : std::nullopt;
    }
}

TEST_P(VehicleOfEitherProtocol, SupportsExactlyWhatItSaysInFreezeFrameAndInformation)
{
    for (const bool cleared : {false, true}) {
        if (cleared)
            ask(vehicle, {0x04});
        const std::uint32_t frame = mask({0x02, 0x00, 0x00});
        const std::uint32_t information = mask({0x09, 0x00});
        for (int item = 1; item <= 32; ++item) {
            const auto number = static_cast<std::uint8_t>(item);
            EXPECT_EQ(answers({0x02, number, 0x00}), isSet(frame, item)) << item << cleared;
            EXPECT_EQ(answers({0x09, number}), isSet(information, item)) << item << cleared;
        }
    }
}

TEST_P(VehicleOfEitherProtocol, ClearingPutsTheLampOutAndStartsAllTestsAnew)
{
    EXPECT_EQ(ask(vehicle, {0x01, 0x01}), (Messages{{0x41, 0x01, 0x83, 0x07, 0x65, 0x04}}));
    EXPECT_EQ(ask(vehicle, {0x02, 0x02, 0x00}), (Messages{{0x42, 0x02, 0x00, 0x01, 0x33}}));
    EXPECT_EQ(ask(vehicle, {0x04}), (Messages{{0x44}}));

    const bool isCan = GetParam() == can;
    EXPECT_EQ(ask(vehicle, {0x01, 0x01}), (Messages{{0x41, 0x01, 0x00, 0x77, 0x65, 0x65}}));
    EXPECT_EQ(ask(vehicle, {0x03}), (isCan ? Messages{{0x43, 0}} : Messages{{0x43, 0, 0, 0, 0, 0, 0}}));
    EXPECT_EQ(ask(vehicle, {0x07}), (isCan ? Messages{{0x47, 0}} : Messages{{0x47, 0, 0, 0, 0, 0, 0}}));
    EXPECT_EQ(ask(vehicle, {0x02, 0x02, 0x00}), (Messages{{0x42, 0x02, 0x00, 0x00, 0x00}}));
}

TEST_P(VehicleOfEitherProtocol, PassesOverWhatItDoesNotKnow)
{
    for (const Message& request : std::vector<Message>{{},
                                                       {0x00},
                                                       {0x01},
                                                       {0x01, 0x02},
                                                       {0x02, 0x0C},
                                                       {0x03, 0x00},
                                                       {0x04, 0x00},
                                                       {0x05},
                                                       {0x09},
                                                       {0x0A},
                                                       {0xFF}})
        EXPECT_FALSE(answers(request));
    EXPECT_EQ(ask(vehicle, {0x01, 0x01}).at(0).at(2), 0x83) << "a malformed clear has cleared the codes";
}

TEST_P(VehicleOfEitherProtocol, DrivesFromTheFirstRequestOn)
{
    EXPECT_EQ(ask(vehicle, {0x01, 0x0D}, 500s), (Messages{{0x41, 0x0D, 0}}));
    EXPECT_EQ(ask(vehicle, {0x01, 0x0D}, 600s - 16s), (Messages{{0x41, 0x0D, 100}}));
    EXPECT_EQ(ask(vehicle, {0x01, 0x1F}, 800s), (Messages{{0x41, 0x1F, 0x01, 0x2C}}))
        << "300 seconds of running";
}

TEST(VehicleTest, OlderProtocolsListThreeCodesAMessage)
{
    Vehicle vehicle({.storedCodes = {"P0133", "P0301", "U0123", "B2ABC"}});
    EXPECT_EQ(ask(vehicle, {0x03}),
              (Messages{{0x43, 0x01, 0x33, 0x03, 0x01, 0xC1, 0x23}, {0x43, 0xAA, 0xBC, 0, 0, 0, 0}}));
    EXPECT_EQ(ask(vehicle, {0x01, 0x01}).at(0).at(2), 0x84);
}

TEST(VehicleTest, CanTellsTheNumberOfCodes)
{
    Vehicle vehicle({.protocol = can, .storedCodes = {"P0133", "C1234"}});
    EXPECT_EQ(ask(vehicle, {0x03}), (Messages{{0x43, 2, 0x01, 0x33, 0x52, 0x34}}));
}

TEST(VehicleTest, TheIdentificationNumberTakesFiveMessagesOrOne)
{
    Vehicle older({.protocol = iso});
    Vehicle newer({.protocol = can});
    const Messages five = ask(older, {0x09, 0x02});
    const Messages one = ask(newer, {0x09, 0x02});

    ASSERT_EQ(five.size(), 5U);
    EXPECT_EQ(five[0], (Message{0x49, 0x02, 1, 0, 0, 0, 'U'}));
    std::string text;
    for (const Message& message : five)
        text.append(message.begin() + 3, message.end());
    ASSERT_EQ(one.size(), 1U);
    EXPECT_EQ(text.substr(3), std::string(one[0].begin() + 3, one[0].end()));
    EXPECT_EQ(one[0].size(), 20U);
    EXPECT_EQ(ask(older, {0x09, 0x01}), (Messages{{0x49, 0x01, 5}}));
}

TEST(VehicleTest, OnlyCanTakesSeveralParametersAtOnce)
{
    Vehicle older({.protocol = iso});
    Vehicle newer({.protocol = can});
    EXPECT_TRUE(ask(older, {0x01, 0x0D, 0x1C}).empty());
    EXPECT_EQ(ask(newer, {0x01, 0x0D, 0x02, 0x1C}), (Messages{{0x41, 0x0D, 0, 0x1C, 0x01}}));
}

TEST(VehicleTest, HearsItsOwnAddressAndTheOneOfAll)
{
    const Vehicle older({.protocol = iso});
    const Vehicle newer({.protocol = can});
    EXPECT_TRUE(older.hears(0x686AF1));
    EXPECT_TRUE(older.hears(0x6C10F1));
    EXPECT_FALSE(older.hears(0x6C28F1));
    EXPECT_TRUE(newer.hears(0x7DF));
    EXPECT_TRUE(newer.hears(0x0007E0));
    EXPECT_FALSE(newer.hears(0x7E1));
}

TEST(VehicleTest, RefusesTextsThatAreNoTroubleCode)
{
    EXPECT_EQ(troubleCodeBytes("P0000"), 0x0000);
    EXPECT_EQ(troubleCodeBytes("U3FFF"), 0xFFFF);
    for (const char* text : {"", "P013", "P01333", "X0133", "P4000", "P01G3", "p0133", "P-133"})
        EXPECT_FALSE(troubleCodeBytes(text)) << text;
    EXPECT_THROW(Vehicle({.storedCodes = {"P0133", "bad"}}), std::invalid_argument);
}

} // namespace
} // namespace zint
