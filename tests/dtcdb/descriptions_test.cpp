#include "dtcdb/dtcText.h"
#include "support/temporaryFolder.h"

#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <set>
#include <sstream>

namespace zint {
namespace {

/// The descriptions that come with the program.
struct DescriptionsTest : testing::Test {
    std::vector<DtcRecord> records;
    std::map<std::string, std::string> texts; ///< by their codes

    DescriptionsTest()
    {
        std::istringstream file(contents(ZINT_DATA_FOLDER "/dtc.txt"));
        for (std::string line; std::getline(file, line);) {
            records.push_back(readDtcLine(line, {.noNotes = true}));
            texts[records.back().code] = records.back().description;
            EXPECT_EQ(dtcLine(records.back(), {.noNotes = true}), line);
        }
    }
};

TEST_F(DescriptionsTest, AreWellFormedSortedAndUnique)
{
    const std::regex sound("(?=.{10,100}$)[A-Z]( ?[!-+\\-.-~])*"); // no comma, and no blank too much
    std::string before;
    std::set<std::string> used;
    for (const auto& [code, description, notes] : records) {
        EXPECT_TRUE(codeFault(code) == 0 && !isMakersCode(code) && before < code) << code;
        EXPECT_TRUE(std::regex_match(description, sound)) << code << description;
        EXPECT_TRUE(used.insert(upperCase(description)).second) << code;
        before = code;
    }
    EXPECT_GE(records.size(), 3000U);
}

TEST_F(DescriptionsTest, SayWhatPublishedListsSay)
{
    std::istringstream entries(
        "P0014 B;P0019 (bank 2 sensor B);P0061 resistance;P0133 slow;P0147 (bank 1 sensor 3);P0151 low;"
        "P0171 lean;P2196 rich;P0262 Cylinder 1 ;P0263 Cylinder 1 contribution;P0301 Cylinder 1 misfire;"
        "P0330 (bank 2;P0430 efficiency;P0671 Cylinder 1 glow;P029B minimum;P2236 shorted;P2335 coil L;"
        "P283C fork C;P084E intermittent;B0020 Left;C0034 Right front");
    for (std::string entry; std::getline(entries, entry, ';');)
        EXPECT_NE(texts[entry.substr(0, 5)].find(entry.substr(6)), std::string::npos) << entry;
}

TEST_F(DescriptionsTest, CountOverCylinders)
{
    const std::regex cylinder("Cylinder (\\d+)( .*)");
    std::map<std::string, std::size_t> families; // their sizes by what is behind the number
    for (const auto& [code, text] : texts) {
        std::smatch found;
        const bool isOne = std::regex_match(text, found, cylinder);
        ASSERT_TRUE(!isOne || std::to_string(++families[found[2]]) == found[1]) << code << " is out of order";
    }
    for (const auto& [text, size] : families)
        EXPECT_GE(size, 8U) << text;
    EXPECT_GT(families.size(), 20U);
}

} // namespace
} // namespace zint
