#include "terminal/binaryReply.h"
#include "terminal/textReply.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

/// What becomes of bytes that come one by one: what is shown, a bar, what is stored, and a bar for each
/// prompt.
struct BinaryReplyTest : testing::Test {
    std::string shown, stored;
    BinaryReply reply{{.show = [this](const std::string& text) { shown += text; },
                       .store = [this](const std::string& text) { stored += text; },
                       .prompted = [this] { stored += "|"; }}};
    TerminalCounters counters;

    std::string take(std::string_view bytes, const TerminalOptions& options = {},
                     std::string_view command = "0101")
    {
        if (command.starts_with('A'))
            reply.expectLiteral();
        for (const char byte : bytes)
            reply.take({&byte, 1}, ">" + std::string(command) + "  ", options, counters);
        return std::exchange(shown, {}) + "|" + std::exchange(stored, {});
    }
};

TEST_F(BinaryReplyTest, ShowsBytesByTheOptions)
{
    using namespace std::string_view_literals;
    const TerminalOptions length{.base = NumberBase::octal, .displayResponseLen = true};
    EXPECT_EQ(take("\x06\x41\x01\x82\x07\x65\0>"sv), "82 7 65 0 \r\n|82 7 65 0 \r\n|");
    EXPECT_EQ(take("\x03\x41\x01\x82>", {.displayAckHdr = true}), "41 1 82 \r\n|41 1 82 \r\n|");
    EXPECT_EQ(take("\x03\x43\x01\x33>", {}, "03"), "1 33 \r\n|1 33 \r\n|") << "a short command";
    EXPECT_EQ(take("\x06\x41\x01\xFF\x3F\x3E\x0D>", length), "(6)377 77 76 15 \r\n|(6)377 77 76 15 \r\n|");
    EXPECT_EQ(take("\0>"sv, length), "(0)<NULL>\r\n|(0)<NULL>\r\n|");
    EXPECT_EQ(take("\x03\x41\x01\xFF\x03\x41\x02\x0A>"), "FF \r\nA \r\n|FF \r\nA \r\n|") << "two at once";
    EXPECT_EQ(take("ELM\r\n>", {}, "ABC"), "ELM\r\n|ELM\r\n|") << "to a command of the adapter's own";
    EXPECT_EQ(take("\x03\x41\x01\x82>", {}, "ati"), "82 \r\n|82 \r\n|");
    EXPECT_EQ(counters.totalErrors, 0);
    EXPECT_EQ(take("\x83\x7F\x01\x12>"), "(ERROR - Cmd FAIL)12 \r\n|(ERROR - Cmd FAIL)12 \r\n|");
    EXPECT_TRUE(counters.totalErrors == 1 && counters.commandFailed == 1);
    const std::string refused = "(ERROR - Misformatted command)";
    EXPECT_EQ(take("?\r\n no!\x7F>"), refused + "\r\n no!\r\n|" + refused + " no!\r\n|");
    EXPECT_EQ(take("? ?>"), refused + "\r\n" + refused + "\r\n \r\n|" + refused + refused + " \r\n|");
    EXPECT_TRUE(counters.totalErrors == 4 && counters.commandSyntaxErrors == 3);
    EXPECT_EQ(counters.messagesReceived, 11) << "one for each prompt";
}

TEST(TextReplyTest, ShowsNumbersInTheChosenBaseAndEverythingElseAsItCame)
{
    const std::pair<const char*, const char*> rows[] = {
        // leading zeros go; the blank behind a number joins the received one
        {"41 0B 1A F8 \r", "41  B  1A  F8  |65  11  26  248  |101  13  32  370  |"},
        {"0000000012\r", "12 |18 |22 |"},
        {"\n>0A\n0B>\r", "A B |10 11 |12 13 |"}, // marks end a number and are not shown
        {"\r\r>", "|||"},
        {"0: 49 02\r", "0 : 49  2 |0 : 73  2 |0 : 111  2 |"},
        {"10Z10 Z10\r", "10 Z10  Z10|16 Z16  Z10|20 Z20  Z10|"}, // only a number is ended so
        {"41 b0 41\r", "41  b0 41|65  b0 41|101  b0 41|"},       // small letters are no digits
        {"7FFFFFFF 10\r", "7FFFFFFF  10 |2147483647  16 |17777777777  20 |"},
        {"10 80000000 0B\r", "10  80000000 0B!|16  80000000 0B!|20  80000000 0B!|"}, // too large
    };
    for (const auto& [line, expected] : rows) {
        std::string shown;
        for (const NumberBase base : {NumberBase::hexadecimal, NumberBase::decimal, NumberBase::octal}) {
            const TextReply reply = showTextReply(line, base);
            shown += reply.text + (reply.overflowed ? "!|" : "|");
        }
        EXPECT_EQ(shown, expected) << line;
    }
}

} // namespace
} // namespace zint
