#include "report/vehicleReport.h"
#include "support/manualTime.h"
#include "support/scriptedAdapter.h"
#include "support/scriptedPrompts.h"

namespace zint {
namespace {

struct VehicleReportTest : testing::Test {
    ScriptedAdapter adapter;
    ManualTimer timer, silence;
    ManualClock clock;
    ScriptedPrompts prompts;
    int kept = 0;
    VehicleReport report{
        {{adapter, {}, timer, &silence}, clock, prompts, [this](const VehicleFacts& /*facts*/) { ++kept; }}};

    /// Presses the button, and lets the adapter answer up to the first request.
    void begin()
    {
        adapter.expect("ATI\r").answer("ATI\rELM327 v1.5\r\r>");
        for (const char* command :
             {"ATE0", "ATWS", "ATE0", "ATL0", "ATH1", "ATS0", "ATAL", "ATAT1", "AT@1", "ATRV"})
            adapter.expect(command + std::string("\r")).answer("OK\r\r>");
        report.pressReadReport(true);
    }
};

TEST_F(VehicleReportTest, SetsUpGentlyAndKeepsWhatWasReadWhenItIsStopped)
{
    begin();
    EXPECT_EQ(report.panel().readReport.caption, "Stop");
    adapter.expect("0100\r").answer("7E8064100BE3FA813\r\r>");
    adapter.expect("ATDPN\r").answer("A6\r\r>");
    adapter.expect("0120\r");
    adapter.play();
    EXPECT_EQ(report.panel().statusBox, "com1 Connecting to the vehicle");
    adapter.expect("ATD\r");
    report.pressReadReport();
    EXPECT_FALSE(report.isRunning());
    EXPECT_TRUE(report.panel().readReport.caption == "Read Report" && report.panel().clearCodes.enabled);
    EXPECT_TRUE(report.failure().starts_with("The report was stopped"));
    EXPECT_EQ(report.facts().adapter + report.facts().units.front().first, "ELM327 v1.57E8");
    EXPECT_EQ(kept, 1) << "also what was stopped";
}

TEST_F(VehicleReportTest, TellsOfAnAdapterThatIsSilentOrVanishes)
{
    adapter.expect("ATI\r");
    report.pressReadReport();
    adapter.expect("ATD\r");
    timer.tick();
    EXPECT_EQ(prompts.takeMessage(), AdapterLink::notRespondingText);
    EXPECT_EQ(report.failure(), AdapterLink::notRespondingText);
    begin();
    adapter.expect("0100\r");
    adapter.play();
    adapter.vanish();
    EXPECT_EQ(report.failure(), "com1 - adapter disconnected");
    report.pressReadReport();
    EXPECT_TRUE(report.failure().starts_with("com1 - Comm init error: 2")) << report.failure();
    EXPECT_EQ(kept, 0);
}

TEST_F(VehicleReportTest, ClearsOnlyWhenItsUserAgrees)
{
    report.pressClearCodes(); // nothing was read
    begin();
    adapter.expect("0100\r").answer("7E806410080000000\r\r>");
    adapter.expect("ATDPN\r");
    adapter.play();
    adapter.expect("ATD\r");
    report.pressReadReport();
    prompts.answer = false;
    report.pressClearCodes();
    EXPECT_NE(prompts.question.find("freeze frame"), std::string::npos);
    EXPECT_FALSE(report.isRunning());
}

} // namespace
} // namespace zint
