#include "runner/dataLog.h"

#include <gtest/gtest.h>

#include <sstream>

namespace zint {
namespace {

struct DataExportTest : testing::Test {
    Design design;
    SampleStore samples;
    std::string complaints;

    DataExportTest()
    {
        design.title() = "Run";
        design.entries[1] = {"010D", "Vehicle Speed", 7, 1, 0};
        design.entries[2] = {"0105", "Coolant", 3, 4, 0};
        design.eventCount() = 2;
        samples.reset(design);
    }

    std::string exported()
    {
        std::ostringstream stream;
        writeExport(stream, design, samples, "now", [this](const std::string& text) { complaints += text; });
        return stream.str();
    }
};

TEST_F(DataExportTest, ARowPerPass)
{
    const std::string head = "Run now\r\n \r\nSecond(s)\tVehicle Speed(mph)\tCoolant(C)\r\n";
    EXPECT_EQ(exported(), head + "0\t\t\r\n");

    samples.add(0, 90, 1);
    samples.add(1, 30, 2); // the row has the time of its last sample
    samples.add(0, 0, 2);
    samples.add(0, 100, 3);
    EXPECT_EQ(exported(), head + "2\t55.935\t-10\r\n2\t0\t\r\n3\t62.15\t\r\n");
    samples.add(1, 40, 5);
    samples.add(1, 41, 6); // comes again while the row has no other value of its pass
    EXPECT_EQ(exported(), head + "2\t55.935\t-10\r\n2\t0\t\r\n5\t62.15\t0\r\n6\t\t1\r\n");
    EXPECT_EQ(complaints, "");
}

TEST_F(DataExportTest, ValuesWithoutANumber)
{
    design.entries[1] = {"010A", "", 18, 1, 0};
    design.entries[2] = {"0199", "", 99, 1, 0};
    samples.add(0, 2147483647, 1);
    samples.add(1, 5, 1);
    samples.add(0, 1, 2);
    EXPECT_EQ(exported(), "Run now\r\n \r\nSecond(s)\t(kPaG)\t()\r\n1\tOverflow\t\r\n2\t3\t\r\n");
}

TEST_F(DataExportTest, SamplesOfNoEventAreTold)
{
    samples.add(0, 0, 1);
    samples.add(1, 40, 1);
    samples.add(0, 100, 2);
    design.eventCount() = 1;
    EXPECT_TRUE(exported().ends_with("\r\n1\t0\r\n2\t62.15\r\n")) << "the others are written";
    EXPECT_EQ(complaints, "data error - can't find 3 tmpLog 2\r\ntmpLog: 1 4\r\n");
}

} // namespace
} // namespace zint
