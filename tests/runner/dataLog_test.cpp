#include "designer/designFile.h"
#include "runner/dataLog.h"
#include "shared/fileError.h"
#include "support/failure.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <sstream>
#include <vector>

namespace zint {
namespace {

constexpr const char* date = "2024-03-01 12:00:00";

Design designOf(const std::vector<DesignEntry>& events)
{
    Design design;
    design.title() = "Run";
    for (std::size_t n = 0; n < events.size(); ++n)
        design.entries.at(n + 1) = events[n];
    design.eventCount() = static_cast<std::int32_t>(events.size());
    return design;
}

Design threeEvents()
{
    Design design =
        designOf({{"010C", "Engine RPM", 5, 1, 0, 8, 9}, {"010D", "Speed", 7, 2, -1}, {"0105", "", 3, 0, 0}});
    design.extraCommands = "ATH1";
    design.sampleSpeed = 102;
    return design;
}

constexpr const char* head =
    "Run\r\nATH1|102\r\n010C|Engine RPM|5|1|0\r\n010D|Speed|7|2|-1\r\n0105||3|0|0\r\n"
    "EOP - end of Parms\r\n2024-03-01 12:00:00\r\n"; // seven lines

std::string logOf(const Design& design, const SampleStore& samples)
{
    std::ostringstream stream;
    writeLog(stream, design, samples, date);
    return stream.str();
}

std::string exportOf(const Design& design, const SampleStore& samples)
{
    std::ostringstream stream;
    writeExport(stream, design, samples, date, [](const std::string& text) { ADD_FAILURE() << text; });
    return stream.str();
}

DataLog read(const std::string& text)
{
    std::istringstream stream(text);
    return readLog(stream);
}

/// Why a log is refused.
std::string refusal(const std::string& text)
{
    return failureOf<FileError>([&] { read(text); });
}

void expectSameOrderAgain(const Design& design, const SampleStore& samples)
{
    EXPECT_EQ(exportOf(design, read(logOf(design, samples)).samples), exportOf(design, samples))
        << design.events()[0].code;
}

/// A run as the poller has it. @param time of the request of that number; -1 when its reply is bad
SampleStore run(const Design& design, int passes, const std::function<std::int32_t(int)>& time,
                const std::vector<int>& startsAfter = {0})
{
    SampleStore samples;
    samples.reset(design);
    int request = 0;
    const auto ask = [&](std::size_t event) {
        const std::int32_t now = time(request++);
        if (now >= 0)
            samples.add(event, 1000 + request, now);
    };
    for (int pass = 0; pass < passes; ++pass) {
        for (std::size_t event = 0; event < design.events().size(); ++event) {
            const bool starts = event == 0 && std::ranges::find(startsAfter, pass) != startsAfter.end();
            const DesignEntry& entry = design.events()[event];
            if (starts || (entry.frequency > 0 && isDue(entry, pass)))
                ask(event);
        }
    }
    return samples;
}

TEST(DataLogTest, WritesBlocksOfTheEventsThatHaveSamplesAndReadsThem)
{
    const Design design = threeEvents();
    SampleStore samples;
    samples.reset(design);
    EXPECT_EQ(logOf(design, samples), head + std::string(" 0 \r\n"));
    samples.add(1, 40, 0);
    EXPECT_EQ(logOf(design, samples), head + std::string(" 2 \r\n##2\r\n0,40\r\n"));
    samples.add(0, 6904, 1);
    samples.add(0, -1, 125);
    samples.add(1, 0, 125);
    const std::string log = logOf(design, samples);
    EXPECT_EQ(log, head + std::string(" 6 \r\n##1\r\n1,6904\r\n125,-1\r\n##2\r\n0,40\r\n125,0\r\n"));

    std::istringstream stream(log);
    EXPECT_EQ(readDesign(stream).eventCount(), 3) << "a log can be opened as a design";
    const DataLog again = read(log);
    EXPECT_EQ(again.firstStart, date);
    EXPECT_EQ(again.design.polledCount(), 2);
    EXPECT_EQ(again.samples.events()[1].sampleCount, 2);
    EXPECT_EQ(again.samples.events()[2].header, EventTotals::none);
    EXPECT_EQ(logOf(again.design, again.samples), log);
    EXPECT_TRUE(read(head + std::string("0\r\n")).samples.isEmpty()) << "the count's blanks are trimmed";
}

TEST(DataLogTest, RefusesWhatIsNoWholeLog)
{
    struct Row {
        std::string text;
        const char* why;
    };
    const std::string top = head;
    const std::string block = top + " 3 \r\n##2\r\n";
    for (const Row& row : {
             Row{"", "line 1: the file ends"},
             Row{"Run\r\nATH1\r\n", "line 2: these are no settings"},
             Row{"Run\r\n|fast\r\n", "line 2: Type mismatch"},
             Row{"Run\r\n|-1\r\n0105|x|1|1|0|0|0\r\n", "line 3: this is no event"},
             Row{"Run\r\n|-1\r\n0105|x|1|1\r\n", "line 3: this is no event"},
             Row{"Run\r\n|-1\r\n0105|x|1| 1|0\r\n", "line 3: this is no event"},
             Row{top + " 3\r\n##2\r\n1,1\r\n", "line 11: the file ends after 2 of 3"},
             Row{top + "many\r\n", "line 8: this is no number"},
             Row{top + " -1 \r\n", "line 8: this is no number"},
             Row{top + " 1 \r\n1,1\r\n", "line 9: this sample belongs to no event"},
             Row{block + "1,1\r\n2,2\r\n3,3\r\n", "line 12: there are more records than the 3"},
             Row{block + "1,1\r\n\r\n", "line 11: this is no sample"},
             Row{block + "1,\r\n", "line 10: this is no sample"},
             Row{block + "1,1,1\r\n", "line 10: this is no sample"},
             Row{block + "1,-0\r\n", "line 10: this is no sample"},
             Row{block + "1,2147483648\r\n", "line 10: this is no sample"},
             Row{block + "##3\r\n3,3\r\n", "line 10: the block before has no samples"},
             Row{block + "1,1\r\n##3\r\n", "line 12: the file ends"},
             Row{block + "1,1\r\n##2\r\n", "line 11: this is no event"},
             Row{top + " 3 \r\n##0\r\n", "line 9: this is no event"},
             Row{top + " 3 \r\n##4\r\n", "line 9: this is no event"},
         })
        EXPECT_NE(refusal(row.text).find(row.why), std::string::npos) << row.text << refusal(row.text);

    const std::string whole = top + " 5 \r\n##1\r\n0,10\r\n##2\r\n0,20\r\n125,6904\r\n";
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_THROW(read(whole.substr(0, length)), FileError) << "cut after " << length;
    EXPECT_EQ(refusal(whole), "no failure");
}

TEST(DataLogTest, FindsTheOrderOfARunAgain)
{
    const std::vector<std::vector<DesignEntry>> designs = {
        {{"a", "", 6, 1, 0}, {"b", "", 6, 1, 0}, {"c", "", 6, 4, 1}},
        {{"not due at first", "", 6, 10, 3}, {"b", "", 6, 3, 1}, {"c", "", 6, 10, 9}, {"d", "", 6, 7, -5}},
        {{"never due", "", 6, 0, 0}, {"b", "", 6, 2, 1}, {"c", "", 6, 3, 0}},
        {{"a", "", 6, 90, 0}, {"b", "", 6, 90, 45}},
    };
    for (const auto& events : designs) {
        const Design design = designOf(events);
        for (const int perSecond : {1, 7, 1000})
            expectSameOrderAgain(design, run(design, 200, [&](int request) { return request / perSecond; }));
    }

    // A second without replies of "a": its next samples come in the passes after that, not in the place of
    // lost ones.
    const Design two = designOf({{"a", "", 6, 1, 0}, {"b", "", 6, 1, 0}});
    expectSameOrderAgain(
        two, run(two, 8, [](int request) { return request == 4 || request == 6 ? -1 : request / 4; }));
    expectSameOrderAgain(two, run(two, 40, [](int request) { // the clock is set back
                             return request < 40 ? request / 2 : request / 2 - 15;
                         }));
}

TEST(DataLogTest, KeepsAllSamplesInTheOrderOfTheirTimesWhereRepliesWereBad)
{
    const Design design = designOf({{"a", "", 6, 1, 0},
                                    {"b", "", 6, 1, 0},
                                    {"c", "", 6, 10, 0},
                                    {"never due", "", 6, 0, 0},
                                    {"e", "", 6, 3, 2}});
    const auto badInBetween = [](int request) {
        return request % 7 == 0 || request / 50 == 3 ? -1 : request / 5;
    };
    SampleStore samples = run(design, 300, badInBetween, {0, 5, 100});
    samples.add(3, 1, 20); // as if it had been polled before the design was changed
    const std::string text = logOf(design, samples);
    const DataLog log = read(text);
    EXPECT_EQ(logOf(design, log.samples), text);
    std::int32_t time = 0;
    for (std::size_t index = 0; index < log.samples.size(); ++index) {
        if (log.samples[index].isHeader())
            continue;
        EXPECT_GE(log.samples[index].time, time) << index;
        time = log.samples[index].time;
    }
}

TEST(DataLogTest, PassesWithoutSamplesTakeNoTime)
{
    const Design design =
        designOf({{"a", "", 6, 1, 0}, {"b", "", 6, 2000000000, 1}, {"c", "", 6, 2147483647, 5}});
    SampleStore samples;
    samples.reset(design);
    for (std::int32_t time = 1; time < 10; ++time) {
        samples.add(2, 3, time * 10);
        samples.add(1, 2, time * 10 + 1);
        samples.add(0, 1, time * 10 + 2);
    }
    expectSameOrderAgain(design, samples);
}

} // namespace
} // namespace zint
