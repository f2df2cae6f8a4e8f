#include "runner/pollReply.h"
#include "runner/replyWatch.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

using namespace std::chrono_literals;

TEST(PollReplyTest, ReadsTheBytesBehindTheEcho)
{
    const std::pair<const char*, std::optional<std::int32_t>> rows[] = {
        {"41 0C 1A F8 \r\r>", 0x1AF8},
        {"41 0C 1AF8\r>", 0x1AF8},
        {"410C1AF8410C1AF8410C1AF8\r>", 0},
        {"41 0C \r\r>", 0},
        {"41 0C 1A F8\r41 0C FF FF \r>", 0x1AF8},
        {"41 0C 1A F8", 0x1A}, // its last byte has no end
        {"41 01 7F FF FF FF \r>", 0x7FFFFFFF},
        {"41 01 80 00 00 00 \r>", std::nullopt},
        {"41 01 FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF \r>", std::nullopt},
        {"41 0c 1a f8\r>", std::nullopt},
        {"NO DATA\r\r>", std::nullopt},
        {"41 0C 1A F8 <DATA ERROR\r>", std::nullopt},
        {"\r>", std::nullopt},
        {"\x80\xFF\x01\r>", std::nullopt},
    };
    for (const auto& [reply, value] : rows)
        EXPECT_EQ(pollValue(reply), value) << reply;
}

TEST(ReplyWatchTest, KnowsWhatAReplyBeginsWith)
{
    for (const auto& [request, echo] :
         {std::pair{"010C", "41 0C"}, {"01 0c1", "41 0C"}, {"03", "43"}, {"22F190", "62 F1"}})
        EXPECT_EQ(echoOf(request), echo) << request;
    for (const char* const request : {"ATRV", "", "0", "01X0"})
        EXPECT_FALSE(echoOf(request)) << request;
}

TEST(ReplyWatchTest, TellsOfThreeRepliesThatDoNotMatchOfTenBadOnesAndOfSilence)
{
    ReplyWatch watch;
    const auto told = [&watch](const char* reply, bool isGood) {
        watch.take("010C", reply, isGood, 5s);
        return watch.text(5s);
    };
    EXPECT_EQ(told("7F 01 12 \r\r>", true), "");
    EXPECT_EQ(told("CAN ERROR\r\r>", false), "") << "words contradict nothing";
    EXPECT_EQ(told("48 6B 10 41 0C 00 04 \r\r>", true), "");
    EXPECT_EQ(told("410C0004\r\r>", true), "Replies do not match the requests: stop and start again");
    EXPECT_EQ(told("41 0C 00 04 \r\r>", true), "");
    EXPECT_TRUE(watch.sawMismatch());
    for (int i = 0; i < 9; ++i)
        EXPECT_EQ(told("CAN ERROR\r\r>", false), "");
    EXPECT_EQ(told("UNABLE TO CONNECT\r\r>", false),
              "No data from the vehicle (UNABLE TO CONNECT): ignition on?");
    EXPECT_EQ(watch.text(15s), "no reply for 10 s");
}

} // namespace
} // namespace zint
