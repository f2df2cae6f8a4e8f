#include "catalogue/chooser.h"
#include "catalogue/pidCatalogue.h"
#include "shared/runTimeError.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

TEST(ChooserTest, WritesNumberAndName)
{
    EXPECT_EQ(chooserText(3, ConversionTable[3].name), "3>Celsius");
    EXPECT_EQ(chooserText(13, ConversionTable[13].name), "13> --undef");
}

TEST(ChooserTest, ReadsTheDigitsBeforeTheFirstMark)
{
    const struct {
        std::string_view text;
        std::int32_t number;
    } rows[] = {
        {"  15>about 5s", 15},
        {"1800>about 10min", 1800},
        {"3>Celsius", 3},
        {"15", 0},
        {"", 0},
        {">name", 0},
        {"abc>5", 0},
        {"7>8>9", 7},
    };
    for (const auto& row : rows)
        EXPECT_EQ(chooserNumber(row.text), row.number) << '"' << row.text << '"';
    EXPECT_THROW(chooserNumber("99999999999>x"), RunTimeError);
}

TEST(ChooserTest, ReadsBackWhatItOffers)
{
    constexpr std::int32_t frequencies[] = {0, 1, 2, 3, 4, 5, 15, 90, 180, 270, 360, 540, 900, 1800};
    for (std::size_t i = 0; i < PollChoices.size(); ++i)
        EXPECT_EQ(chooserNumber(PollChoices[i]), frequencies[i]) << PollChoices[i];
    for (std::int32_t code = 0; code < static_cast<std::int32_t>(ConversionTable.size()); ++code)
        EXPECT_EQ(chooserNumber(chooserText(code, ConversionTable[static_cast<std::size_t>(code)].name)),
                  code);
}

} // namespace
} // namespace zint
