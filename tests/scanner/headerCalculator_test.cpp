#include "scanner/headerCalculator.h"
#include "scanner/scanParameters.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

/// The fields of a header: the three bytes, the priority, the boxes that are checked, whose the target is.
std::string fieldsOf(const HeaderCalculator& calculator)
{
    const CalcHdrPanel& panel = calculator.panel();
    EXPECT_EQ(calculator.header(), panel.hdrOpt + panel.hdrTarget + panel.hdrSource);
    std::string fields = calculator.header() + " " + panel.prioVal + " ";
    for (std::size_t box = 0; box < panel.optBit.size(); ++box)
        fields += panel.optBit[box] ? std::to_string(box) : "";
    return fields + " " + panel.targetFrame + (panel.hdrTargetEnabled ? " typed" : "");
}

TEST(HeaderCalculatorTest, SplitsAHeaderIntoItsFields)
{
    const auto split = [](const char* header) { return fieldsOf(HeaderCalculator(header)); };
    EXPECT_EQ(split("686AF1"), "686AF1 3 127 Request (functional)");
    EXPECT_EQ(split("6c30f1"), "6C30F1 3 1267 Target (physical) typed");
    // The target decides, even where the first byte says otherwise.
    EXPECT_EQ(split("9310F1"), "9310F1 4 0345 Target (physical) typed");
    EXPECT_EQ(split("6C6AF1"), "6C6AF1 3 1267 Request (functional)");
    EXPECT_EQ(split("zz6af1"), "006AF1 0  Request (functional)");
    for (const char* unusable : {"", "7E8", "686AF10", "\xC3\xA4\xC3\xB6\xC3\xBC"})
        EXPECT_EQ(split(unusable), split("686AF1")) << unusable;
}

TEST(HeaderCalculatorTest, ABoxChangesItsBitAndTheAddressingBoxTheTarget)
{
    HeaderCalculator calculator(ScanParameters::functionalHeader);
    std::string headers;
    for (std::size_t box = 0; box < 8; ++box) {
        calculator.clickOptBit(box, !calculator.panel().optBit[box]);
        headers += calculator.header() + " ";
    }
    EXPECT_EQ(headers, "786AF1 586AF1 186AF1 986AF1 996AF1 9B6AF1 9F10F1 9710F1 ");
    EXPECT_EQ(fieldsOf(calculator), "9710F1 4 03456 Target (physical) typed");
    calculator.clickOptBit(6, false);
    EXPECT_EQ(fieldsOf(calculator), "936AF1 4 0345 Request (functional)");
}

TEST(HeaderCalculatorTest, ReplacesWhatABoxCannotHold)
{
    const auto left = [](void (HeaderCalculator::*leave)(std::string_view), const char* header,
                         const std::vector<const char*>& typed) {
        std::string headers;
        for (const char* text : typed) {
            HeaderCalculator calculator(header);
            (calculator.*leave)(text);
            headers += calculator.header() + " ";
        }
        return headers;
    };
    const auto prio = &HeaderCalculator::leavePrioVal;
    const auto target = &HeaderCalculator::leaveHdrTarget;
    const auto source = &HeaderCalculator::leaveHdrSource;
    EXPECT_EQ(left(prio, "686AF1", {"7", " 02 ", "8", "99999999999"}), "E86AF1 486AF1 E86AF1 E86AF1 ");
    EXPECT_EQ(left(prio, "686AF1", {"", "-1", "-99999999999", "high"}), "686AF1 686AF1 686AF1 686AF1 ");
    EXPECT_EQ(left(target, "6C30F1", {"5", "ff", "0", "", "100"}), "6C05F1 6CFFF1 6C10F1 6C10F1 6C10F1 ");
    EXPECT_EQ(left(target, "6830F1", {"4G", "FFFFFFFFFF"}), "686AF1 686AF1 ");
    EXPECT_EQ(left(source, "6C30F1", {"f9", "5", "", "G1", " "}), "6C30F9 6C3005 6C30F1 6C30F1 6C30F1 ");
}

} // namespace
} // namespace zint
