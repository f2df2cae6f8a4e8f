#include "catalogue/conversion.h"
#include "shared/runTimeError.h"
#include "support/failure.h"

#include <gtest/gtest.h>

#include <limits>

namespace zint {
namespace {

TEST(ConversionTest, ShowsValueAndUnit)
{
    std::string ofAHundred;
    for (std::int32_t conversion = -1; conversion <= 25; ++conversion)
        ofAHundred += displayText(conversion, 100) + "|";
    EXPECT_EQ(ofAHundred,
              "|100 ? ?|39.21%|-21.875%|60C|140F|25rpm|100kph|62.15mph|27.778m/s|100kPa|750Torr|14.5psi|"
              "29.53inHg||-14Deg|0v|39.21%|1gm/sec|300kPaG|43.5psiG|&H64 |A:?????? B:?????? |"
              "14.2gm/sec|10.468524ml/sec|9.9557692928644gal/hour||");
    struct Row {
        std::int32_t conversion;
        std::int32_t raw;
        const char* shown;
    };
    for (const Row& row : {Row{1, 255, "100%"}, Row{1, 128, "50.19%"}, Row{2, 128, "0%"}, Row{3, 0, "-40C"},
                           Row{4, 3, "-34.6F"}, Row{5, 8000, "2000rpm"}, Row{5, -5, "-1rpm"},
                           Row{7, 90, "55.935mph"}, Row{15, 0x5A80, "0.45v"}, Row{16, 0x5A80, "50.19%"},
                           Row{16, -1, "-0.39%"}, Row{17, 6904, "69.04gm/sec"}, Row{20, 0, "&H0 "},
                           Row{20, -1, "&HFFFFFFFF "}, Row{24, 7, "0.696903850500508gal/hour"}})
        EXPECT_EQ(displayText(row.conversion, row.raw), row.shown) << row.conversion << " of " << row.raw;
}

TEST(ConversionTest, AnOverflowIsAnErrorAndNeverWraps)
{
    constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t smallest = std::numeric_limits<std::int32_t>::min();
    for (const auto& [conversion, raw] :
         {std::pair{1, largest}, {2, smallest}, {3, smallest}, {4, smallest}, {18, largest}})
        EXPECT_EQ(failureOf<RunTimeError>([&] { convert(conversion, raw); }), "Overflow") << conversion;
    for (std::int32_t conversion = 0; conversion < 25; ++conversion)
        EXPECT_NO_THROW(convert(conversion, 0xFFFF)) << "two data bytes always fit";
}

TEST(ConversionTest, TellsNumbersForDrawing)
{
    EXPECT_DOUBLE_EQ(convertedNumber(4, 3).value_or(0), -34.6);
    EXPECT_DOUBLE_EQ(convertedNumber(5, 8000).value_or(0), 2000);
    for (const std::int32_t conversion : {13, 21, 25, -1})
        EXPECT_FALSE(convertedNumber(conversion, 1)) << conversion;
}

} // namespace
} // namespace zint
