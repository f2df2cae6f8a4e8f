#include "report/keptReports.h"
#include "report/reportComparison.h"
#include "report/reportHeadline.h"
#include "report/reportJson.h"
#include "report/reportPlan.h"
#include "report/reportText.h"
#include "shared/fileError.h"
#include "sim/simulatedAdapter.h"
#include "support/temporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace zint {
namespace {

using Texts = std::vector<std::string>;

/// A plan that is carried out on a simulated vehicle.
struct PlanRun {
    Vehicle vehicle;
    SimulatedAdapter adapter;
    ReportPlan plan;
    Texts commands;

    explicit PlanRun(const VehicleOptions& behind, const AdapterOptions& options = {},
                     ReportPlan::Scope scope = {})
        : vehicle(behind), adapter(vehicle, options), plan(scope)
    {
        SimulatedAdapter::Time now{0};
        plan.takeName("ELM327 v1.5\r\r>");
        while (const auto command = plan.next()) {
            commands.push_back(*command);
            adapter.receive(*command + "\r", now);
            std::string reply;
            while (const auto due = adapter.nextDue()) {
                now = std::max(now, *due);
                reply += adapter.take(now);
            }
            plan.take(reply);
        }
    }

    std::string text() const
    {
        const auto date = [](auto) { return std::string("today"); };
        return reportText(headOf(plan.facts(), date, plan.failure()), sectionsOf(plan.facts(), nullptr));
    }
};

/// What two reports differ in, and the headline.
std::string difference(const PlanRun& one, const PlanRun& other)
{
    std::string text = headlineOf(other.plan.facts());
    for (const std::string& line : comparisonLines(compare(one.plan.facts(), other.plan.facts())))
        text += "\n" + line;
    return text;
}

TEST(ReportPlanTest, ReadsTwoUnitsOnEachProtocolAndAsksNothingTwice)
{
    for (unsigned number = 1; number <= 9; ++number) {
        const auto protocol = static_cast<VehicleProtocol>(number);
        SCOPED_TRACE(protocolTraits(number).name);
        PlanRun run({.protocol = protocol, .units = 2});
        const VehicleFacts& facts = run.plan.facts();
        EXPECT_EQ(run.plan.failure(), "");
        EXPECT_TRUE(facts.isWhole);
        EXPECT_EQ(facts.units.size(), 2U) << run.text();
        EXPECT_EQ(static_cast<unsigned>(facts.protocol) - '0', number);
        const std::set<std::string> once(run.commands.begin(), run.commands.end());
        for (const std::string& command : once)
            EXPECT_LE(std::ranges::count(run.commands, command), command.starts_with("AT") ? 1 : 2)
                << command;
        EXPECT_EQ(codeCount(facts, CodeKind::stored), 4);
        EXPECT_EQ(codeCount(facts, CodeKind::permanent), isCan(facts.protocol) ? 1 : 0);
        const UnitReading& engine = facts.units.front().second;
        EXPECT_TRUE(engine.vin && engine.vin->size() == 17) << run.text();
        EXPECT_FALSE(engine.tests.empty()) << run.text();
        EXPECT_TRUE(engine.freezeFrame && !engine.freezeFrame->values.empty()) << run.text();
        EXPECT_GT(engine.values.size(), 15U);
        EXPECT_DOUBLE_EQ(run.plan.progress(), 100);
    }
}

TEST(ReportPlanTest, ReadsTheSameThroughHabitsAndFaults)
{
    const VehicleOptions vehicle{.protocol = VehicleProtocol::can, .units = 2};
    const PlanRun plain(vehicle);
    const AdapterOptions rows[] = {
        {.announcesConnection = true, .lineFeeds = true, .leadingLineEnd = true},
        {.refusedCommands = {"WS", "S0", "AL", "AT1", "@1", "RV"}},
        {.padding = 0xAA, .lengthDigit = true},
        {.interleavesUnits = true},
    };
    for (const AdapterOptions& options : rows)
        EXPECT_EQ(difference(plain, PlanRun(vehicle, options)), headlineOf(plain.plan.facts()));
}

TEST(ReportPlanTest, ClearsFirstAndTellsWhatHasChanged)
{
    const VehicleOptions vehicle{.protocol = VehicleProtocol::can};
    PlanRun before(vehicle);
    PlanRun after(vehicle, {}, {.isQuick = true, .clearsFirst = true});
    EXPECT_EQ(std::ranges::count(after.commands, "04"), 1);
    EXPECT_LT(after.commands.size(), before.commands.size());
    EXPECT_TRUE(after.plan.facts().units.front().second.cleared);
    EXPECT_TRUE(difference(before, after).starts_with("No codes stored")) << difference(before, after);
    EXPECT_NE(difference(before, after).find("\ngone: P0301 (stored, 7E8)\n"), std::string::npos);

    PlanRun refused({.protocol = VehicleProtocol::can, .refusesClearing = true}, {}, {.clearsFirst = true});
    EXPECT_EQ(refused.plan.facts().refusals.at("04").at("7E8"), 0x22);
    EXPECT_EQ(codeCount(refused.plan.facts(), CodeKind::stored), 3);
}

TEST(KeptReportsTest, KeepsTheLastOfAVehicleForTheirOwnerAloneToBeCompared)
{
    const TemporaryFolder folder;
    const KeptReports kept(folder.path());
    const PlanRun run({.protocol = VehicleProtocol::can});
    const std::string json = reportJson({}, run.plan.facts());
    std::string path;
    for (int i = 0; i < 52; ++i)
        path = kept.keep(run.plan.facts(), json);
    const std::filesystem::path vehicle = utf8Path(path).parent_path();
    EXPECT_EQ(vehicle.filename(), vinOf(run.plan.facts()));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(vehicle), {}), 50);
    EXPECT_EQ(std::filesystem::status(vehicle.parent_path()).permissions(),
              std::filesystem::perms::owner_all);
    EXPECT_TRUE(compare(factsInJson(contents(path)), run.plan.facts()).isEmpty());
    EXPECT_FALSE(compare(factsInJson(contents(path)), {}).gone.empty());
    for (const char* broken :
         {"", "{}", "{\"schema\": 1, \"units\": {\"7E8\": {\"codes\": {\"stored\": 3}}}}"})
        EXPECT_THROW(factsInJson(broken), FileError) << broken;
}

TEST(ReportPlanTest, TellsWhyNothingIsRead)
{
    PlanRun off({.ignitionOn = false});
    EXPECT_NE(off.plan.failure().find("ignition on?"), std::string::npos) << off.plan.failure();
    EXPECT_FALSE(off.plan.facts().isWhole);
    EXPECT_EQ(std::ranges::count(off.commands, "0100"), 2) << "it is asked once more";
}

} // namespace
} // namespace zint
