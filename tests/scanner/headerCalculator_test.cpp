#include "scanner/headerCalculator.h"
#include "scanner/scanParameters.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

TEST(HeaderCalculatorTest, SplitsAHeaderIntoItsFields)
{
    const struct {
        const char* box;
        const char* header;
        const char* prioVal;
        const char* optBit; ///< the checked ones
        bool isPhysical;    ///< by its target, even where the first byte says otherwise
    } rows[] = {
        {"686AF1", "686AF1", "3", "127", false},
        {"6c30f1", "6C30F1", "3", "1267", true},
        {"9310F1", "9310F1", "4", "0345", true},
        {"6C6AF1", "6C6AF1", "3", "1267", false},
        {"7E8", "686AF1", "3", "127", false},
        {"zz6af1", "006AF1", "0", "", false},
        {"\xC3\xA4\xC3\xB6\xC3\xBC", "686AF1", "3", "127", false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.box);
        const HeaderCalculator calculator(row.box);
        const CalcHdrPanel& panel = calculator.panel();
        EXPECT_EQ(calculator.header(), row.header);
        EXPECT_EQ(panel.hdrOpt + panel.hdrTarget + panel.hdrSource, row.header);
        EXPECT_EQ(panel.prioVal, row.prioVal);
        std::string checked;
        for (std::size_t box = 0; box < panel.optBit.size(); ++box)
            checked += panel.optBit[box] ? std::to_string(box) : "";
        EXPECT_EQ(checked, row.optBit);
        EXPECT_EQ(panel.targetFrame, row.isPhysical ? "Target (physical)" : "Request (functional)");
        EXPECT_EQ(panel.hdrTargetEnabled, row.isPhysical);
    }
}

TEST(HeaderCalculatorTest, ABoxChangesItsBitAndTheAddressingBoxTheTarget)
{
    HeaderCalculator calculator(ScanParameters::functionalHeader);
    const char* const headers[] = {"786AF1", "586AF1", "186AF1", "986AF1",
                                   "996AF1", "9B6AF1", "9F10F1", "9710F1"};
    for (std::size_t box = 0; box < 8; ++box) {
        calculator.clickOptBit(box, !calculator.panel().optBit[box]);
        EXPECT_EQ(calculator.header(), headers[box]) << box;
    }
    EXPECT_TRUE(calculator.panel().hdrTargetEnabled);
    calculator.clickOptBit(6, false);
    EXPECT_EQ(calculator.header(), "936AF1");
    EXPECT_EQ(calculator.panel().targetFrame, "Request (functional)");
    EXPECT_FALSE(calculator.panel().hdrTargetEnabled);
}

TEST(HeaderCalculatorTest, ReplacesWhatABoxCannotHold)
{
    using Leave = void (HeaderCalculator::*)(std::string_view);
    const Leave prio = &HeaderCalculator::leavePrioVal;
    const Leave target = &HeaderCalculator::leaveHdrTarget;
    const Leave source = &HeaderCalculator::leaveHdrSource;
    const struct {
        Leave leave;
        const char* header; ///< of before
        const char* typed;
        const char* result;
    } rows[] = {
        {prio, "686AF1", "7", "E86AF1"},    {prio, "686AF1", " 02 ", "486AF1"},
        {prio, "686AF1", "8", "E86AF1"},    {prio, "686AF1", "99999999999", "E86AF1"},
        {prio, "686AF1", "", "686AF1"},     {prio, "686AF1", "-99999999999", "686AF1"},
        {prio, "686AF1", "high", "686AF1"}, {target, "6C30F1", "5", "6C05F1"},
        {target, "6C30F1", "ff", "6CFFF1"}, {target, "6C30F1", "0", "6C10F1"},
        {target, "6C30F1", "", "6C10F1"},   {target, "6C30F1", "100", "6C10F1"},
        {target, "6830F1", "4G", "686AF1"}, {target, "6830F1", "FFFFFFFFFF", "686AF1"},
        {source, "6C30F1", "f9", "6C30F9"}, {source, "6C30F1", "5", "6C3005"},
        {source, "6C30F1", "", "6C30F1"},   {source, "6C30F1", "G1", "6C30F1"},
        {source, "6C30F1", " ", "6C30F1"},
    };
    for (const auto& [leave, header, typed, result] : rows) {
        HeaderCalculator calculator(header);
        (calculator.*leave)(typed);
        EXPECT_EQ(calculator.header(), result) << typed;
    }
}

} // namespace
} // namespace zint
