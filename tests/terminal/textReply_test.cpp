#include "terminal/textReply.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

TEST(TextReplyTest, ShowsNumbersInTheChosenBaseAndEverythingElseAsItCame)
{
    struct Row {
        const char* line;
        const char* hexadecimal;
        const char* decimal;
        const char* octal;
        bool overflows = false;
    };
    for (const Row& row : {
             // leading zeros go; the blank behind a number joins the received one
             Row{"41 0B 1A F8 \r", "41  B  1A  F8  ", "65  11  26  248  ", "101  13  32  370  "},
             {"00 FF\r", "0  FF ", "0  255 ", "0  377 "},
             {"\n>0A\n0B>\r", "A B ", "10 11 ", "12 13 "}, // marks end a number and are not shown
             {"41 0C\r42\r>", "41  C ", "65  12 ", "101  14 "},
             {"\r\r>", "", "", ""},
             {"?\r\r>", "?", "?", "?"},
             {"0: 49 02\r", "0 : 49  2 ", "0 : 73  2 ", "0 : 111  2 "},
             {"10Z10 Z10\r", "10 Z10  Z10", "16 Z16  Z10", "20 Z20  Z10"}, // only a number is ended so
             {"BUS BUSY\r", "B US BUSY", "11 US BUSY", "13 US BUSY"},
             {"41 b0 41\r", "41  b0 41", "65  b0 41", "101  b0 41"}, // small letters are no digits
             {"7FFFFFFF 10\r", "7FFFFFFF  10 ", "2147483647  16 ", "17777777777  20 "},
             {"10 80000000 0B\r", "10  80000000 0B", "16  80000000 0B", "20  80000000 0B", true},
             {"0FFFFFFFFFFFFF\r", "0FFFFFFFFFFFFF", "0FFFFFFFFFFFFF", "0FFFFFFFFFFFFF", true},
         }) {
        const std::pair<NumberBase, const char*> bases[] = {{NumberBase::hexadecimal, row.hexadecimal},
                                                            {NumberBase::decimal, row.decimal},
                                                            {NumberBase::octal, row.octal}};
        for (const auto& [base, shown] : bases) {
            const TextReply reply = showTextReply(row.line, base);
            EXPECT_EQ(reply.text, shown) << row.line;
            EXPECT_EQ(reply.overflowed, row.overflows) << row.line;
        }
    }
}

} // namespace
} // namespace zint
