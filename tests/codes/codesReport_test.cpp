#include "codes/codesReport.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zint {
namespace {

CodesPanel panelOfALitVehicle()
{
    CodesPanel panel;
    panel.stateMIL = "Service Engine Soon Light is \r\nON";
    panel.diagCodeFrame = "Diagnostic (MIL) Codes: 2 code(s) reported";
    panel.codesOutput = "P0133 O2 sensor slow\r\nU0123\r\n";
    panel.readiness.fill("Misfire Test OK");
    return panel;
}

TEST(CodesReportTest, TellsLightCodesAndReadiness)
{
    const std::string report = codesReport(panelOfALitVehicle(), 2);
    const std::string start = "Service Engine Soon Light is ON\n\n"
                              "Diagnostic (MIL) Codes: 2 code(s) reported\n"
                              "  P0133 O2 sensor slow\n"
                              "  U0123\n"
                              "\nReadiness\n"
                              "  Misfire Test OK\n";
    EXPECT_EQ(report.substr(0, start.size()), start);
    EXPECT_EQ(std::count(report.begin(), report.end(), '\n'), 7 + 11);
    EXPECT_EQ(report.find('\r'), std::string::npos);
}

TEST(CodesReportTest, TellsThatTheVehicleStoresMoreCodesThanAreListed)
{
    const std::string report = codesReport(panelOfALitVehicle(), 5);
    EXPECT_NE(report.find("  (3 more: only the first line of the vehicle's answer is listed)\n"),
              std::string::npos)
        << report;
}

TEST(CodesReportTest, TellsThatThereAreNoCodes)
{
    CodesPanel panel;
    panel.stateMIL = "Service Engine Soon Light is \r\nOFF";
    panel.codesOutput = "No codes reported";
    const std::string report = codesReport(panel, 0);
    EXPECT_NE(report.find("Diagnostic (MIL) Codes\n  No codes reported\n\nReadiness\n"), std::string::npos)
        << report;
}

} // namespace
} // namespace zint
