#include "scanner/scanReply.h"
#include "scanner/scanSequence.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

constexpr const char* functional = ScanParameters::functionalHeader;
constexpr const char* physical = "6810F1";

/// All requests with a blank behind each, and "|" where mode 04 was passed over. Each leaves one less.
std::string requests(const ScanParameters& boxes)
{
    ScanSequence sequence(boxes);
    std::string sent;
    std::int64_t left = sequence.left(boxes);
    while (const auto request = sequence.next(boxes)) {
        sent += (sequence.hasSkipped() ? "|" : "") + request->text + " ";
        EXPECT_EQ(sequence.left(boxes), --left) << sent;
    }
    EXPECT_EQ(left, 0) << sent;
    return sent + (sequence.hasSkipped() ? "|" : "");
}

TEST(ScanSequenceTest, WalksThroughThePidsOfEachMode)
{
    EXPECT_EQ(requests({functional, "1", "2", "0", "1"}), "0100 0101 0200 0201 ");
    EXPECT_EQ(requests({functional, "1", "1", "0000", "1"}), "010000 010001 ") << "the first box is wide";
    EXPECT_EQ(requests({functional, "22", "22", "FF", "101"}), "2200FF 220100 220101 ") << "the last box is";
    EXPECT_EQ(requests({functional, "9", "B", "", ""}), "09 0A 0B ") << "no PIDs";
    EXPECT_EQ(requests({functional, "1", "1", "5", " "}), "0105 ") << "a blank is a zero";
    EXPECT_EQ(requests({functional, "9", "9", " ", " ", " "}), "09 ") << "but no PID, and no suffix";
    EXPECT_EQ(requests({functional, "1", "1", "C", ""}), "") << "an empty box is no zero";
    EXPECT_EQ(requests({functional, "1", "3", "5", "2"}), "0105 0205 ")
        << "the first PID of all but the last mode";
    EXPECT_EQ(requests({functional, "5", "1", "0", "9"}), "");

    EXPECT_EQ(requests({functional, "3", "5", "", ""}), "03 |05 ");
    EXPECT_EQ(requests({functional, "3", "4", "0", "1"}), "0300 0301 |");
    EXPECT_EQ(requests({physical, "3", "5", "", ""}), "03 04 05 ");
    EXPECT_TRUE(erasesData({physical, "1", "4"}));
    EXPECT_TRUE(erasesData({physical, "xyz", "04"})) << "the first box is going to be 01";
    EXPECT_FALSE(erasesData({functional, "1", "9"}));
    EXPECT_FALSE(erasesData({physical, "5", "9"}) || erasesData({physical, "1", "3"}));
}

TEST(ScanSequenceTest, ReadsTheBoxesAsTheyAreWhileTheScanRuns)
{
    ScanParameters boxes{functional, "3", "5", "0", "1", "01"};
    ScanSequence sequence(boxes);
    boxes.cmdSuffix = "FF";
    EXPECT_EQ(sequence.next(boxes)->text, "0300FF");
    boxes.pidStart = "1";
    boxes.pidStop = "9"; // the bounds are those of the beginning
    boxes.cmdHead = physical;
    EXPECT_EQ(sequence.next(boxes)->text, "0301FF");
    EXPECT_EQ(sequence.next(boxes)->text, "0401FF");
    boxes.pidStart = "FFFFFFFFFF"; // too large for a number
    EXPECT_EQ(sequence.next(boxes)->text, "0501FF");
    EXPECT_FALSE(sequence.next(boxes));
}

TEST(ScanSequenceTest, KnowsWhatAReplyBeginsWithAndWhatTheParameterIsCalled)
{
    const auto known = [](const char* mode, const char* pid) {
        const ScanParameters boxes{functional, mode, mode, pid, pid};
        const ScanRequest request = ScanSequence(boxes).next(boxes).value();
        return request.expectedPrefix + "|" + std::string(request.name);
    };
    EXPECT_EQ(known("1", "C"), "41 0C|Engine RPM");
    EXPECT_EQ(known("2", "000C"), "42 00 0C|Engine RPM");
    EXPECT_EQ(known("3", "C"), "43 0C|");
    EXPECT_EQ(known("1", "20"), "41 20|");
    EXPECT_EQ(known("C0", ""), "100|");
}

TEST(ScanSequenceTest, RefusesWhatABoxCannotHold)
{
    using Check = CheckedBox (*)(std::string_view);
    const std::tuple<Check, std::vector<const char*>, const char*> rows[] = {
        {checkHeader, {"7E8", "686AF10", "\xC3\xA4\xC3\xB6\xC3\xBC"}, "686AF1|Header must be 6 bytes"},
        {checkHeader, {"uv~xyz"}, "UV~XYZ|"},
        {checkMode, {"", "1g", "123"}, "01|Mode must be 1 or 2 hex digits"},
        {checkMode, {"a"}, "A|"},
        {checkPid, {"", "10000", "G", "FFFFFFFFFFFF"}, "|Pid must be 0 to 4 hex digits"},
        {checkPid, {"ffff"}, "FFFF|"},
        {checkSuffix, {"123"}, "|Suffix must be 0 to 2 hex digits"},
        {checkSuffix, {"0a"}, "0A|"}};
    for (const auto& [check, texts, left] : rows)
        for (const char* text : texts)
            EXPECT_EQ(check(text).text + "|" + check(text).complaint, left) << text;
}

TEST(ScanReplyTest, TellsWhatAReplyIsAndWhichFiltersListIt)
{
    const auto told = [](const char* reply) {
        const ScanReply found = classify(reply, "41 0C");
        std::string text = static_cast<char>(found.kind) + found.data + "|";
        if (found.kind == ScanReply::Kind::valid)
            text += decimalText(found.value) + "|" + found.ascii + "|";
        for (const auto& [filter, name] : {std::pair{ScanFilter::all, "all"},
                                           {ScanFilter::valid, " valid"},
                                           {ScanFilter::validNonZero, " not 0"},
                                           {ScanFilter::exceptNoData, " data"}})
            text += isListed(found, filter) ? name : "";
        return text;
    };
    EXPECT_EQ(told("41 0C 1A F8 \r\r>"), "V 1A F8 |6904|..|all valid not 0 data");
    EXPECT_EQ(told("41 0C 41 7F 80 20\r>"), "V 41 7F 80 20|1098874912|A\x7F. |all valid not 0 data");
    EXPECT_EQ(told("41 0C 5A zz 414 FFFFFFFFF\r>"), "V 5A zz 414 FFFFFFFFF|24084|Z.|all valid not 0 data");
    EXPECT_EQ(told("41 0C\r>"), "V|0||all valid data");
    EXPECT_EQ(told("41 0C 01 \r41 0C 02 \r\r>"), "V 01 |1|.|all valid not 0 data");
    EXPECT_EQ(told("41 0D 1A F8 \r\r>"), "X41 0D 1A F8 |all data");
    EXPECT_EQ(told("NO DATA\r\r>"), "NNO DATA|all");
    EXPECT_EQ(told("NO DATA \r\r>"), "XNO DATA |all data");
    EXPECT_EQ(decimalText(1152921504606846976), "1152921504606846976"); // 16 to the 15th
    EXPECT_EQ(decimalText(1e300).size(), 301U);
}

} // namespace
} // namespace zint
