#include "report/keptReports.h"
#include "report/reportComparison.h"
#include "report/reportHeadline.h"
#include "report/reportJson.h"
#include "report/reportPlan.h"
#include "report/reportText.h"
#include "report/requestOutcomes.h"
#include "shared/fileError.h"
#include "support/simulated.h"
#include "support/temporaryFolder.h"
#include "vehicle/transcript.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace zint {
namespace {

using Texts = std::vector<std::string>;

/// What comes in place of a simulated vehicle's answers, by request: first answers first.
using Replacements = std::map<std::string, std::vector<std::string>>;

/// A plan that is carried out on a simulated vehicle.
struct PlanRun {
    Vehicle vehicle;
    SimulatedAdapter adapter;
    ReportPlan plan;
    Texts commands;
    std::map<std::string, Texts> replies; ///< by command

    explicit PlanRun(const VehicleOptions& behind, const AdapterOptions& options = {},
                     ReportPlan::Scope scope = {}, Replacements replaced = {})
        : vehicle(behind), adapter(vehicle, options), plan(scope)
    {
        plan.takeName("ELM327 v1.5\r\r>");
        while (const auto command = plan.next()) {
            commands.push_back(*command);
            std::string reply = answer(*command);
            Texts& others = replaced[*command];
            if (others.size() > replies[*command].size())
                reply = others[replies[*command].size()] + "\r\r>";
            if (reply.starts_with("LV RESET") || reply.starts_with("ELM327"))
                answer("ATD"); // its settings are lost
            replies[*command].push_back(reply);
            plan.take(reply);
        }
    }

    std::string answer(const std::string& command) { return replyOf(adapter, command + "\r", now); }

    /// What was sent from a request up to the next other one.
    std::string sentFor(const std::string& request) const
    {
        std::string text;
        for (auto at = std::ranges::find(commands, request);
             at != commands.end() && (*at == request || at->starts_with("AT")); ++at)
            text += (text.empty() ? "" : " ") + *at;
        return text;
    }

    /// Of those requests that have brought no whole answer.
    std::string outcome(const std::string& request) const
    {
        std::string text;
        for (const RequestOutcome& outcome : requestOutcomes(plan.facts())) {
            if (outcome.request == request)
                text += outcome.subject + "/" + outcome.unit + "/" +
                        std::to_string(static_cast<int>(outcome.kind)) + "/" + outcome.text;
        }
        return text;
    }

    std::string text() const
    {
        const auto date = [](auto) { return std::string("today"); };
        return reportText(headOf(plan.facts(), date, plan.failure()), sectionsOf(plan.facts(), nullptr));
    }

