#include "scanner/headerCalculator.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

/// The three bytes, the priority, the boxes that are checked, whose the target is.
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
    const std::pair<const char*, const char*> rows[] = {
        {"6c30f1", "6C30F1 3 1267 Target (physical) typed"},
        // The target decides, even where the first byte says otherwise.
        {"9310F1", "9310F1 4 0345 Target (physical) typed"},
        {"6C6AF1", "6C6AF1 3 1267 Request (functional)"},
        {"zz6af1", "006AF1 0  Request (functional)"},
        {"7E8", "686AF1 3 127 Request (functional)"}};
    for (const auto& [header, fields] : rows)
        EXPECT_EQ(fieldsOf(HeaderCalculator(header)), fields);
}

TEST(HeaderCalculatorTest, ReplacesWhatABoxCannotHold)
{
    HeaderCalculator calculator("6C30F1");
    const auto left = [&](auto leave, const std::vector<const char*>& typed) {
        std::string headers;
        for (const char* text : typed) {
            (calculator.*leave)(text);
            headers += calculator.header() + " ";
        }
        return headers;
    };
    const auto target = &HeaderCalculator::leaveHdrTarget;
    EXPECT_EQ(left(target, {"5", "ff", "0", "1", "", "100"}), "6C05F1 6CFFF1 6C10F1 6C01F1 6C10F1 6C10F1 ");
    EXPECT_EQ(left(&HeaderCalculator::leaveHdrSource, {"f9", "0", "", "G1", " ", "100"}),
              "6C10F9 6C1000 6C1000 6C1000 6C1000 6C1000 ");
    const auto prio = &HeaderCalculator::leavePrioVal;
    EXPECT_EQ(left(prio, {" 02 ", "", "-1", "-99999999999", "high"}), "4C1000 4C1000 4C1000 4C1000 4C1000 ");
    EXPECT_EQ(left(prio, {"8", "0", "99999999999"}), "EC1000 0C1000 EC1000 ");
    calculator.clickOptBit(6, false);
    EXPECT_EQ(fieldsOf(calculator), "E86A00 7 1237 Request (functional)");
    EXPECT_EQ(left(target, {"5", "4G", "5", "FFFFFFFFFF"}), "E80500 E86A00 E80500 E86A00 ");
}

} // namespace
} // namespace zint
