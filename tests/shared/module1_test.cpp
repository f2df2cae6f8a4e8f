#include "shared/module1.h"
#include "shared/programInfo.h"
#include "shared/runTimeError.h"
#include "support/failure.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

TEST(Module1Test, ReadsHexadecimalNumbers)
{
    const std::pair<const char*, std::int32_t> rows[] = {
        {"  ", 0},    {"ff", 255}, {" 6 504", 0x6504}, {"007FFFFFFF", 0x7FFFFFFF},
        {"", -1},     {"4G", -1},  {"-1", -1},         {"1\r", -1},
        {"0x1F", -1}, {"\xC4", -1}};
    for (const auto& [text, number] : rows) {
        EXPECT_EQ(hexToNumber(text), number) << text;
        EXPECT_EQ(hexIn(text).value_or(-1), number) << text;
    }
    for (const char* const text : {"80000000", "FFFF FFFF FFFF FFFF FFFF"}) {
        EXPECT_EQ(failureOf<RunTimeError>([&] { hexToNumber(text); }), "Overflow");
        EXPECT_EQ(hexIn(text), std::nullopt);
    }
}

TEST(Module1Test, ReadsDecimalIntegers)
{
    EXPECT_EQ(toInteger("  -12 "), -12);
    EXPECT_EQ(integerIn("2147483647"), 2147483647);
    EXPECT_EQ(integerIn("2147483648"), std::nullopt);
    EXPECT_EQ(failureOf<RunTimeError>([] { toInteger("2147483648"); }), "Overflow");
    for (const char* const text : {"", " ", "1x", "1 2", "1.5"})
        EXPECT_EQ(failureOf<RunTimeError>([&] { toInteger(text); }), "Type mismatch") << text;
}

TEST(Module1Test, TakesTextsApart)
{
    for (const auto& [position, piece] : {std::pair{1, "41"}, {5, "1"}, {600, ""}})
        EXPECT_EQ(textAt("41 01", static_cast<std::size_t>(position), 2), piece);
    EXPECT_EQ(lastBackslash("C:\\a\\b.log"), 5);
    EXPECT_EQ(lastBackslash("/a/b"), 0);
    EXPECT_EQ(fileNamePart("C:\\logs\\"), "");
    for (const char* const path : {"C:\\logs\\run1.log", "/home/a\\b/run1.log", "/home/a/C:\\run1.log"})
        EXPECT_EQ(fileNamePart(path), "run1.log") << path;
}

TEST(ProgramInfoTest, TellsNameVersionLicenceAndHelpAddress)
{
    const ProgramInfo example{.productName = "Zint", .legalNotice = "Some rights.", .major = 1, .minor = 5};
    EXPECT_EQ(example.aboutText(), "Zint Version 1.5.0\r\nSome rights.\r\n");
    EXPECT_EQ(example.helpAddress("https://help.invalid", "docchken2"),
              "https://help.invalid/Zintv150/docchken2.html");
    EXPECT_EQ(example.helpAddress("file:///share/help", ""), "file:///share/help/Zintv150/doctop.html");
    EXPECT_EQ(programInfo().productName, "Zint");
    EXPECT_EQ(programInfo().version(), ZINT_TEST_VERSION) << "the version is set in one place";
}

} // namespace
} // namespace zint
