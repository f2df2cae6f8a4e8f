#include "codes/codesExchange.h"
#include "dtcdb/descriptionSource.h"
#include "report/reportText.h"
#include "report/vehicleReport.h"
#include "runner/poller.h"
#include "scanner/scanner.h"
#include "sim/simulatedPort.h"
#include "support/manualTime.h"
#include "support/scriptedPrompts.h"
#include "support/simulated.h"
#include "support/temporaryFolder.h"
#include "support/textBox.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

/// A vehicle behind an adapter with habits, and what a tool asks of its surroundings.
struct Rig {
    ManualTimer portTimer, timer, ticker;
    ManualClock clock;
    Vehicle vehicle;
    SimulatedPort port;
    AdapterLine line{port, {}, timer};
    ScriptedPrompts prompts;
    ProgramValues values;
    TemporaryFolder folder;

    explicit Rig(const SimulationOptions& options)
        : vehicle(options.vehicle), port(portTimer, clock, vehicle, options.adapter)
    {
    }

    /// Lets time pass until nothing is on its way.
    void play()
    {
        for (int ticks = 0; portTimer.enabled(); ++ticks) {
            ASSERT_LT(ticks, 100000) << "it never ends";
            clock.now += portTimer.interval;
            portTimer.tick();
        }
        EXPECT_FALSE(port.isOpen()) << "the tool waits for something that never comes";
    }
};

std::string codes(Rig& rig)
{
    const DtcDescriptionSource none({}, {});
    CodesExchange exchange({rig.line, rig.clock, none, rig.prompts, rig.values});
    exchange.pressGetCodes();
    rig.play();
    const std::string& list = exchange.panel().codesOutput; // on CAN it ends in what follows the codes
    return exchange.panel().stateMIL + "|" + list.substr(0, list.find('\r')) + "|" +
           rig.prompts.takeMessage();
}

/// Two parameters that never change, so that a value under its neighbour's name shows.
std::string poll(Rig& rig)
{
    const Design design{.events = {{.code = "011C", .frequency = 1}, {.code = "0133", .frequency = 1}}};
    KeptRuns kept{rig.folder.path(), [](auto) { return "today"; }};
    Poller poller(
        {rig.line, rig.ticker, rig.clock, rig.prompts, rig.values, kept, [](auto) { return "today"; }},
        design);
    poller.load();
    poller.setMaxLoops("3");
    poller.resetValues();
    poller.pressStart();
    rig.play();
    std::string values;
    for (const EventTotals& event : poller.samples().events())
        values += std::to_string(event.sampleCount) + " from " + std::to_string(event.minimum) + " to " +
                  std::to_string(event.maximum) + ", " + std::to_string(event.errorCount) + " errors|";
    return values + rig.prompts.takeMessage();
}

std::string scan(Rig& rig)
{
    TextBox box;
    Scanner scanner(
        {rig.line, rig.clock, rig.prompts, box, [](auto) { return std::string("today"); }, [] {}});
    scanner.type(&ScanParameters::pidStop, "3");
    scanner.pressScan();
    rig.play();
    return box.shown + rig.prompts.takeMessage();
}

std::string report(Rig& rig)
{
    VehicleReport report({rig.line, rig.clock, rig.prompts});
    report.pressReadReport(true);
    rig.play();
    const VehicleFacts& facts = report.facts();
    return report.failure() +
           reportText(headOf(facts, [](auto) { return "today"; }, {}), sectionsOf(facts, nullptr));
}

TEST(HabitsTest, EachToolReadsEachAdapter)
{
    constexpr std::pair<const char*, std::string (*)(Rig&)> tools[] = {
        {"codes", codes}, {"poll", poll}, {"scan", scan}, {"report", report}};
    for (const std::string protocol : {"protocol=iso9141", "protocol=can codes=P0133"}) {
        for (const auto& [name, use] : tools) {
            Rig wellBehaved(simulated(protocol));
            const std::string expected = use(wellBehaved);
            EXPECT_GT(expected.size(), 20U) << name;
            for (const char* habit :
                 {"latency=50", "line-feeds", "leading-line-end", "single-line-end",
                  "leading-line-end line-feeds", "after-prompt=\\r\\n", "after-prompt=\\r", "nul-bytes",
                  "greeting-prompt", "rubbish=\\0\\xFC", "pieces=1 piece-gap=1", "pieces=7 piece-gap=150",
                  "late-prompt=150", "late-defaults=200", "reset-time=800", "line-speed=9600"}) {
                for (const bool announces : {false, true}) {
                    SCOPED_TRACE(protocol + ", " + name + ", " + habit + (announces ? ", announces" : ""));
                    SimulationOptions withHabit = simulated(protocol + " " + habit);
                    withHabit.adapter.announcesConnection = announces;
                    Rig rig(withHabit);
                    EXPECT_EQ(use(rig), expected);
                }
            }
        }
    }
}

} // namespace
} // namespace zint
