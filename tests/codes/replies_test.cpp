#include "codes/codesReport.h"
#include "codes/readiness.h"
#include "codes/troubleCodes.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

using Codes = std::vector<std::string>;

TEST(TroubleCodesTest, ReadsTheFirstLineOfTheReply)
{
    const Codes three = {"P0133", "P0301", "U0123"};
    const struct {
        const char* name;
        std::string_view reply;
        Codes codes;
    } rows[] = {
        {"three codes", "43 01 33 03 01 C1 23 \r\r>", three},
        {"only the first digit is 0", "43 00 01 00 10 01 00 \r\r>", {"P0001", "P0010", "P0100"}},
        {"a second line falls between the steps", "43 01 33 03 01 C1 23 \r43 04 20 00 00 00 00 \r>", three},
        {"lower case is no digit", "43 c1 23 01 33 00 00 \r\r>", {"P0133"}},
        {"garbage at a code's beginning", "43 ?1 33 03 01 00 00 \r\r>", {"P0301"}},
        {"garbage inside a code is copied", "43 0? 3< 00 00 00 00 \r\r>", {"P0?3<"}},
        {"CAN, the number of codes first", "43 02 01 33 03 01 \r\r>", {"P0201", "P3303", "P01\r\r"}},
        {"CAN, no codes", "43 00 \r\r>", {"P00\r\r"}},
        {"nothing answered", "NO DATA\r\r>", {"U1AA\r"}},
        {"empty", "", {}},
        {"ends with the first digit", "43 0", {"P0"}},
        {"ends inside the second byte", "43 01 3", {"P013"}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(storedCodes(row.reply), row.codes) << row.name;

    std::string prefixes;
    for (const char digit : std::string_view("0123456789ABCDEF"))
        prefixes += storedCodes(std::string("43 ") + digit + "1 23 \r\r>").at(0).substr(0, 2);
    EXPECT_EQ(prefixes, "P0P1P2P3C0C1C2C3B0B1B2B3U0U1U2U3");
}

/// The first letter of each monitor's result: OK, Incomplete, Unsupported or input error.
std::string inLetters(std::string_view reply)
{
    std::string letters;
    for (const std::string& text : readinessReport(reply)) {
        const auto test = text.find(" Test ");
        letters += test == std::string::npos ? text.at(text.find(" input error") + 1) : text.at(test + 6);
    }
    return letters;
}

TEST(ReadinessTest, NamesTheMonitorsInTheirOrder)
{
    EXPECT_EQ(readinessReport("41 01 82 47 65 04 \r\r>"),
              (ReadinessTexts{"Misfire Test OK", "Fuel System Test OK", "Component Test Incomplete", //
                              "Catalyst Test OK", "Heated Catalyst Test Unsupported",
                              "Evaporative System Test Incomplete", "Secondary Air Test Unsupported",
                              "A/C Refrigerant Test Unsupported", "Oxygen Sensor Test OK",
                              "Oxygen Heater Test OK", "EGR System Test Unsupported"}));
    EXPECT_EQ(readinessReport("")[0], "Misfire input error");
    EXPECT_EQ(initialReadiness()[0], "Misfire");
    EXPECT_EQ(initialReadiness()[2], "Components") << "the plural stands until the first report";
}

TEST(ReadinessTest, TellsHowFarEachTestIs)
{
    const struct {
        const char* name;
        std::string_view reply;
        std::string_view letters;
    } rows[] = {
        {"nothing supported is an input error", "41 01 00 00 00 00 \r\r>", "iiiiiiiiiii"},
        {"all supported and incomplete", "41 01 00 77 FF FF \r\r>", "IIIIIIIIIII"},
        {"each bit of its own: misfire", "41 01 00 11 01 00 \r\r>", "IUUOUUUUUUU"},
        {"each bit of its own: fuel", "41 01 00 22 02 00 \r\r>", "UIUUOUUUUUU"},
        {"each bit of its own: component", "41 01 00 44 04 00 \r\r>", "UUIUUOUUUUU"},
        {"each bit of its own: secondary air", "41 01 00 01 08 08 \r\r>", "OUUUUUIUUUU"},
        {"each bit of its own: A/C", "41 01 00 01 10 10 \r\r>", "OUUUUUUIUUU"},
        {"each bit of its own: oxygen sensor", "41 01 00 01 20 20 \r\r>", "OUUUUUUUIUU"},
        {"each bit of its own: oxygen heater", "41 01 00 01 40 40 \r\r>", "OUUUUUUUUIU"},
        {"each bit of its own: EGR", "41 01 00 01 80 80 \r\r>", "OUUUUUUUUUI"},
        {"byte B garbled", "41 01 00 0? 65 00 \r\r>", "iiiOUOUUOOU"},
        {"byte C garbled", "41 01 00 07 G5 00 \r\r>", "OOOiiiiiiii"},
        {"byte D missing", "41 01 00 07 65 \r\r>", "OOOiiiiiiii"},
        {"nothing", "", "iiiiiiiiiii"},
        {"lower case is understood", "41 01 00 07 ff 00 \r\r>", "OOOOOOOOOOO"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(inLetters(row.reply), row.letters) << row.name;
}

TEST(CodesReportTest, TellsLightCodesAndReadiness)
{
    CodesPanel panel;
    panel.stateMIL = "Service Engine Soon Light is \r\nON";
    panel.diagCodeFrame = "Diagnostic (MIL) Codes: 5 code(s) reported";
    panel.codesOutput = "P0133 O2 sensor slow\r\nU0123\r\n";
    panel.readiness.fill("Test OK");
    std::string expected = "Service Engine Soon Light is ON\n\nDiagnostic (MIL) Codes: 5 code(s) reported\n"
                           "  P0133 O2 sensor slow\n  U0123\n"
                           "  (3 more: only the first line of the vehicle's answer is listed)\n\nReadiness\n";
    for (std::size_t i = 0; i < monitorCount; ++i)
        expected += "  Test OK\n";
    EXPECT_EQ(codesReport(panel, 5), expected);
    EXPECT_EQ(codesReport(panel, 2).find("more"), std::string::npos);

    panel.codesOutput = "No codes reported";
    EXPECT_NE(codesReport(panel, 0).find("\n  No codes reported\n\nReadiness\n"), std::string::npos);
}

} // namespace
} // namespace zint