    SimulatedAdapter::Time now{0};
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
        for (const auto& [command, replies] : run.replies)
            EXPECT_EQ(replies.size(), 1U) << command << replies.front();
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

TEST(ReportPlanTest, ReadsTheSameFromAnAdapterThatRefusesItsSettings)
{
    const VehicleOptions vehicle{.protocol = VehicleProtocol::can, .units = 2};
    const PlanRun plain(vehicle);
    const PlanRun refused(vehicle, {.refusedCommands = {"WS", "S0", "AL", "AT1", "@1", "RV", "DPN"}});
    EXPECT_EQ(difference(plain, refused), headlineOf(plain.plan.facts()));
}

TEST(ReportPlanTest, AsksOnceMoreWhatWasMissingDamagedOrBusyAndTellsWhatBecameOfIt)
{
    const std::string gearbox = "7E9 04 43 01 07 41";
    const std::string first = "7E8 10 08 43 03 01 33 03 01";
    const std::string whole = first + "\r7E8 21 C1 23\r";
    const std::string busy = "7E8 03 7F 03 78";
    const std::string again = "03 ATE0 ATL0 ATH1 ATS0 ATAL ATAT1 03";
    const std::string patiently = "03 ATAT0 ATSTFF 03 ATST32 ATAT1";
    const std::string damaged = "stored codes/7E8/5/damaged or incomplete";
    struct Row {
        Texts replies; ///< in place of the vehicle's first ones
        std::string sent, outcome;
        int codes;
    };
    const Row rows[] = {
        {{"STOPPED"}, "03 03", "", 4},
        {{whole + "STOPPED"}, "03 03", "", 4},
        {{first + "\rBUFFER FULL"}, "03 03", "", 4},
        {{"ACT ALERT"}, "03 03", "", 4},
        {{"LV RESET"}, again, "", 4},
        {{"ELM327 v1.5"}, again, "", 4},
        {{busy + "\r" + gearbox}, patiently, "", 4},
        {{busy + "\r" + gearbox, busy}, patiently, "stored codes/7E8/3/busy: the answer did not come", 1},
        {{busy, "LV RESET"},
         "03 ATAT0 ATSTFF 03 ATE0 ATL0 ATH1 ATS0 ATAL ATAT1 ATAT0 ATSTFF ATST32 ATAT1",
         "stored codes//4/no answer: the adapter was reset by a low voltage",
         0},
        {{first + "\r" + gearbox}, "03 03", "", 4},
        {{first + "\r" + gearbox, first + "\r" + gearbox}, "03 03", damaged, 1},
        {{whole + "7E9 10 08 43 03 01 33", gearbox}, "03 03", "", 4},
        {{"7E8 03 7F 03 22\r" + gearbox},
         "03",
         "stored codes/7E8/1/refused for now: conditions are not right (22)",
         1},
        {{"7E8 03 7F 03 21\r" + gearbox}, "03 03", "", 4},
        {{"NO DATA", "NO DATA"}, "03 03", "stored codes//4/no answer", 0},
    };
    for (const auto& [replies, sent, outcome, codes] : rows) {
        const PlanRun run({.protocol = VehicleProtocol::can, .units = 2}, {}, {.isQuick = true},
                          {{"03", replies}});
        SCOPED_TRACE(replies.front());
        EXPECT_EQ(run.sentFor("03"), sent);
        EXPECT_EQ(run.outcome("03"), outcome);
        EXPECT_EQ(codeCount(run.plan.facts(), CodeKind::stored), codes);
        EXPECT_EQ(run.plan.facts().units.size(), 2U);
        EXPECT_TRUE(run.plan.facts().isWhole);
    }
}

TEST(ReportPlanTest, TellsSilenceThatSaysNoFromMissingAnswers)
{
    const Texts none = {"NO DATA", "NO DATA"};
    const PlanRun old({.protocol = VehicleProtocol::iso9141}, {}, {}, {{"07", none}, {"0105", none}});
    EXPECT_EQ(old.outcome("07"), "pending codes//0/not supported, or nothing to tell");
    EXPECT_EQ(old.outcome("0105"), "Coolant temperature//4/no answer");
    const PlanRun two({.protocol = VehicleProtocol::kwpFast, .units = 2});
    EXPECT_TRUE(two.plan.facts().refusals.contains("0103"));
    EXPECT_EQ(two.outcome("0103") + two.outcome("050001"), "")
        << "the transmission refuses what the engine lists alone";
    const Texts one = {"7E8 03 41 0D 00", "7E8 03 41 0D 00"};
    const PlanRun newer({.protocol = VehicleProtocol::can, .units = 2}, {}, {},
                        {{"0A", none}, {"0902", {"7E8 03 7F 09 12"}}, {"010D", one}});
    EXPECT_EQ(newer.outcome("0A"), "permanent codes//0/not supported, or nothing to tell");
    EXPECT_EQ(newer.outcome("0902"), "VIN/7E8/0/not supported, or the request has a wrong form (12)");
    EXPECT_EQ(newer.outcome("010D"), "Vehicle speed/7E9/4/no answer");
    const std::string json = reportJson({}, newer.plan.facts());
    EXPECT_NE(json.find("\"refusals\": {\n    \"0902\": {\n      \"7E8\": \"12\""), std::string::npos);
    EXPECT_NE(json.find("\"010D\": {\n      \"7E9\": \"silent\""), std::string::npos);
}

TEST(ReportPlanTest, ClearsFirstAndTellsWhatHasChanged)
{
    const VehicleOptions vehicle{.protocol = VehicleProtocol::can};
    PlanRun before(vehicle);
    PlanRun after(vehicle, {}, {.isQuick = true, .clearsFirst = true});
    EXPECT_EQ(after.sentFor("04"), "04 ATST32 ATAT1") << "with a longer wait, once";
    EXPECT_EQ(after.plan.clearing(), ReportPlan::Clearing::answered);
    EXPECT_LT(after.commands.size(), before.commands.size());
    EXPECT_TRUE(after.plan.facts().units.front().second.cleared);
    EXPECT_TRUE(difference(before, after).starts_with("No codes stored")) << difference(before, after);
    EXPECT_NE(difference(before, after).find("\ngone: P0301 (stored, 7E8)\n"), std::string::npos);

    PlanRun refused({.protocol = VehicleProtocol::can, .refusesClearing = true}, {}, {.clearsFirst = true});
    EXPECT_EQ(refused.plan.facts().refusals.at("04").at("7E8"), 0x22);
    EXPECT_EQ(codeCount(refused.plan.facts(), CodeKind::stored), 3);

    for (const char* cut : {"STOPPED", "BUS ERROR", "LV RESET", "7E8 01 44<RX ERROR"}) {
        const PlanRun run(vehicle, {}, {.isQuick = true, .clearsFirst = true}, {{"04", {cut}}});
        EXPECT_EQ(std::ranges::count(run.commands, "04"), 1) << "it is never repeated";
        EXPECT_EQ(run.plan.clearing(), ReportPlan::Clearing::unknown) << cut;
    }
}

TEST(KeptReportsTest, KeepsTheLastOfAVehicleForTheirOwnerAloneToBeCompared)
{
    const TemporaryFolder folder;
    const KeptReports kept(folder.path(), [](auto) { return std::string("2026-11-21 15.24.08"); });
    const PlanRun run({.protocol = VehicleProtocol::can});
    const std::string json = reportJson({}, run.plan.facts());
    std::string path;
    for (int i = 0; i < 52; ++i)
        path = kept.keep(run.plan.facts(), json);
    const std::filesystem::path vehicle = utf8Path(path).parent_path();
    EXPECT_EQ(vehicle.filename(), vinOf(run.plan.facts()));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(vehicle), {}), 50);
#ifdef __unix__ // elsewhere the user's data folder is private anyway
    EXPECT_EQ(std::filesystem::status(vehicle.parent_path()).permissions(),
              std::filesystem::perms::owner_all);
#endif
    EXPECT_TRUE(compare(factsInJson(contents(path), path), run.plan.facts()).isEmpty());
    VehicleFacts later;
    EXPECT_TRUE(compare(run.plan.facts(), later).isEmpty()) << "what is not told is not gone";
    later.unit("7E8").codes[CodeKind::stored] = {};
    EXPECT_FALSE(compare(run.plan.facts(), later).gone.empty());
    for (const char* broken :
         {"", "{}", "{\"schema\": 1, \"units\": {\"7E8\": {\"codes\": {\"stored\": 3}}}}"})
        EXPECT_THROW(factsInJson(broken, "mail"), FileError) << broken;
}

