#include "catalogue/conversion.h"
#include "shared/runTimeError.h"
#include "support/failure.h"

#include <gtest/gtest.h>

#include <limits>

namespace zint {
namespace {

TEST(ConversionTest, ShowsValueAndUnit)
{
    struct Row {
        std::int32_t conversion;
        std::int32_t raw;
        const char* shown;
    };
    for (const Row& row : {
             Row{0, 123, "123 ? ?"},
             Row{1, 255, "100%"},
             Row{1, 128, "50.19%"},
             Row{2, 0, "-100%"},
             Row{2, 128, "0%"},
             Row{3, 0, "-40C"},
             Row{4, 0, "-40F"},
             Row{4, 3, "-34.6F"},
             Row{5, 8000, "2000rpm"},
             Row{5, -5, "-1rpm"},
             Row{6, 90, "90kph"},
             Row{7, 90, "55.935mph"},
             Row{8, 100, "27.778m/s"},
             Row{9, 101, "101kPa"},
             Row{10, 101, "757.5Torr"},
             Row{11, 100, "14.5psi"},
             Row{12, 100, "29.53inHg"},
             Row{13, 7, ""},
             Row{14, 100, "-14Deg"},
             Row{15, 0x5A80, "0.45v"},
             Row{16, 0x5A80, "50.19%"},
             Row{16, -1, "-0.39%"},
             Row{17, 6904, "69.04gm/sec"},
             Row{18, 100, "300kPaG"},
             Row{19, 100, "43.5psiG"},
             Row{20, 255, "&HFF "},
             Row{20, 0, "&H0 "},
             Row{20, -1, "&HFFFFFFFF "},
             Row{21, 9, "A:?????? B:?????? "},
             Row{22, 100, "14.2gm/sec"},
             Row{23, 100, "10.468524ml/sec"},
             Row{24, 7, "0.696903850500508gal/hour"},
             Row{25, 1, ""},
             Row{-1, 1, ""},
         })
        EXPECT_EQ(displayText(row.conversion, row.raw), row.shown) << row.conversion << " of " << row.raw;
}

TEST(ConversionTest, AnOverflowIsAnErrorAndNeverWraps)
{
    constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t smallest = std::numeric_limits<std::int32_t>::min();
    for (const auto& [conversion, raw] :
         {std::pair{1, largest}, {2, smallest}, {3, smallest}, {4, smallest}, {18, largest}}) {
        EXPECT_EQ(failureOf<RunTimeError>([&] { convert(conversion, raw); }), "Overflow") << conversion;
    }
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
