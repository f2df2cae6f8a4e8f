#include "catalogue/chooser.h"
#include "catalogue/conversion.h"
#include "catalogue/design.h"
#include "catalogue/designFile.h"
#include "catalogue/pidCatalogue.h"
#include "shared/runTimeError.h"
#include "support/temporaryFolder.h"

#include <gtest/gtest.h>

#include <sstream>

namespace zint {
namespace {

TEST(DesignTest, DefaultPollsEveryReadableParameterInEveryTenthPass)
{
    Design design{.events = {{.code = "0100"}}, .extraCommands = "ATH1"}; // what was there goes
    design.places.fill({4, 5});
    design.sampleSpeed.reset(); // belongs to the adapter and stays
    loadDefaultDesign(design);
    std::ostringstream saved;
    writeDesign(saved, design);
    EXPECT_EQ(saved.str(), contents(ZINT_DATA_FOLDER "/../tests/catalogue/default.obc"));
    EXPECT_EQ(design.polledCount(), 22U);
    EXPECT_EQ(Design().sampleSpeed, std::chrono::milliseconds(200));
}

TEST(ChooserTest, ReadsTheDigitsBeforeTheFirstMark)
{
    std::string frequencies;
    for (const std::string_view choice : PollChoices)
        frequencies += std::to_string(chooserNumber(choice)) + " ";
    EXPECT_EQ(frequencies, "0 1 2 3 4 5 15 90 180 270 360 540 900 1800 ");
    EXPECT_EQ(PollChoices[6], "  15>about 5s");
    EXPECT_EQ(chooserText(13, ConversionTable[13].name), "13> --undef");
    EXPECT_EQ(chooserNumber("7>8>9"), 7);
    for (const char* const text : {"", "15", ">name", "abc>5"})
        EXPECT_EQ(chooserNumber(text), 0) << text;
    EXPECT_THROW(chooserNumber("99999999999>x"), RunTimeError);
}

} // namespace
} // namespace zint