TEST(ReportHeadlineTest, SaysNoMoreThanTheControlUnitsHaveTold)
{
    const std::pair<const char*, const char*> rows[] = {
        {"> 0101\n7E8 06 41 01 81 07 65 04\n> 03\n7E8 04 43 01 01 33\n",
         "The Check Engine light is on. 1 code stored. 1 of 7 monitors not ready: an emissions test would "
         "fail today."},
        {"> 0101\n7E8 06 41 01 81 07 65 00\n",
         "The Check Engine light is on. All 7 monitors ready, but with the light on an emissions test would "
         "fail today."},
        {"> 0101\n7E9 06 41 01 00 04 00 00\n", "1 monitor ready."},
        {"> 03\n7E8 10 08 43 03 01 33 03 01\n", "The stored codes could not be read."},
        {"> 03\n7E9 02 43 00\n7E8 10 08 43 03 01 33 03 01\n", "Not all stored codes could be read."},
        {"> 03\n7E8 02 43 00\n> 07\n7E8 04 47 01 01 33\n", "No codes stored, 1 pending."},
        {"> 07\n7E8 06 47 02 01 33 03 01\n", "2 codes pending."},
    };
    for (const auto& [transcript, headline] : rows)
        EXPECT_EQ(headlineOf(factsOf(replay(transcript))), headline);
}

TEST(ReportSectionsTest, TellWhatWasNotReadFromWhatThereIsNot)
{
    const auto sections = sectionsOf(
        factsOf(replay("> 0101\n7E8 06 41 01 81 0F 65 04\n> 020200\n7E8 05 42 02 00 01 33\n")), nullptr);
    EXPECT_EQ(sections[0].tables.front().rows.front()[1].text, "on");
    EXPECT_EQ(sections[1].tables.front().title, "7E8, compression ignition");
    EXPECT_EQ(sections[2].mark, Mark::attention) << "a frame may be read no further than its code";
    EXPECT_TRUE(sections[3].mark == Mark::none && sections[3].note.starts_with("Not read"));
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
