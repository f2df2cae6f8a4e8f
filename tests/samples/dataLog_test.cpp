#include "runner/pollPlan.h"
#include "samples/dataExport.h"
#include "samples/dataLog.h"
#include "samples/dataLogReader.h"
#include "shared/fileError.h"
#include "support/designOf.h"
#include "support/failure.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

namespace zint {
namespace {

const std::string head = "Car\r\nATH1|102\r\n010C|RPM|5|1|0\r\n010D|Speed|7|2|-1\r\n0105||3|0|0\r\n"
                         "EOP - end of Parms\r\ntoday\r\n"; // seven lines

/// @param samples each with its event, its value and its time
SampleStore storeOf(const Design& design, const std::vector<std::array<std::int32_t, 3>>& samples)
{
    SampleStore store;
    store.reset(design);
    for (const auto& [event, value, time] : samples)
        store.add(static_cast<std::size_t>(event), value, {time});
    return store;
}

std::string logOf(const Design& design, const SampleStore& samples)
{
    std::ostringstream stream;
    writeLog(stream, design, samples, "today");
    return stream.str();
}

/// Complaints come in front of the table.
std::string exportOf(const Design& design, const SampleStore& samples)
{
    std::ostringstream stream;
    writeExport(stream, design, samples, "today", [&stream](const std::string& text) { stream << text; });
    return stream.str();
}

DataLog read(const std::string& text)
{
    std::istringstream stream(text);
    return readLog(stream);
}

TEST(DataLogTest, WritesBlocksOfTheEventsThatHaveSamplesAndReadsThem)
{
    Design design = designOf({{"010C", "RPM", 5, 1, 0}, {"010D", "Speed", 7, 2, -1}, {"0105", "", 3, 0, 0}});
    design.extraCommands = "ATH1";
    design.sampleSpeed = std::chrono::milliseconds(102);
    EXPECT_EQ(logOf(design, storeOf(design, {})), head + " 0 \r\n");
    const std::string log =
        logOf(design, storeOf(design, {{1, 40, 0}, {0, 6904, 1}, {0, -1, 125}, {1, 0, 125}}));
    EXPECT_EQ(log, head + " 6 \r\n##1\r\n1,6904\r\n125,-1\r\n##2\r\n0,40\r\n125,0\r\n");

    const DataLog again = read(log);
    EXPECT_EQ(again.firstStart, "today");
    EXPECT_EQ(again.samples.events()[2].header, EventTotals::none);
    EXPECT_EQ(logOf(again.design, again.samples), log);
    EXPECT_TRUE(read(head + "0\r\n").samples.isEmpty()) << "the count's blanks are trimmed";
}

TEST(DataLogTest, SpreadsTheSamplesOfASecondAndPartsThemWherePollingWasStopped)
{
    const DataLog log =
        read(head + " 9 \r\n##1\r\n3,1\r\n4,1\r\n4,1\r\n4,1\r\n15,1\r\n##2\r\n3,1\r\n4,1\r\n");
    std::string seen;
    for (std::size_t i = 0; i < log.samples.size(); ++i) {
        const SampleRecord& record = log.samples[i];
        if (!record.isHeader())
            seen += (record.isFirst ? "|" : " ") + std::to_string(record.event) + "@" +
                    std::to_string(std::lround(record.seconds() * 1000));
    }
    EXPECT_EQ(seen, "|0@3000|1@3000 0@4000 0@4333 1@4000 0@4666|0@15000");
}

TEST(DataLogTest, RefusesWhatIsNoWholeLog)
{
    const std::string block = head + " 3 \r\n##2\r\n";
    const std::pair<std::string, const char*> rows[] = {
        {"Run\r\n|-1\r\n0105|x|1|1|0|0|0\r\n", "line 3: this is no event"},
        {head + " -1 \r\n", "line 8: this is no number"},
        {head + " 9999999999 \r\n", "line 8: this is no number"},
        {head + " 1 \r\n1,1\r\n", "line 9: this sample belongs to no event"},
        {block + "1,1\r\n2,2\r\n3,3\r\n", "line 12: there are more records than the 3"},
        {block + "1,2147483648\r\n", "line 10: this is no sample"},
        {block + "1,5.5\r\n", "line 10: this is no sample"},
        {block + "##3\r\n", "line 10: the block before has no samples"},
        {block + "1,1\r\n##3\r\n", "line 12: the file ends"},
    };
    for (const auto& [text, why] : rows) {
        const std::string refusal = failureOf<FileError>([&text = text] { read(text); });
        EXPECT_NE(refusal.find(why), std::string::npos) << text << refusal;
    }
    const std::string whole = block + "0,20\r\n125,6904\r\n";
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_THROW(read(whole.substr(0, length)), FileError) << "cut after " << length;
    EXPECT_EQ(read(whole).samples.size(), 3U);
}

/// Whatever a formula gives comes back as it was.
TEST(DataLogTest, KeepsTheValuesOfParametersToTheLastDigit)
{
    const Design design = designOf({{.code = "221940", .conversion = 10000, .frequency = 1}});
    const std::vector<double> values{0.1, -1.0 / 3, 9007199254740993.0, 1e17, -1e300, 5e-324, 1726};
    SampleStore samples = storeOf(design, {});
    for (const double value : values)
        samples.add(0, value, {1});
    const std::string text = logOf(design, samples);
    EXPECT_TRUE(text.ends_with("1,1726\r\n"));
    const DataLog log = read(text);
    for (std::size_t i = 0; i < values.size(); ++i)
        EXPECT_EQ(log.samples[static_cast<std::int32_t>(i + 1)].value, values[i]);
    for (const char* value : {"1e3", "nan", "inf", "1e999", "1726.0", "0x10", "1,5"})
        EXPECT_THROW(read(std::string(text).replace(text.rfind(",") + 1, 4, value)), FileError) << value;
}

TEST(DataLogTest, FindsTheOrderOfARunAgain)
{
    const Design design = designOf({{.frequency = 10, .offset = 3},
                                    {.frequency = 3, .offset = 1},
                                    {.frequency = 2000000000},
                                    {.frequency = 7, .offset = -5}});
    SampleStore samples = storeOf(design, {});
    PollPlan plan(design);
    Turn turn{.loop = 0, .event = 0};
    for (std::int32_t request = 0; request < 400; ++request, turn = plan.next(turn)) {
        if (request < 200 || request % 60 < 45) // then the replies are bad
            samples.add(turn.event, request, {request < 200 ? request / 7 : request});
    }
    EXPECT_EQ(exportOf(design, read(logOf(design, samples)).samples), exportOf(design, samples));
}

TEST(DataExportTest, ARowPerLoop)
{
    const auto events = [](std::int32_t speed, std::int32_t coolant) {
        return designOf({{"010D", "Vehicle Speed", speed, 1, 0}, {"0105", "Coolant", coolant, 4, 0}});
    };
    const Design design = events(7, 3);
    const std::string top = "Car today\r\n \r\nSecond(s)\tVehicle Speed(mph)\tCoolant(C)\r\n";
    EXPECT_EQ(exportOf(design, storeOf(design, {})), top + "0\t\t\r\n");
    SampleStore samples =
        storeOf(design, {{0, 90, 1}, {1, 30, 2}, {0, 0, 2}, {0, 100, 3}, {1, 40, 5}, {1, 41, 6}});
    EXPECT_EQ(exportOf(design, samples), top + "2\t55.935\t-10\r\n2\t0\t\r\n5\t62.15\t0\r\n6\t\t1\r\n")
        << "of the time of its last sample, and with no event twice";
    samples.add(0, 2147483647, {7}); // too large for some units, while others have no value
    EXPECT_TRUE(exportOf(events(18, 99), samples).ends_with("\r\n5\t300\t\r\n7\tOverflow\t\r\n"));
    const std::string some = exportOf(designOf({{.conversion = 18}}), samples);
    EXPECT_TRUE(some.starts_with("data error - can't find 3 tmpLog 2\r\ntmpLog: 1 4\r\n")) << some;
    EXPECT_TRUE(some.ends_with("\r\n3\t300\r\n7\tOverflow\r\n")) << some;
}

} // namespace
} // namespace zint
