#include "samples/csvExport.h"
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

} // namespace
} // namespace zint
