#include "parameters/ownReply.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

TEST(OwnReplyTest, TriesRepliesInTheFormsInWhichUsersHaveThem)
{
    const OwnParameter oil{.request = "221940", .filter = "7E9", .formula = "(A*256+B)/4-40", .unit = "°C"};
    const OwnParameter last{.request = "221950", .formula = "J"};
    const OwnParameter older{.request = "2101", .formula = "B"};
    const OwnParameter session{.request = "1902", .formula = "A"};
    const OwnParameter coolant{.request = "0105", .formula = "A-40", .unit = "C", .minimum = 0, .maximum = 9};
    struct Typed {
        const OwnParameter& parameter;
        const char* reply;
        const char* text;
    };
    const Typed rows[] = {
        {oil, "62 19 40 01 EA", "82.5 °C"},
        {oil, "6219400 1EA\r\n>", "82.5 °C"},
        {oil, "221940\r\n62 19 40 01 ea \r\n\r\n>", "82.5 °C"},
        {oil, "7E8 05 62 19 40 FF FF\n7E9 05 62 19 40 01 EA", "82.5 °C"},
        {oil, "18 DA F1 10 05 62 19 40 01 EA 00 00", "82.5 °C"},
        {oil, "01EA", "82.5 °C"},
        {oil, "01", "the reply has no byte B"},
        {oil, "62 19 40", "the reply has no byte A"},
        {oil, "62 19 41 01 EA", "the reply is no answer to this request"},
        {oil, "7F 22 31", "not supported: value out of range (31)"},
        {oil, "NO DATA", "the vehicle has not answered (NO DATA)"},
        {oil, "", "the reply is empty"},
        {last, "00D\n0: 62 19 50 01 02 03\n1: 04 05 06 07 08 09 0A", "10"},
        {last, "62 19 50 01 02 03 04 05 06 07 08 09 0A", "10"},
        {last, "00D\n0: 62 19 50 01 02 03", "the reply is not whole"},
        {OwnParameter{.request = "221950", .formula = "E"}, "62 19 50 01 02 03 04 05", "5"},
        {older, "84 F1 10 61 01 05 07 F3", "7"},
        {session, "59 02 FF", "255"},
        {coolant, "48 6B 10 41 05 30 39", "8 C"},
        {coolant, "48 6B 10 41 05 30 38", "the reply is not whole"},
        {OwnParameter{.request = "0105", .formula = "100/A"}, "41 05 00", "division by zero"},
        {OwnParameter{.request = "0105", .formula = "A+"}, "41 05 00", "a value is missing at the end"},
        {OwnParameter{.request = "ATRV", .formula = "A"}, "12.5V",
         "the request must be hexadecimal, such as 221940"},
    };
    for (const Typed& row : rows)
        EXPECT_EQ(tryOut(row.parameter, row.reply).text, row.text) << row.reply;
    EXPECT_FALSE(tryOut(coolant, "41 05 30").isOutside);
    EXPECT_TRUE(tryOut(coolant, "41 05 32").isOutside);
}

} // namespace
} // namespace zint
