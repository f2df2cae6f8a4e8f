#include "terminal/textReply.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

TEST(TextReplyTest, ShowsNumbersInTheChosenBaseAndEverythingElseAsItCame)
{
    const std::pair<const char*, const char*> rows[] = {
        // leading zeros go; the blank behind a number joins the received one
        {"41 0B 1A F8 \r", "41  B  1A  F8  |65  11  26  248  |101  13  32  370  |"},
        {"00 FF\r", "0  FF |0  255 |0  377 |"},
        {"0000000012\r", "12 |18 |22 |"},
        {"\n>0A\n0B>\r", "A B |10 11 |12 13 |"}, // marks end a number and are not shown
        {"41 0C\r42\r>", "41  C |65  12 |101  14 |"},
        {"\r\r>", "|||"},
        {"0: 49 02\r", "0 : 49  2 |0 : 73  2 |0 : 111  2 |"},
        {"10Z10 Z10\r", "10 Z10  Z10|16 Z16  Z10|20 Z20  Z10|"}, // only a number is ended so
        {"41 b0 41\r", "41  b0 41|65  b0 41|101  b0 41|"},       // small letters are no digits
        {"7FFFFFFF 10\r", "7FFFFFFF  10 |2147483647  16 |17777777777  20 |"},
        {"10 80000000 0B\r", "10  80000000 0B!|16  80000000 0B!|20  80000000 0B!|"}, // too large
        {"0FFFFFFFFFFFFF\r", "0FFFFFFFFFFFFF!|0FFFFFFFFFFFFF!|0FFFFFFFFFFFFF!|"},
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
