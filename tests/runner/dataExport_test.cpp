#include "runner/dataLog.h"

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

namespace zint {
namespace {

Design twoEvents()
{
    Design design;
    design.title() = "Run";
    design.entries[1] = {"010D", "Vehicle Speed", 7, 1, 0};
    design.entries[2] = {"0105", "Coolant", 3, 4, 0};
    design.eventCount() = 2;
    return design;
}

constexpr const char* head = "Run now\r\n \r\nSecond(s)\tVehicle Speed(mph)\tCoolant(C)\r\n";

struct Export {
    std::string text; ///< behind the head lines
    std::vector<std::string> complaints;
};

Export exportOf(const Design& design, const SampleStore& samples)
{
    Export result;
    std::ostringstream stream;
    writeExport(stream, design, samples, "now",
                [&result](const std::string& text) { result.complaints.push_back(text); });
    result.text = stream.str();
    if (design.eventCount() == 2) {
        EXPECT_TRUE(result.text.starts_with(head)) << result.text;
        result.text.erase(0, std::string_view(head).size());
    }
    return result;
}

TEST(DataExportTest, ARowPerPass)
{
    const Design design = twoEvents();
    SampleStore samples;
    samples.reset(design);
    EXPECT_EQ(exportOf(design, samples).text, "0\t\t\r\n");

    samples.add(0, 90, 1);
    samples.add(1, 30, 2); // the row has the time of its last sample
    samples.add(0, 0, 2);
    samples.add(0, 100, 3);
    EXPECT_EQ(exportOf(design, samples).text, "2\t55.935\t-10\r\n2\t0\t\r\n3\t62.15\t\r\n");
    samples.add(1, 40, 5);
    samples.add(1, 41, 6); // comes again while the row has no other value of its pass
    const Export result = exportOf(design, samples);
    EXPECT_EQ(result.text, "2\t55.935\t-10\r\n2\t0\t\r\n5\t62.15\t0\r\n6\t\t1\r\n");
    EXPECT_TRUE(result.complaints.empty());
}

TEST(DataExportTest, ValuesWithoutANumber)
{
    Design design = twoEvents();
    design.entries[1] = {"010A", "", 18, 1, 0};
    design.entries[2] = {"0199", "", 99, 1, 0};
    SampleStore samples;
    samples.reset(design);
    samples.add(0, 2147483647, 1);
    samples.add(1, 5, 1);
    samples.add(0, 1, 2);
    std::ostringstream stream;
    writeExport(stream, design, samples, "now", [](const std::string& text) { ADD_FAILURE() << text; });
    EXPECT_EQ(stream.str(), "Run now\r\n \r\nSecond(s)\t(kPaG)\t()\r\n1\tOverflow\t\r\n2\t3\t\r\n");
}

TEST(DataExportTest, SamplesOfNoEventAreTold)
{
    Design design = twoEvents();
    SampleStore samples;
    samples.reset(design);
    samples.add(0, 0, 1);
    samples.add(1, 40, 1);
    samples.add(0, 100, 2);
    design.eventCount() = 1;
    const Export result = exportOf(design, samples);
    EXPECT_EQ(result.complaints,
              std::vector<std::string>{"data error - can't find 3 tmpLog 2\r\ntmpLog: 1 4\r\n"});
    EXPECT_TRUE(result.text.ends_with("\r\n1\t0\r\n2\t62.15\r\n")) << "the others are written";
}

TEST(DataExportTest, MillionsOfCharactersArriveWhole)
{
    const Design design = twoEvents();
    SampleStore samples;
    samples.reset(design);
    std::string expected;
    for (int second = 0; second < 50000; ++second) {
        samples.add(1, second + 40, second);
        expected += std::to_string(second) + "\t\t" + std::to_string(second) + "\r\n";
    }
    EXPECT_TRUE(exportOf(design, samples).text == expected);
}

TEST(DataExportTest, DebugDump)
{
    const Design design = twoEvents();
    SampleStore samples;
    samples.reset(design);
    samples.add(1, 6904, 125);
    samples.add(0, 7, 125);
    samples.add(1, -3, 126);
    std::ostringstream stream;
    writeDebugDump(stream, samples);
    EXPECT_EQ(stream.str(), "-1,2,0\r\n4,6904,125\r\n-1,1,0\r\n0,7,125\r\n0,-3,126\r\n");
}

} // namespace
} // namespace zint
