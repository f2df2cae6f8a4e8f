#include "codes/readiness.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

/// One letter per monitor: o "Test OK", i "Test Incomplete", u "Test Unsupported", e "input error".
std::string inLetters(std::string_view reply)
{
    std::string letters;
    for (const std::string& text : readinessReport(reply)) {
        if (text.ends_with(" Test OK"))
            letters += 'o';
        else if (text.ends_with(" Test Incomplete"))
            letters += 'i';
        else if (text.ends_with(" Test Unsupported"))
            letters += 'u';
        else if (text.ends_with(" input error"))
            letters += 'e';
        else
            ADD_FAILURE() << text;
    }
    return letters;
}

TEST(ReadinessTest, NamesTheMonitorsInTheirOrder)
{
    const ReadinessTexts expected = {"Misfire Test OK",
                                     "Fuel System Test OK",
                                     "Component Test Incomplete",
                                     "Catalyst Test OK",
                                     "Heated Catalyst Test Unsupported",
                                     "Evaporative System Test Incomplete",
                                     "Secondary Air Test Unsupported",
                                     "A/C Refrigerant Test Unsupported",
                                     "Oxygen Sensor Test OK",
                                     "Oxygen Heater Test OK",
                                     "EGR System Test Unsupported"};
    EXPECT_EQ(readinessReport("41 01 82 47 65 04 \r\r>"), expected);
}

TEST(ReadinessTest, TellsHowFarEachTestIs)
{
    const struct {
        const char* name;
        std::string_view reply;
        std::string_view letters;
    } rows[] = {
        {"usual set, all done", "41 01 00 07 65 00 \r\r>", "oooououuoou"},
        {"nothing supported is an input error", "41 01 00 00 00 00 \r\r>", "eeeeeeeeeee"},
        {"all supported and done", "41 01 00 07 FF 00 \r\r>", "ooooooooooo"},
        {"all supported and incomplete", "41 01 00 77 FF FF \r\r>", "iiiiiiiiiii"},
        {"incomplete without support", "41 01 00 70 00 FF \r\r>", "uuuuuuuuuuu"},
        {"only bit 3 and the high bit", "41 01 00 88 00 01 \r\r>", "uuuuuuuuuuu"},
        {"each bit of its own: misfire", "41 01 00 11 01 00 \r\r>", "iuuouuuuuuu"},
        {"each bit of its own: fuel", "41 01 00 22 02 00 \r\r>", "uiuuouuuuuu"},
        {"each bit of its own: component", "41 01 00 44 04 00 \r\r>", "uuiuuouuuuu"},
        {"each bit of its own: secondary air", "41 01 00 01 08 08 \r\r>", "ouuuuuiuuuu"},
        {"each bit of its own: A/C", "41 01 00 01 10 10 \r\r>", "ouuuuuuiuuu"},
        {"each bit of its own: oxygen sensor", "41 01 00 01 20 20 \r\r>", "ouuuuuuuiuu"},
        {"each bit of its own: oxygen heater", "41 01 00 01 40 40 \r\r>", "ouuuuuuuuiu"},
        {"each bit of its own: EGR", "41 01 00 01 80 80 \r\r>", "ouuuuuuuuui"},
        {"byte B garbled", "41 01 00 0? 65 00 \r\r>", "eeeououuoou"},
        {"byte C garbled", "41 01 00 07 G5 00 \r\r>", "oooeeeeeeee"},
        {"byte D garbled", "41 01 00 07 65 <0 \r\r>", "oooeeeeeeee"},
        {"byte D missing", "41 01 00 07 65 \r\r>", "oooeeeeeeee"},
        {"ends behind byte A", "41 01 00 \r\r>", "eeeeeeeeeee"},
        {"nothing", "", "eeeeeeeeeee"},
        {"digits without blanks shift", "41 01 00076500\r\r>", "uiieeeeeeee"},
        {"lower case is understood", "41 01 00 07 ff 00 \r\r>", "ooooooooooo"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(inLetters(row.reply), row.letters) << row.name;
}

TEST(ReadinessTest, ShowsThePluralUntilTheFirstReport)
{
    const ReadinessTexts initial = initialReadiness();
    EXPECT_EQ(initial[0], "Misfire");
    EXPECT_EQ(initial[2], "Components");
    EXPECT_EQ(initial[10], "EGR System");
}

} // namespace
} // namespace zint
