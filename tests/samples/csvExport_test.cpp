#include "samples/sampleLine.h"
#include "support/designOf.h"

#include <gtest/gtest.h>

#include <sstream>

namespace zint {
namespace {

struct CsvSample {
    std::size_t event;
    std::int32_t value;
    SampleTime time;
};

std::string csvOf(const std::vector<DesignEntry>& events, const std::vector<CsvSample>& samples,
                  Decimals decimals)
{
    const Design design = designOf(events);
    SampleStore store;
    store.reset(design);
    for (const CsvSample& sample : samples)
        store.add(sample.event, sample.value, sample.time);
    std::ostringstream stream;
    writeCsv(stream, design, store, decimals, [&stream](const std::string& text) { stream << text; });
    return stream.str();
}

TEST(CsvExportTest, HeadsAndRows)
{
    constexpr Decimals point = Decimals::point;
    constexpr Decimals comma = Decimals::comma;
    const std::vector<DesignEntry> speeds{{.description = "Speed", .conversion = 7},
                                          {.description = "Speed", .conversion = 7}};
    const std::vector<CsvSample> drive{
        {0, 0, {0, 7}}, {1, 90, {0, 70}}, {1, 100, {61, 0}}, {1, 1, {60, 999}}};
    const struct {
        std::vector<DesignEntry> events;
        std::vector<CsvSample> samples;
        Decimals decimals;
        const char* csv;
    } rows[] = {
        {speeds, {}, point, "Time (s),Speed (mph),Speed (mph) 2\r\n"},
        {speeds, drive, point,
         "Time (s),Speed (mph),Speed (mph) 2\r\n0.070,0,55.935\r\n61.000,,62.15\r\n61.000,,0.6215\r\n"},
        {speeds, drive, comma,
         "Time (s);Speed (mph);Speed (mph) 2\r\n0,070;0;55,935\r\n61,000;;62,15\r\n61,000;;0,6215\r\n"},
        {{{.code = "011C", .conversion = 20},
          {.description = " 2\" pipe"},
          {.description = "Fuel, A", .conversion = 21}},
         {{0, 8000, {1}}, {1, -5, {1}}, {2, 0, {1}}},
         point,
         "Time (s),011C,\" 2\"\" pipe (?)\",\"Fuel, A\"\r\n1.000,&H1F40,-5,A:?????? B:??????\r\n"},
        {{{.description = "Öl", .conversion = 18}, {.description = "None", .conversion = 99}},
         {{0, 2147483647, {0, 1}}, {1, 1, {0, 1}}},
         point,
         "\xEF\xBB\xBFTime (s),Öl (kPaG),None\r\n0.001,Overflow,\r\n"},
    };
    for (const auto& [events, samples, decimals, csv] : rows)
        EXPECT_EQ(csvOf(events, samples, decimals), csv);
}

TEST(SampleLineTest, TellsEachKindOfValue)
{
    struct Row {
        const char* code;
        std::int32_t conversion;
        double value;
        const char* csv;
        const char* json;
    };
    const Row rows[] = {
        {"010D", 7, 90, "55,935;mph", R"(55.935,"unit":"mph")"},
        {"0103", 21, 1, "A:?????? B:??????;", R"(null,"text":"A:?????? B:??????","unit":"")"},
        {"010C", 5, 2.5, "Overflow;rpm", R"(null,"text":"Overflow","unit":"rpm")"},
        {"010C", 1120, 812.5, "812,5;rpm", R"(812.5,"unit":"rpm")"},
        {"0105", 5050, 100, "212;°F", R"(212,"unit":"°F")"},
        {"0103", 1030, 2, "closed loop;", R"(2,"text":"closed loop","unit":"")"},
        {"221940", 10000, 1234.5678, "1234,57;", R"(1234.57,"unit":"")"},
        {"221940", 10000, -0.25, "-0,25;", R"(-0.25,"unit":"")"},
    };
    for (const auto& [code, conversion, value, csv, json] : rows) {
        const DesignEntry event{.code = code, .description = "a;b", .conversion = conversion};
        EXPECT_EQ(csvSampleLine(event, value, {1, 70}, Decimals::comma),
                  "1,070;\"a;b\";" + std::string(csv) + "\n");
        EXPECT_EQ(jsonSampleLine(event, value, {1, 70}), "{\"time\":1.070,\"code\":\"" + std::string(code) +
                                                             "\",\"name\":\"a;b\",\"value\":" + json + "}\n");
    }
}

} // namespace
} // namespace zint
