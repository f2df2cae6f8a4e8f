#include "scanner/scanSequence.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

constexpr const char* physical = "6810F1";

ScanParameters parameters(const std::string& modes, const std::string& pids, const std::string& suffix = {},
                          const std::string& header = ScanParameters::functionalHeader)
{
    const auto dash = [](const std::string& range) { return range.find('-'); };
    return {header,
            modes.substr(0, dash(modes)),
            modes.substr(dash(modes) + 1),
            pids.substr(0, dash(pids)),
            pids.substr(dash(pids) + 1),
            suffix};
}

/// All requests with a blank behind each, and "|" where mode 04 was passed over. Holds the number that was
/// left at each step against those that really followed.
std::string requests(const ScanParameters& boxes)
{
    ScanSequence sequence(boxes);
    std::string sent;
    std::vector<std::int64_t> left{sequence.left(boxes)};
    while (const auto request = sequence.next(boxes)) {
        sent += (sequence.hasSkipped() ? "|" : "") + request->text + " ";
        left.push_back(sequence.left(boxes));
    }
    for (std::size_t i = 0; i < left.size(); ++i)
        EXPECT_EQ(left[i], std::ssize(left) - 1 - static_cast<std::int64_t>(i)) << "after request " << i;
    return sent + (sequence.hasSkipped() ? "|" : "");
}

TEST(ScanSequenceTest, WalksThroughThePidsOfEachMode)
{
    EXPECT_EQ(requests(parameters("1-2", "0-1")), "0100 0101 0200 0201 ");
    EXPECT_EQ(requests(parameters("1-1", "0000-1")), "010000 010001 ") << "the first box is wide";
    EXPECT_EQ(requests(parameters("22-22", "FF-101")), "2200FF 220100 220101 ") << "the last box is";
    EXPECT_EQ(requests(parameters("9-B", "-")), "09 0A 0B ") << "no PIDs";
    EXPECT_EQ(requests(parameters("9-A", "2-0", "1")), "09021 0A021 ") << "one PID, and a suffix";
    EXPECT_EQ(requests(parameters("1-1", "5- ")), "0105 ") << "a blank is a zero";
    EXPECT_EQ(requests(parameters("9-9", " - ", " ")), "09 ") << "but no PID, and no suffix";
    EXPECT_EQ(requests(parameters("1-1", "C-")), "") << "an empty box is no zero";
    EXPECT_EQ(requests(parameters("1-3", "5-2")), "0105 0205 ") << "the first PID of all but the last mode";
    EXPECT_EQ(requests(parameters("5-1", "0-9")), "");

    EXPECT_EQ(requests(parameters("3-5", "-")), "03 |05 ");
    EXPECT_EQ(requests(parameters("3-4", "0-1")), "0300 0301 |");
    EXPECT_EQ(requests(parameters("4-4", "0-1")), "|");
    EXPECT_EQ(requests(parameters("3-5", "-", "", physical)), "03 04 05 ");
    EXPECT_TRUE(erasesData(parameters("1-9", "-", "", physical)));
    EXPECT_TRUE(erasesData(parameters("xyz-04", "-", "", physical))) << "the first box is going to be 01";
    EXPECT_FALSE(erasesData(parameters("1-9", "-")));
    EXPECT_FALSE(erasesData(parameters("5-9", "-", "", physical)));
    EXPECT_FALSE(erasesData(parameters("1-3", "-", "", physical)));
}

TEST(ScanSequenceTest, ReadsTheBoxesAsTheyAreWhileTheScanRuns)
{
    ScanParameters boxes = parameters("3-5", "0-1", "01");
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
    const auto known = [](const char* modes, const char* pids) {
        const ScanParameters boxes = parameters(modes, pids);
        const ScanRequest request = ScanSequence(boxes).next(boxes).value();
        return request.expectedPrefix + "|" + std::string(request.name);
    };
    EXPECT_EQ(known("1-1", "C-C"), "41 0C|Engine RPM");
    EXPECT_EQ(known("2-2", "000C-000C"), "42 00 0C|Engine RPM");
    EXPECT_EQ(known("3-3", "C-C"), "43 0C|");
    EXPECT_EQ(known("1-1", "20-20"), "41 20|");
    EXPECT_EQ(known("1-1", "1D-1D"), "41 1D|") << "the catalogue has no name either";
    EXPECT_EQ(known("C0-C0", "-"), "100|");
}

TEST(ScanSequenceTest, RefusesWhatABoxCannotHold)
{
    using Check = CheckedBox (*)(std::string_view);
    const std::tuple<Check, std::vector<const char*>, const char*> rows[] = {
        {checkHeader, {"7E8", "\xC3\xA4\xC3\xB6\xC3\xBC"}, "686AF1|Header must be 6 bytes"},
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

} // namespace
} // namespace zint
