#include "terminal/textReply.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

TEST(TextReplyTest, ShowsNumbersInTheChosenBaseAndEverythingElseAsItCame)
{
    struct Row {
        std::string_view line;
        std::string_view hexadecimal;
        std::string_view decimal;
        std::string_view octal;
    };
    using namespace std::string_view_literals;
    for (const Row& row : {
             // leading zeros go; the blank behind a number joins the received one
             Row{"41 0B 1A F8 \r", "41  B  1A  F8  ", "65  11  26  248  ", "101  13  32  370  "},
             Row{"00 FF\r", "0  FF ", "0  255 ", "0  377 "},
             Row{"410C1AF8\r", "410C1AF8 ", "1091312376 ", "10103015370 "},
             Row{"\n>0A\n0B>\r", "A B ", "10 11 ", "12 13 "}, // marks end a number and are not shown
             Row{"41 0C\r42\r>", "41  C ", "65  12 ", "101  14 "},
             Row{"  \r", "  ", "  ", "  "},
             Row{"\r\r>", "", "", ""},
             Row{"NO DATA\r", "NO DATA", "NO DATA", "NO DATA"},
             Row{"?\r\r>", "?", "?", "?"},
             Row{"014\r", "14 ", "20 ", "24 "},
             Row{"0: 49 02\r", "0 : 49  2 ", "0 : 73  2 ", "0 : 111  2 "},
             Row{"10Z10 Z10\r", "10 Z10  Z10", "16 Z16  Z10", "20 Z20  Z10"}, // only a number is ended so
             Row{"BUS BUSY\r", "B US BUSY", "11 US BUSY", "13 US BUSY"},
             Row{"41 b0 41\r", "41  b0 41", "65  b0 41", "101  b0 41"}, // small letters are no digits
             Row{"41 \0 41\r"sv, "41  \0 41"sv, "65  \0 41"sv, "101  \0 41"sv},
         }) {
        const auto shown = [&row](NumberBase base) {
            const TextReply reply = showTextReply(row.line, base);
            EXPECT_FALSE(reply.overflowed) << row.line;
            return reply.text;
        };
        EXPECT_EQ(shown(NumberBase::hexadecimal), row.hexadecimal);
        EXPECT_EQ(shown(NumberBase::decimal), row.decimal);
        EXPECT_EQ(shown(NumberBase::octal), row.octal);
    }
}

TEST(TextReplyTest, FromANumberThatIsTooLargeOnTheLineIsShownAsItCame)
{
    struct Row {
        const char* line;
        const char* decimal;
        bool overflows;
    };
    for (const Row& row :
         {Row{"7FFFFFFF 10\r", "2147483647  16 ", false}, Row{"000000000041 10\r", "65  16 ", false},
          Row{"10 80000000 0B\r", "16  80000000 0B", true},
          Row{"0FFFFFFFFFFFFFFFFFFFFFF\r", "0FFFFFFFFFFFFFFFFFFFFFF", true}}) {
        const TextReply reply = showTextReply(row.line, NumberBase::decimal);
        EXPECT_EQ(reply.text, row.decimal);
        EXPECT_EQ(reply.overflowed, row.overflows) << row.line;
    }
}

} // namespace
} // namespace zint
