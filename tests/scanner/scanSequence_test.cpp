#include "scanner/scanSequence.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

ScanParameters parameters(const std::string& modes, const std::string& pids, const std::string& suffix = {},
                          const std::string& header = ScanParameters::functionalHeader)
{
    const auto half = [](const std::string& range, bool first) {
        const auto dash = range.find('-');
        return first ? range.substr(0, dash) : range.substr(dash + 1);
    };
    return {.cmdHead = header,
            .modeStart = half(modes, true),
            .modeStop = half(modes, false),
            .pidStart = half(pids, true),
            .pidStop = half(pids, false),
            .cmdSuffix = suffix};
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
        EXPECT_EQ(left[i], static_cast<std::int64_t>(left.size() - 1 - i)) << "after request " << i;
    return sent + (sequence.hasSkipped() ? "|" : "");
}

TEST(ScanSequenceTest, WalksThroughThePidsOfEachMode)
{
    const std::string physical = "6810F1";
    EXPECT_EQ(requests(parameters("1-2", "0-2")), "0100 0101 0102 0200 0201 0202 ");
    EXPECT_EQ(requests(parameters("1-1", "0000-2")), "010000 010001 010002 ") << "the first box is wide";
    EXPECT_EQ(requests(parameters("22-22", "FE-101")), "2200FE 2200FF 220100 220101 ") << "the last box is";
    EXPECT_EQ(requests(parameters("9-B", "-")), "09 0A 0B ") << "no PIDs";
    EXPECT_EQ(requests(parameters("9-A", "2-0", "1")), "09021 0A021 ") << "one PID, and a suffix";
    EXPECT_EQ(requests(parameters("1-1", "5- ")), "0105 ") << "a blank is a zero";
    EXPECT_EQ(requests(parameters("1-1", "C-")), "") << "an empty box is no zero";
    EXPECT_EQ(requests(parameters("1-3", "5-2")), "0105 0205 ") << "the first PID of all but the last mode";
    EXPECT_EQ(requests(parameters("5-1", "0-9")), "");

    EXPECT_EQ(requests(parameters("1-9", "-")), "01 02 03 |05 06 07 08 09 ");
    EXPECT_EQ(requests(parameters("3-4", "0-1")), "0300 0301 |");
    EXPECT_EQ(requests(parameters("4-4", "0-1")), "|");
    EXPECT_EQ(requests(parameters("4-5", "0-1")), "|0500 0501 ");
    EXPECT_EQ(requests(parameters("3-5", "-", "", physical)), "03 04 05 ");
}

TEST(ScanSequenceTest, ReadsTheBoxesAsTheyAreWhileTheScanRuns)
{
    ScanParameters boxes = parameters("3-5", "0-1", "01");
    ScanSequence sequence(boxes);
    boxes.cmdSuffix = "FF";
    const auto first = sequence.next(boxes);
    ASSERT_TRUE(first);
    EXPECT_EQ(first->text, "0300FF");
    EXPECT_EQ(first->expectedPrefix, "43 00");
    boxes.pidStart = "1";
    boxes.pidStop = "9";      // the bounds are those of the beginning
    boxes.cmdHead = "6810F1"; // from now on mode 04 counts
    EXPECT_EQ(sequence.next(boxes)->text, "0301FF");
    EXPECT_EQ(sequence.next(boxes)->text, "0401FF");
    boxes.pidStart = "FFFFFFFFFF"; // too large for a number
    EXPECT_EQ(sequence.next(boxes)->text, "0501FF");
    EXPECT_FALSE(sequence.next(boxes));

    EXPECT_EQ(ScanSequence(parameters("C0-C0", "-")).next(parameters("C0-C0", "-"))->expectedPrefix, "100");
    ScanSequence wide(parameters("9-9", "0102-0102"));
    EXPECT_EQ(wide.next(parameters("9-9", "0102-0102"))->expectedPrefix, "49 01 02");
}

TEST(ScanSequenceTest, TellsWhichScansErase)
{
    const std::string physical = "6810F1";
    EXPECT_TRUE(erasesData(parameters("1-9", "-", "", physical)));
    EXPECT_TRUE(erasesData(parameters("4-4", "0-1F", "", physical)));
    EXPECT_TRUE(erasesData(parameters("xyz-04", "-", "", physical))) << "the first box is going to be 01";
    EXPECT_FALSE(erasesData(parameters("1-9", "-")));
    EXPECT_FALSE(erasesData(parameters("5-9", "-", "", physical)));
    EXPECT_FALSE(erasesData(parameters("1-3", "-", "", physical)));
}

TEST(ScanSequenceTest, RefusesWhatABoxCannotHold)
{
    struct Case {
        CheckedBox (*check)(std::string_view);
        std::string typed;
        std::string text;
        std::string complaint;
    };
    const std::string header = "Header must be 6 bytes";
    const std::string mode = "Mode must be 1 or 2 hex digits";
    const std::string pid = "Pid must be 0 to 4 hex digits";
    const std::string suffix = "Suffix must be 0 to 2 hex digits";
    for (const Case& c : {Case{checkHeader, "7E8", "686AF1", header},
                          {checkHeader, "6c10f1", "6C10F1", ""},
                          {checkHeader, "uvwxyz", "UVWXYZ", ""},
                          {checkMode, "a", "A", ""},
                          {checkMode, "", "01", mode},
                          {checkMode, "123", "01", mode},
                          {checkMode, "1g", "01", mode},
                          {checkPid, "1f", "1F", ""},
                          {checkPid, "FFFF", "FFFF", ""},
                          {checkPid, "10000", "", pid},
                          {checkPid, "FFFFFFFFFFFF", "", pid},
                          {checkPid, "G", "", pid},
                          {checkPid, "", "", pid},
                          {checkSuffix, "0a", "0A", ""},
                          {checkSuffix, "", "", suffix},
                          {checkSuffix, "123", "", suffix}}) {
        const CheckedBox now = c.check(c.typed);
        EXPECT_EQ(now.text, c.text) << c.typed;
        EXPECT_EQ(now.complaint, c.complaint) << c.typed;
    }
}

} // namespace
} // namespace zint
