#include "codes/troubleCodes.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

using Codes = std::vector<std::string>;

TEST(TroubleCodesTest, ReadsTheFirstLineOfTheReply)
{
    const struct {
        const char* name;
        std::string_view reply;
        Codes codes;
    } rows[] = {
        {"one code", "43 01 33 00 00 00 00 \r\r>", {"P0133"}},
        {"three codes", "43 01 33 03 01 C1 23 \r\r>", {"P0133", "P0301", "U0123"}},
        {"no codes", "43 00 00 00 00 00 00 \r\r>", {}},
        {"a gap", "43 00 00 01 33 00 00 \r\r>", {"P0133"}},
        {"only the first digit is 0", "43 00 01 00 10 01 00 \r\r>", {"P0001", "P0010", "P0100"}},
        {"lines without a blank at the end", "43 01 33 00 00 00 00\r\r>", {"P0133"}},
        {"a second line falls between the steps",
         "43 01 33 03 01 C1 23 \r43 04 20 00 00 00 00 \r\r>",
         {"P0133", "P0301", "U0123"}},
        {"lower case is no digit", "43 c1 23 01 33 00 00 \r\r>", {"P0133"}},
        {"garbage at a code's beginning", "43 ?1 33 03 01 00 00 \r\r>", {"P0301"}},
        {"garbage inside a code is copied", "43 0? 3< 00 00 00 00 \r\r>", {"P0?3<"}},
        {"CAN, the number of codes first", "43 02 01 33 03 01 \r\r>", {"P0201", "P3303", "P01\r\r"}},
        {"CAN, no codes", "43 00 \r\r>", {"P00\r\r"}},
        {"nothing answered", "NO DATA\r\r>", {"U1AA\r"}},
        {"prompt alone", ">", {}},
        {"empty", "", {}},
        {"ends with the first digit", "43 0", {"P0"}},
        {"ends with the second digit", "43 01", {"P01"}},
        {"ends inside the second byte", "43 01 3", {"P013"}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(storedCodes(row.reply), row.codes) << row.name;
}

TEST(TroubleCodesTest, TakesTheLetterFromTheFirstDigit)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string letters;
    for (const char digit : digits) {
        const Codes codes = storedCodes(std::string("43 ") + digit + "1 23 \r\r>");
        ASSERT_FALSE(codes.empty());
        letters += codes[0].substr(0, 2);
        EXPECT_EQ(codes[0].substr(2), "123");
    }
    EXPECT_EQ(letters, "P0P1P2P3C0C1C2C3B0B1B2B3U0U1U2U3");
}

} // namespace
} // namespace zint
