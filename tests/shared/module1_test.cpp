#include "shared/module1.h"
#include "shared/programInfo.h"
#include "shared/runTimeError.h"
#include "support/failure.h"
#include "support/temporaryFolder.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

TEST(Module1Test, ReadsHexadecimalNumbers)
{
    const std::pair<std::string_view, std::int32_t> rows[] = {
        {"  ", 0}, {"ff", 255}, {" 6 504", 0x6504}, {"007FFFFFFF", 0x7FFFFFFF}};
    for (const auto& [text, number] : rows) {
        EXPECT_EQ(hexToNumber(text), number) << text;
        EXPECT_EQ(hexIn(text), number) << text;
    }
    for (const std::string_view text : {"", "4G", "-1", "1\r", "0x1F", "\xC4"}) {
        EXPECT_EQ(hexToNumber(text), -1) << text;
        EXPECT_EQ(hexIn(text), std::nullopt) << text;
    }
    for (const std::string_view text : {"80000000", "FFFF FFFF FFFF FFFF FFFF"}) {
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
    for (const std::string_view text : {"", " ", "1x", "1 2", "1.5"}) {
        EXPECT_EQ(failureOf<RunTimeError>([&] { toInteger(text); }), "Type mismatch") << text;
        EXPECT_EQ(integerIn(text), std::nullopt) << text;
    }
}

TEST(Module1Test, WritesBitsOfEachDigitFromTheLeastSignificant)
{
    EXPECT_EQ(hexToBits("0123456789ABCDEF"),
              "0000100001001100001010100110111000011001010111010011101101111111");
    EXPECT_EQ(hexToBits("0 1"), "00001000");
    for (const std::string_view text : {"", "f", "12G4"})
        EXPECT_EQ(hexToBits(text), "") << text;
}

TEST(Module1Test, TakesTextsApart)
{
    EXPECT_EQ(textAt("41 01", 1, 2), "41");
    EXPECT_EQ(textAt("41 01", 5, 2), "1");
    EXPECT_EQ(textAt("41 01", 600, 2), "");
    EXPECT_EQ(lastBackslash(""), 0);
    EXPECT_EQ(lastBackslash("C:\\a\\b.log"), 5);
    EXPECT_EQ(lastBackslash("/a/b"), 0);
    EXPECT_EQ(fileNamePart("C:\\logs\\run1.log"), "run1.log");
    EXPECT_EQ(fileNamePart("C:\\logs\\"), "");
    if (std::filesystem::path::preferred_separator == '/') {
        EXPECT_EQ(fileNamePart("/home/a\\b/run1.log"), "run1.log");
        EXPECT_EQ(fileNamePart("/home/a/C:\\run1.log"), "run1.log");
    }
}

TEST(Module1Test, TellsWhetherAFileExists)
{
    const TemporaryFolder folder;
    TemporaryFolder::write(folder.path("Prüfung ☂.mdb"), "x");
    EXPECT_TRUE(fileExists(folder.path("Prüfung ☂.mdb")));
    for (const std::string& path : {folder.path("other.mdb"), folder.path(), std::string(),
                                    std::string("\xFF\xFE"), std::string(100000, 'x')})
        EXPECT_FALSE(fileExists(path));
}

TEST(ProgramInfoTest, TellsNameVersionLicenceAndHelpAddress)
{
    const ProgramInfo example{
        .productName = "Zint", .legalNotice = "Some rights.", .major = 1, .minor = 5, .revision = 0};
    EXPECT_EQ(example.aboutText(), "Zint Version 1.5.0\r\nSome rights.\r\n");
    EXPECT_EQ(example.helpAddress("https://help.invalid", "docchken2"),
              "https://help.invalid/Zintv150/docchken2.html");
    EXPECT_EQ(example.helpAddress("file:///share/help", ""), "file:///share/help/Zintv150/doctop.html");

    const ProgramInfo& own = programInfo();
    EXPECT_EQ(own.productName, "Zint");
    EXPECT_EQ(own.version(), ZINT_TEST_VERSION) << "the version is set in one place";
}

} // namespace
} // namespace zint
