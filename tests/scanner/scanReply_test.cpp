#include "scanner/scanReply.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

using Kind = ScanReply::Kind;

TEST(ScanReplyTest, TellsWhatAReplyIs)
{
    struct Case {
        std::string reply;
        Kind kind;
        std::string data;
        double value = 0;
        std::string ascii = {};
    };
    for (const Case& c : {
             Case{"41 0C 1A F8 \r\r>", Kind::valid, " 1A F8 ", 0x1AF8, ".."},
             {"41 0C 00 00\r>", Kind::valid, " 00 00", 0, ".."},
             {"41 0C 41 7F 80 20\r>", Kind::valid, " 41 7F 80 20", 0x417F8020, "A\x7F. "},
             {"41 0C 5A zz 414 FFFFFFFFF\r>", Kind::valid, " 5A zz 414 FFFFFFFFF", 0x5A * 256 + 0x414, "Z."},
             {"41 0C\r>", Kind::valid, ""},
             {"41 0C 12>", Kind::valid, ""},
             {"41 0D 1A F8 \r\r>", Kind::invalid, "41 0D 1A F8 "},
             {"41 0c 1A\r>", Kind::invalid, "41 0c 1A"},
             {"7F 01 12 \r\r>", Kind::invalid, "7F 01 12 "},
             {"SEARCHING...\r41 0C 1A F8 \r\r>", Kind::invalid, "SEARCHING..."},
             {"?\r\r>", Kind::invalid, "?"},
             {">", Kind::invalid, ""},
             {"NO DATA\r\r>", Kind::noData, "NO DATA"},
             {"NO DATA \r\r>", Kind::invalid, "NO DATA "},
             {"41 0C 01 \r41 0C 02 \r\r>", Kind::valid, " 01 ", 1, "."},
         }) {
        SCOPED_TRACE(c.reply);
        const ScanReply found = classify(c.reply, "41 0C");
        EXPECT_EQ(found.kind, c.kind);
        EXPECT_EQ(found.data, c.data);
        EXPECT_EQ(found.value, c.value);
        EXPECT_EQ(found.ascii, c.ascii);
    }
}

TEST(ScanReplyTest, ListsWhatTheFilterLetsThrough)
{
    const auto listed = [](ScanFilter filter) {
        std::string kinds;
        for (const ScanReply& reply : {ScanReply{.kind = Kind::valid, .data = "", .value = 1, .ascii = ""},
                                       ScanReply{.kind = Kind::valid, .data = "", .value = 0, .ascii = ""},
                                       ScanReply{.kind = Kind::invalid, .data = "", .value = 0, .ascii = ""},
                                       ScanReply{.kind = Kind::noData, .data = "", .value = 0, .ascii = ""}})
            kinds += isListed(reply, filter) ? static_cast<char>(reply.kind) : '-';
        return kinds;
    };
    EXPECT_EQ(listed(ScanFilter::all), "VVXN");
    EXPECT_EQ(listed(ScanFilter::valid), "VV--");
    EXPECT_EQ(listed(ScanFilter::validNonZero), "V---");
    EXPECT_EQ(listed(ScanFilter::exceptNoData), "VVX-");
}

TEST(ScanReplyTest, WritesLongNumbersWithoutAnExponent)
{
    EXPECT_EQ(decimalText(0), "0");
    EXPECT_EQ(decimalText(999999999999999), "999999999999999");
    EXPECT_EQ(decimalText(1152921504606846976), "1152921504606846976"); // 16 to the 15th
    EXPECT_EQ(decimalText(1e300).size(), 301U);
}

} // namespace
} // namespace zint
