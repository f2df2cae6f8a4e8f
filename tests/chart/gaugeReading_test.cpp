#include "chart/gaugeReading.h"
#include "support/designOf.h"

#include <gtest/gtest.h>

#include <cmath>

namespace zint {
namespace {

std::string textOf(const GaugeReading& reading)
{
    std::string text = reading.figure + ' ' + reading.minimum + ".." + reading.maximum;
    if (reading.place)
        text += " at " + std::to_string(std::lround(*reading.place * 100));
    return text;
}

TEST(GaugeReaderTest, ReadsTheValueAndTheRangeOfTheNumbersThatCame)
{
    constexpr std::int32_t overflowing = 0x7FFFFFFF;
    const struct {
        std::int32_t conversion;
        std::vector<std::int32_t> samples;
        const char* reading;
    } cases[] = {
        {5, {}, "- .."},
        {5, {3000, 12000, 5250}, "1312 750..3000 at 25"},
        {3, {20, 40}, "0 -20..0 at 100"},
        {3, {125, 125}, "85 85..85 at 50"},
        {2, {127, 0}, "-100 -100..-0.78 at 0"},
        {17, {30012, 2349, 999, 1000, 9996}, "100 9.99..300 at 31"},
        {22, {400, 500}, "71.0 56.8..71.0 at 100"}, // always above what the store's minimum begins with
        {16, {0x0180, 0x02FF, 0x0310}, "6.27 6.27..100 at 0"}, // one byte of two
        {20, {0x1F40, 0x10}, "&H10 &H10..&H1F40 at 0"},
        {0, {7}, "7 7..7 at 50"},
        {18, {2, overflowing}, "Overflow 6..6"},
        {18, {overflowing, 2, 3}, "9 6..9 at 100"},
        {21, {1}, "A:?????? B:?????? .."},
    };
    for (const auto& [conversion, values, expected] : cases) {
        const Design design = designOf({{.code = "010C"}, {.code = "010D", .conversion = conversion}});
        SampleStore samples;
        samples.reset(design);
        GaugeReader reader(1, design.events[1]);
        for (const std::int32_t value : values) {
            samples.add(0, 77, {});
            samples.add(1, value, {});
            reader.read(samples);
        }
        EXPECT_EQ(textOf(reader.read(samples)), expected) << conversion;
        samples.addError(1);
        EXPECT_EQ(reader.read(samples).badReplies, 1);
    }
}

} // namespace
} // namespace zint
