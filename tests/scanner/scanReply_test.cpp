#include "scanner/scanReply.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

using Kind = ScanReply::Kind;

TEST(ScanReplyTest, TellsWhatAReplyIs)
{
    const auto told = [](const char* reply) {
        const ScanReply found = classify(reply, "41 0C");
        return static_cast<char>(found.kind) + found.data +
               (found.kind == Kind::valid ? "|" + decimalText(found.value) + "|" + found.ascii : "");
    };
    EXPECT_EQ(told("41 0C 1A F8 \r\r>"), "V 1A F8 |6904|..");
    EXPECT_EQ(told("41 0C 41 7F 80 20\r>"), "V 41 7F 80 20|1098874912|A\x7F. ");
    EXPECT_EQ(told("41 0C 5A zz 414 FFFFFFFFF\r>"), "V 5A zz 414 FFFFFFFFF|24084|Z.");
    EXPECT_EQ(told("41 0C\r>"), "V|0|");
    EXPECT_EQ(told("41 0C 12>"), "V|0|");
    EXPECT_EQ(told("41 0C 01 \r41 0C 02 \r\r>"), "V 01 |1|.");
    EXPECT_EQ(told("41 0D 1A F8 \r\r>"), "X41 0D 1A F8 ");
    EXPECT_EQ(told("41 0c 1A\r>"), "X41 0c 1A");
    EXPECT_EQ(told("NO DATA\r\r>"), "NNO DATA");
    EXPECT_EQ(told("NO DATA \r\r>"), "XNO DATA ");
    EXPECT_EQ(decimalText(1152921504606846976), "1152921504606846976"); // 16 to the 15th
    EXPECT_EQ(decimalText(1e300).size(), 301U);
}

TEST(ScanReplyTest, ListsWhatTheFilterLetsThrough)
{
    const auto listed = [](ScanFilter filter) {
        std::string kinds;
        for (const auto& [kind, value] :
             {std::pair{Kind::valid, 1.}, {Kind::valid, 0.}, {Kind::invalid, 0.}, {Kind::noData, 0.}})
            kinds += isListed({.kind = kind, .data = {}, .value = value, .ascii = {}}, filter)
                         ? static_cast<char>(kind)
                         : '-';
        return kinds;
    };
    EXPECT_EQ(listed(ScanFilter::all), "VVXN");
    EXPECT_EQ(listed(ScanFilter::valid), "VV--");
    EXPECT_EQ(listed(ScanFilter::validNonZero), "V---");
    EXPECT_EQ(listed(ScanFilter::exceptNoData), "VVX-");
}

} // namespace
} // namespace zint
