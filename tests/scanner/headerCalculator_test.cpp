#include "scanner/headerCalculator.h"
#include "scanner/scanParameters.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

using Boxes = std::array<bool, 8>;

TEST(HeaderCalculatorTest, SplitsAHeaderIntoItsFields)
{
    const HeaderCalculator usual(ScanParameters::functionalHeader);
    EXPECT_EQ(usual.panel().prioVal, "3");
    EXPECT_EQ(usual.panel().optBit, (Boxes{false, true, true, false, false, false, false, true}));
    EXPECT_EQ(usual.panel().hdrOpt, "68");
    EXPECT_EQ(usual.panel().targetFrame, "Request (functional)");
    EXPECT_EQ(usual.panel().hdrTarget, "6A");
    EXPECT_FALSE(usual.panel().hdrTargetEnabled);
    EXPECT_EQ(usual.panel().hdrSource, "F1");

    const HeaderCalculator physical("6c30f1");
    EXPECT_TRUE(physical.panel().optBit[6]);
    EXPECT_EQ(physical.panel().targetFrame, "Target (physical)");
    EXPECT_TRUE(physical.panel().hdrTargetEnabled);
    EXPECT_EQ(physical.header(), "6C30F1");

    // The target decides, even where the first byte says otherwise.
    EXPECT_TRUE(HeaderCalculator("6810F1").panel().hdrTargetEnabled);
    EXPECT_FALSE(HeaderCalculator("6C6AF1").panel().hdrTargetEnabled);

    for (const char* unusable : {"", "7E8", "686AF", "686AF10"})
        EXPECT_EQ(HeaderCalculator(unusable).header(), "686AF1") << unusable;
    EXPECT_EQ(HeaderCalculator("zz6af1").header(), "006AF1");
}

TEST(HeaderCalculatorTest, EachFirstByteComesBackAndEachBoxChangesItsBit)
{
    constexpr std::array<int, 8> weights{0x10, 0x20, 0x40, 0x80, 0x01, 0x02, 0x04, 0x08};
    constexpr std::string_view digits = "0123456789ABCDEF";
    const auto headerOf = [&](int byte, const char* rest) {
        return std::string{digits[static_cast<std::size_t>(byte / 16)],
                           digits[static_cast<std::size_t>(byte % 16)]} +
               rest;
    };
    for (int byte = 0; byte < 256; ++byte) {
        const std::string header = headerOf(byte, "42F1");
        ASSERT_EQ(HeaderCalculator(header).header(), header);
        EXPECT_EQ(HeaderCalculator(header).panel().prioVal, std::to_string(byte >> 5));
        for (std::size_t box = 0; box < weights.size(); ++box) {
            HeaderCalculator calculator(header);
            const bool isChecked = calculator.panel().optBit[box];
            ASSERT_EQ(isChecked, (byte & weights[box]) != 0) << header << " box " << box;
            const bool isTargetNext = calculator.clickOptBit(box, !isChecked);
            EXPECT_EQ(isTargetNext, box == 6 && !isChecked);
            EXPECT_EQ(calculator.header(), headerOf(byte ^ weights[box], box != 6    ? "42F1"
                                                                         : isChecked ? "6AF1"
                                                                                     : "10F1"));
        }
    }
}

TEST(HeaderCalculatorTest, TheAddressingBoxSwitchesTheTarget)
{
    HeaderCalculator calculator(ScanParameters::functionalHeader);
    calculator.clickOptBit(6, true);
    EXPECT_EQ(calculator.header(), "6C10F1");
    EXPECT_EQ(calculator.panel().targetFrame, "Target (physical)");
    EXPECT_TRUE(calculator.panel().hdrTargetEnabled);
    calculator.clickOptBit(6, false);
    EXPECT_EQ(calculator.header(), "686AF1");
    EXPECT_EQ(calculator.panel().targetFrame, "Request (functional)");
    EXPECT_FALSE(calculator.panel().hdrTargetEnabled);
}

TEST(HeaderCalculatorTest, APriorityIsZeroToSeven)
{
    struct Row {
        const char* typed;
        const char* shown;
        const char* firstByte;
    };
    for (const Row& row :
         {Row{"7", "7", "E8"}, Row{"0", "0", "08"}, Row{"4", "4", "88"}, Row{" 02 ", "2", "48"},
          Row{"8", "7", "E8"}, Row{"99999999999", "7", "E8"},
          // what is no priority gives way to the last one
          Row{"", "3", "68"}, Row{"-1", "3", "68"}, Row{"-99999999999", "3", "68"}, Row{"high", "3", "68"}}) {
        HeaderCalculator calculator(ScanParameters::functionalHeader);
        calculator.leavePrioVal(row.typed);
        EXPECT_EQ(calculator.panel().prioVal, row.shown) << row.typed;
        EXPECT_EQ(calculator.panel().hdrOpt, row.firstByte) << row.typed;
    }
}

TEST(HeaderCalculatorTest, ATargetIsAByteFromOneUp)
{
    struct Row {
        const char* typed;
        const char* physical;   ///< what becomes of it with box 6 checked
        const char* functional; ///< and with box 6 clear
    };
    for (const Row& row :
         {Row{"5", "05", "05"}, Row{"05", "05", "05"}, Row{"00f", "0F", "0F"}, Row{"1f", "1F", "1F"},
          Row{"01f", "1F", "1F"}, Row{"1 2", "12", "12"}, Row{"ff", "FF", "FF"}, Row{"1", "01", "01"},
          Row{"0", "10", "6A"}, Row{"100", "10", "6A"}, Row{"", "10", "6A"}, Row{"4G", "10", "6A"},
          Row{"FFFFFFFFFF", "10", "6A"}}) {
        HeaderCalculator physical("6C30F1");
        physical.leaveHdrTarget(row.typed);
        EXPECT_EQ(physical.panel().hdrTarget, row.physical) << row.typed;
        HeaderCalculator functional("6830F1");
        functional.leaveHdrTarget(row.typed);
        EXPECT_EQ(functional.panel().hdrTarget, row.functional) << row.typed;
    }
}

TEST(HeaderCalculatorTest, ASourceIsTwoDigits)
{
    HeaderCalculator calculator(ScanParameters::functionalHeader);
    calculator.leaveHdrSource("f9");
    EXPECT_EQ(calculator.header(), "686AF9");
    for (const char* wrong : {"", "5", "0F5", "G1", " 5"}) {
        calculator.leaveHdrSource(wrong);
        EXPECT_EQ(calculator.panel().hdrSource, "F9") << wrong;
    }
}

} // namespace
} // namespace zint
