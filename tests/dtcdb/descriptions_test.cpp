#include "dtcdb/dtcText.h"
#include "support/temporaryFolder.h"

#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <set>
#include <sstream>

namespace zint {
namespace {

/// What published lists say of codes; parts of descriptions, separated by "+".
constexpr const char* published = R"(
P0010 actuator A+(bank 1); P0014 B+advanced; P0019 (bank 2 sensor B); P0023 actuator B+(bank 2)
P0030 heater+(bank 1 sensor 1); P0042 heater+(bank 1 sensor 3); P0056 heater+(bank 2 sensor 2)
P0061 resistance+(bank 2 sensor 3); P0325 (bank 1; P0330 (bank 2; P0131 low voltage; P0133 slow
P0137 low+(bank 1 sensor 2); P0147 heater+(bank 1 sensor 3); P0151 low+(bank 2 sensor 1)
P0167 heater+(bank 2 sensor 3); P0171 lean+(bank 1); P0175 rich+(bank 2); P2187 lean at idle+(bank 1)
P2196 rich; P2197 lean+(bank 2 sensor 1); P2276 lean+(bank 2 sensor 3); P2236 shorted+(bank 2 sensor 3)
P0201 Cylinder 1 injector; P0261 Cylinder 1 +low; P0262 Cylinder 1 +high; P0263 Cylinder 1 contribution
P0301 Cylinder 1 misfire; P0362 coil L; P2300 coil A primary+low; P2335 coil L secondary
P0671 Cylinder 1 glow; P029A Cylinder 1 +maximum; P029B Cylinder 1 +minimum; P02EE Cylinder 1 +range
P06B9 Cylinder 1 glow; P219C Cylinder 1 air; P0430 efficiency+(bank 2); P0492 (bank 2); P0840 switch A
P0849 switch B+intermittent; P0870 switch C; P083A switch G; P084E switch H+intermittent; P2831 fork A
P2836 fork B; P283C fork C+range; P2844 fork D+intermittent; B0020 Left; B0028 Right; C0034 Right front
)";

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
    std::istringstream lines(published);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream entries(line);
        for (std::string entry; std::getline(entries >> std::ws, entry, ';');) {
            const std::string code = entry.substr(0, 5);
            std::istringstream parts(entry.substr(6));
            for (std::string part; std::getline(parts, part, '+');)
                EXPECT_NE(texts[code].find(part), std::string::npos) << entry << ": " << texts[code];
        }
    }
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
