#include "shared/module1.h"
#include "shared/runTimeError.h"
#include "support/temporaryFolder.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

namespace zint {
namespace {

int errorNumberOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const RunTimeError& error) {
        return error.number();
    }
    return 0;
}

TEST(Module1Test, ReadsHexadecimalNumbers)
{
    const struct {
        std::string_view text;
        std::int32_t number;
    } rows[] = {
        {"", -1},          {"  ", 0},
        {"0", 0},          {"ff", 255},
        {"FF", 255},       {"65 04", 0x6504},
        {" 1 A ", 0x1A},   {"4G", -1},
        {"-1", -1},        {"1\r", -1},
        {"0x1F", -1},      {"\xC4", -1},
        {"41>", -1},       {"7FFFFFFF", std::numeric_limits<int>::max()},
        {"0000000001", 1},
    };
    for (const auto& row : rows)
        EXPECT_EQ(hexToNumber(row.text), row.number) << '"' << row.text << '"';
}

TEST(Module1Test, RefusesHexadecimalNumbersBeyond32Bits)
{
    EXPECT_EQ(errorNumberOf([] { hexToNumber("80000000"); }), 6);
    EXPECT_EQ(errorNumberOf([] { hexToNumber("FFFF FFFF FFFF FFFF FFFF"); }), 6);
}

TEST(Module1Test, WritesBitsOfEachDigitFromTheLeastSignificant)
{
    EXPECT_EQ(hexToBits("0123456789ABCDEF"),
              "0000100001001100001010100110111000011001010111010011101101111111");
    EXPECT_EQ(hexToBits("1A"), "10000101");
    EXPECT_EQ(hexToBits("0 1"), "00001000");
    EXPECT_EQ(hexToBits(""), "");
    EXPECT_EQ(hexToBits("f"), "");
    EXPECT_EQ(hexToBits("12G4"), "");
}

TEST(Module1Test, FindsTheLastBackslash)
{
    EXPECT_EQ(lastBackslash(""), 0);
    EXPECT_EQ(lastBackslash("b.log"), 0);
    EXPECT_EQ(lastBackslash("C:\\a\\b.log"), 5);
    EXPECT_EQ(lastBackslash("a\\"), 2);
    EXPECT_EQ(lastBackslash("/a/b"), 0);
    EXPECT_EQ(lastBackslash(std::string(40000, 'x') + "\\"), 40001);
}

TEST(Module1Test, TakesTheFileNameOffAPath)
{
    EXPECT_EQ(fileNamePart("C:\\logs\\run1.log"), "run1.log");
    EXPECT_EQ(fileNamePart("run1.log"), "run1.log");
    EXPECT_EQ(fileNamePart("C:\\logs\\"), "");
    if (std::filesystem::path::preferred_separator == '/') {
        EXPECT_EQ(fileNamePart("/home/a/run1.log"), "run1.log");
        EXPECT_EQ(fileNamePart("/home/a\\b/run1.log"), "run1.log");
        EXPECT_EQ(fileNamePart("/home/a/C:\\run1.log"), "run1.log");
    }
}

TEST(Module1Test, TellsWhetherAFileExists)
{
    const TemporaryFolder folder;
    TemporaryFolder::write(folder.path("Prüfung ☂.mdb"), "x");
    EXPECT_TRUE(fileExists(folder.path("Prüfung ☂.mdb")));
    EXPECT_FALSE(fileExists(folder.path("other.mdb")));
    EXPECT_FALSE(fileExists(folder.path())) << "a folder is no file";
    EXPECT_FALSE(fileExists(""));
    EXPECT_FALSE(fileExists("\xFF\xFE\x01"));
    EXPECT_FALSE(fileExists(std::string(100000, 'x')));
}

TEST(Module1Test, TakesTextAtPositionsCountedFrom1)
{
    EXPECT_EQ(textAt("41 01", 1, 2), "41");
    EXPECT_EQ(textAt("41 01", 5, 2), "1");
    EXPECT_EQ(textAt("41 01", 6, 2), "");
    EXPECT_EQ(textAt("41 01", 600, 2), "");
}

TEST(Module1Test, ReadsDecimalIntegers)
{
    EXPECT_EQ(toInteger("0"), 0);
    EXPECT_EQ(toInteger("  -12 "), -12);
    EXPECT_EQ(toInteger("2147483647"), 2147483647);
    for (const std::string_view text : {"", " ", "x", "1x", "1 2", "0x1", "1.5"})
        EXPECT_EQ(errorNumberOf([text] { toInteger(text); }), 13) << '"' << text << '"';
    EXPECT_EQ(errorNumberOf([] { toInteger("2147483648"); }), 6);
}

} // namespace
} // namespace zint
