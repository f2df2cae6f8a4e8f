#include "report/vehicleReport.h"
#include "shared/fileError.h"
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
    enum class KeepResult { works, off, fails } keepResult = KeepResult::works;
    int kept = 0;
    VehicleReport report{
        {{adapter, {}, timer, &silence}, clock, prompts, [this](const VehicleFacts& /*facts*/) {
             if (keepResult == KeepResult::fails)
                 throw FileError("disk full");
             kept += keepResult == KeepResult::works ? 1 : 0;
             return keepResult == KeepResult::works;
         }}};

    /// Presses the button, and lets the adapter answer up to the first request.
    void begin(const std::function<void()>& press)
    {
        adapter.expect("ATI\r").answer("ATI\rELM327 v1.5\r\r>");
        for (const char* command :
             {"ATE0", "ATWS", "ATE0", "ATL0", "ATH1", "ATS0", "ATAL", "ATAT1", "AT@1", "ATRV"})
            adapter.expect(command + std::string("\r")).answer("OK\r\r>");
        press();
    }

    void begin()
    {
        begin([this] { report.pressReadReport(true); });
    }

    void expectConnection()
    {
        adapter.expect("0100\r").answer("7E806410080000000\r\r>");
        adapter.expect("ATDPN\r").answer("A6\r\r>");
    }

    void stop()
    {
        adapter.play();
        adapter.expect("ATD\r");
        report.pressReadReport();
    }

    /// A report that is stopped when one control unit is known.
    void readOneUnit()
    {
        begin();
        expectConnection();
        adapter.expect("0101\r");
        stop();
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

TEST_F(VehicleReportTest, ClearsOnlyWhenItsUserAgreesAndKnowsWhetherACopyIsKept)
{
    report.pressClearCodes(); // nothing was read
    readOneUnit();
    prompts.answer = false;
    report.pressClearCodes();
    EXPECT_NE(prompts.question.find("freeze frame"), std::string::npos);
    EXPECT_NE(prompts.question.find("A copy of the report that you see is kept."), std::string::npos);
    EXPECT_FALSE(report.isRunning());
    EXPECT_EQ(kept, 1) << "once";
    const std::pair<KeepResult, const char*> rows[] = {
        {KeepResult::off, "NO COPY of the report that you see is kept: keeping reports is switched off."},
        {KeepResult::fails, "NO COPY of the report that you see is kept: disk full"},
        {KeepResult::works, "A copy of the report that you see is kept."},
    };
    keepResult = KeepResult::off;
    readOneUnit();
    for (const auto& [result, text] : rows) {
        keepResult = result;
        prompts.answer = false;
        report.pressClearCodes();
        EXPECT_NE(prompts.question.find(text), std::string::npos) << prompts.question;
    }
}

TEST_F(VehicleReportTest, LeavesTheFormerReportWhereAnotherCantBegin)
{
    readOneUnit();
    const std::string headline = report.panel().headline;
    const std::string failure = report.failure();
    adapter.openError = CommError(2, "No such file or directory");
    for (const bool clears : {false, true}) {
        prompts.answer = true;
        clears ? report.pressClearCodes() : report.pressReadReport();
        EXPECT_EQ(prompts.takeMessage(),
                  std::string(clears ? "Nothing was cleared." : "Nothing was read anew.") +
                      "\r\n\r\ncom1 - Comm init error: 2: No such file or directory");
        EXPECT_EQ(report.panel().headline, headline);
        EXPECT_EQ(report.failure(), failure);
        EXPECT_EQ(report.facts().units.size(), 1U);
        EXPECT_TRUE(report.panel().clearCodes.enabled && report.clearedLines().empty());
    }
}

TEST_F(VehicleReportTest, TellsNoMoreOfAClearingThanIsKnown)
{
    struct Row {
        const char* sent;   ///< last, before the user stops
        const char* answer; ///< to 04
        const char* told;
    };
    const Row rows[] = {
        {"ATSTFF", "", "Nothing was cleared"},
        {"04", "", "It is not known whether the codes are cleared"},
        {"ATST32", "7E80144\r\r>", "7E8 has cleared its codes"},
        {"ATST32", "7E8037F0422\r\r>", "7E8 has refused to clear: refused for now: conditions"},
        {"ATST32", "7E8037F0478\r\r>", "7E8 has begun to answer, but has not told"},
        {"ATST32", "NO DATA\r\r>", "7E8 has not answered to the clearing"},
    };
    for (const auto& [sent, answer, told] : rows) {
        SCOPED_TRACE(told);
        readOneUnit();
        prompts.answer = true;
        begin([this] { report.pressClearCodes(); });
        expectConnection();
        adapter.expect("ATAT0\r").answer("OK\r\r>");
        for (const std::string command : {"ATSTFF", "04", "ATST32"}) {
            auto& step = adapter.expect(command + "\r");
            if (command == sent)
                break;
            step.answer(command == "04" ? answer : "OK\r\r>");
        }
        stop();
        ASSERT_EQ(report.clearedLines().size(), 1U) << "nothing is compared that was not read";
        EXPECT_TRUE(report.clearedLines().front().starts_with(told)) << report.clearedLines().front();
    }
}

} // namespace
} // namespace zint
