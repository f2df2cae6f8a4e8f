#include "runner/openingCommands.h"
#include "runner/pollReply.h"
#include "runner/replyWatch.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

using namespace std::chrono_literals;

TEST(OpeningCommandsTest, EndWithTheTimeOutThatTheAdapterDoesNotHaveByItself)
{
    Design design;
    const std::pair<SampleSpeed, const char*> rows[] = {{200ms, ""},       {std::nullopt, ""},
                                                        {52ms, "ATST 0D"}, {62ms, "ATST 010"},
                                                        {64ms, "ATST 10"}, {1020ms, "ATST FF"}};
    for (const auto& [speed, commands] : rows) {
        design.sampleSpeed = speed;
        EXPECT_EQ(openingCommands(design), commands);
    }
    design.extraCommands = "ATH1";
    EXPECT_EQ(openingCommands(design), "ATH1;ATST FF");
}

TEST(PollReplyTest, ReadsTheBytesBehindTheEcho)
{
    const std::pair<const char*, std::int32_t> values[] = {{"41 0C 1A F8 \r\r>", 0x1AF8},
                                                           {"41 0C 1AF8\r>", 0x1AF8},
                                                           {"41 0C 1A F8\r41 0C FF FF \r>", 0x1AF8},
                                                           {"410C1AF8410C1AF8410C1AF8\r>", 0},
                                                           {"41 0C \r\r>", 0},
                                                           {"41 0C 1A F8", 0x1A}, // its last byte has no end
                                                           {"41 01 7F FF FF FF \r>", 0x7FFFFFFF}};
    for (const auto& [reply, value] : values)
        EXPECT_EQ(pollValue(reply), value) << reply;
    for (const char* const bad :
         {"41 01 80 00 00 00 \r>", "41 01 FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF \r>",
          "41 0c 1a f8\r>", "NO DATA\r\r>", "41 0C 1A F8 <DATA ERROR\r>", "\r>", "\x80\xFF\x01\r>"})
        EXPECT_FALSE(pollValue(bad)) << bad;
    EXPECT_EQ(rawValueOf(Bytes{0x7F, 0xFF, 0xFF, 0xFF}), 0x7FFFFFFF);
    EXPECT_EQ(rawValueOf(Bytes{0x80, 0, 0, 0}), std::nullopt);
}

TEST(ReplyWatchTest, KnowsWhatAReplyBeginsWith)
{
    for (const auto& [request, echo] :
         {std::pair{"010C", "41 0C"}, {"01 0c1", "41 0C"}, {"03", "43"}, {"22F190", "62 F1"}})
        EXPECT_EQ(echoOf(request), echo) << request;
    for (const char* const request : {"ATRV", "", "0", "01X0"})
        EXPECT_FALSE(echoOf(request)) << request;
}

TEST(ReplyWatchTest, TellsOfThreeRepliesThatDoNotMatch)
{
    constexpr const char* good = "41 0C 00 04 \r\r>";
    ReplyWatch watch;
    for (const char* const reply :
         {"7F 01 12 \r\r>", good, "7F 01 12 \r\r>", "48 6B 10 41 0C 00 04 \r\r>", "CAN ERROR\r\r>"}) {
        watch.take(fitOf("010C", reply, pollValue(reply).has_value()), reply, pollValue(reply).has_value(),
                   5s); // words contradict nothing
        EXPECT_EQ(watch.text(5s), "") << reply;
    }
    watch.take(fitOf("010C", "410C0004\r\r>", true), "410C0004\r\r>", true, 5s);
    EXPECT_EQ(watch.text(15s), ReplyWatch::mismatchText) << "which silence does not mend";
    watch.take(ReplyFit::match, good, true, 5s);
    EXPECT_EQ(watch.text(5s), "");
    EXPECT_TRUE(watch.sawMismatch());
}

} // namespace
} // namespace zint
