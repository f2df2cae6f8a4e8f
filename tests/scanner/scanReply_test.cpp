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
             {"41 0C 41 7F 80 20\r>", Kind::valid, " 41 7F 80 20", 0x417F8020, "A\x7F. "},
             {"41 0C 5A zz 414 FFFFFFFFF\r>", Kind::valid, " 5A zz 414 FFFFFFFFF", 0x5A * 256 + 0x414, "Z."},
             {"41 0C\r>", Kind::valid, ""},
             {"41 0C 12>", Kind::valid, ""},
             {"41 0D 1A F8 \r\r>", Kind::invalid, "41 0D 1A F8 "},
             {"41 0c 1A\r>", Kind::invalid, "41 0c 1A"},
             {"?\r\r>", Kind::invalid, "?"},
             {"NO DATA\r\r>", Kind::noData, "NO DATA"},
             {"NO DATA \r\r>", Kind::invalid, "NO DATA "},
             {"41 0C 01 \r41 0C 02 \r\r>", Kind::valid, " 01 ", 1, "."},
         }) {
        const ScanReply found = classify(c.reply, "41 0C");
        EXPECT_TRUE(found.kind == c.kind && found.data == c.data && found.value == c.value &&
                    found.ascii == c.ascii)
            << c.reply << " " << static_cast<char>(found.kind) << found.data << "|" << found.ascii;
    }
    EXPECT_EQ(decimalText(1152921504606846976), "1152921504606846976"); // 16 to the 15th
    EXPECT_EQ(decimalText(1e300).size(), 301U);
}

TEST(ScanReplyTest, ListsWhatTheFilterLetsThrough)
{
    const std::pair<ScanFilter, const char*> rows[] = {{ScanFilter::all, "VVXN"},
                                                       {ScanFilter::valid, "VV--"},
                                                       {ScanFilter::validNonZero, "V---"},
                                                       {ScanFilter::exceptNoData, "VVX-"}};
    const std::pair<Kind, double> replies[] = {
        {Kind::valid, 1}, {Kind::valid, 0}, {Kind::invalid, 0}, {Kind::noData, 0}};
    for (const auto& [filter, expected] : rows) {
        std::string listed;
        for (const auto& [kind, value] : replies)
            listed += isListed({.kind = kind, .data = {}, .value = value, .ascii = {}}, filter)
                          ? static_cast<char>(kind)
                          : '-';
        EXPECT_EQ(listed, expected);
    }
}

} // namespace
} // namespace zint
