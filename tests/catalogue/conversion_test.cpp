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
    constexpr std::int32_t rows[][2] = {{1, 255}, {1, 128}, {2, 128},     {3, 0},       {4, 3},   {5, 8000},
                                        {5, -5},  {7, 90},  {15, 0x5A80}, {16, 0x5A80}, {16, -1}, {17, 6904},
                                        {20, 0},  {20, -1}, {24, 7}}; // conversion, raw value
    std::string atLimits;
    for (const auto& [conversion, raw] : rows)
        atLimits += displayText(conversion, raw) + "|";
    EXPECT_EQ(atLimits, "100%|50.19%|0%|-40C|-34.6F|2000rpm|-1rpm|55.935mph|0.45v|50.19%|-0.39%|69.04gm/sec|"
                        "&H0 |&HFFFFFFFF |0.696903850500508gal/hour|");
}

TEST(ConversionTest, AnOverflowIsAnErrorAndNeverWraps)
{
    constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max();
    for (const auto& [conversion, raw] :
         {std::pair{1, largest}, {2, -largest}, {3, -largest}, {4, -largest}, {18, largest}})
        EXPECT_EQ(failureOf<RunTimeError>([&] { convert(conversion, raw); }), "Overflow") << conversion;
    for (std::int32_t conversion = 0; conversion < 25; ++conversion)
        EXPECT_NO_THROW(convert(conversion, 0xFFFF)) << "two data bytes always fit";
}

} // namespace
} // namespace zint
