#include "runner/pollerTest.h"
#include "support/scriptedDialogs.h"

namespace zint {
namespace {

using Kind = RunFiles::Kind;
using Name = RunFiles::Name;

/// With a run of one sample.
struct RunFilesTest : PollerTest {
    ScriptedDialogs dialogs;

    RunFilesTest() { run(); }

    void run()
    {
        start({{"010C", good}, {"010C", ""}});
        pressStop();
    }

    /// The user chooses a file, or none. @return what asked for it
    std::string save(Kind kind, const std::string& file, Name name = Name::usual)
    {
        dialogs.asked.clear();
        dialogs.chosen = file.empty() ? "" : folder.path(file);
        poller->save(kind, poller->chooseFile(kind, name, dialogs));
        return dialogs.asked;
    }

    std::string saved(const std::string& file) const { return contents(folder.path(file)); }
};

constexpr const char* wholeLog =
    "Car\r\n|200\r\n010C||5|1|0\r\nEOP - end of Parms\r\ntoday\r\n 2 \r\n##1\r\n0,4\r\n";

TEST_F(RunFilesTest, AsksOnceForANameUnlessAnotherIsWanted)
{
    values.parmInitDir = "/start";
    values.parmLogFile = "yesterday.log";
    const std::string filter = "Zint log files (*.log)|*.log|Text files (*.txt)|*.txt|All files (*.*)|*.*";
    EXPECT_EQ(save(Kind::log, ""), "save /start|yesterday.log|" + filter);
    EXPECT_EQ(values.parmLogFile, "yesterday.log") << "cancelled";
    EXPECT_NE(save(Kind::log, "run.log"), "");
    EXPECT_EQ(values.parmInitDir + "|" + values.parmLogFile, folder.path() + "|run.log");
    EXPECT_EQ(save(Kind::log, ""), "") << "the same file again";
    EXPECT_NE(save(Kind::log, "", Name::asked), "");
    poller->resetValues();
    EXPECT_NE(save(Kind::log, ""), "") << "another run, another name";
}

TEST_F(RunFilesTest, WritesLogTableAndDump)
{
    const std::tuple<Kind, const char*, const char*, const char*> rows[] = {
        {Kind::log, "run.log", "run.log log saved", wholeLog},
        {Kind::table, "run.txt", "run.txt export saved", "Car today\r\n \r\nSecond(s)\t(rpm)\r\n0\t1\r\n"},
        {Kind::table, "run.CSV", "run.CSV export saved", "Time (s);010C (rpm)\r\n0,000;1\r\n"},
        {Kind::dump, "dump.csv", "dump.csv debug data saved", "-1,1,0\r\n0,4,0\r\n"}};
    poller->useDecimals(Decimals::comma);
    for (const auto& [kind, file, status, whole] : rows) {
        save(kind, file, Name::asked);
        EXPECT_EQ(panel().statusBox + saved(file), std::string(status) + whole);
    }
    EXPECT_TRUE(save(Kind::table, "", Name::asked).ends_with("|All files (*.*)|*.*|CSV files (*.csv)|*.csv"));
    EXPECT_EQ(values.parmExportFile, "run.CSV") << "a dump has no name of its own";
}

TEST_F(RunFilesTest, TellsWhatCantBeWrittenAndTriesALogsNameAgain)
{
    EXPECT_NE(poller->save(Kind::table, "/dev/full"), "");
    EXPECT_EQ(panel().statusBox, "Error Saving export to full");
    EXPECT_EQ(values.parmExport + values.parmInitDir, "");
    EXPECT_NE(poller->save(Kind::log, "/dev/full"), "");
    EXPECT_EQ(panel().statusBox + " " + values.parmLog, "Error Saving log to full /dev/full");
}

TEST_F(RunFilesTest, SaysWhatBecomesOfARunThatIsNotSaved)
{
    save(Kind::table, "run.txt");
    poller->save(Kind::log, "/dev/full");
    poller->resetValues();
    EXPECT_EQ(panel().statusBox, "Values reset. The unsaved run is under Recover Unsaved Run...");
    run();
    save(Kind::log, "run.log");
    poller->resetValues();
    EXPECT_EQ(panel().statusBox, "Values reset.");
    std::filesystem::remove_all(folder.path("runs"));
    TemporaryFolder::write(folder.path("runs"), "no folder");
    run();
    EXPECT_TRUE(panel().keepFailure.starts_with("unsaved samples are not kept: The folder "));
    poller->resetValues();
    EXPECT_EQ(panel().statusBox + panel().keepFailure, "Values reset. The unsaved run could not be kept.");
}

TEST_F(RunFilesTest, ARecoveredRunBecomesALogUnlessItsUserStopsThat)
{
    poller->resetValues();
    for (const auto& [stops, file, isSaved] :
         {std::tuple{true, "run.log", false}, {false, "none/run.log", false}, {false, "run.log", true}}) {
        prompts.stopsWork = stops;
        prompts.chosen = 0;
        dialogs.chosen = folder.path(file);
        poller->recover(dialogs);
        EXPECT_EQ(kept.list().empty(), isSaved);
        EXPECT_EQ(prompts.takeMessage().empty(), stops || isSaved);
    }
    EXPECT_EQ(values.parmInitDir, folder.path());
    EXPECT_EQ(prompts.question, "Recover Unsaved Run\nUnsaved runs\ntoday   Car (1 sample in 0:00)");
    EXPECT_EQ(saved("run.log"), wholeLog);
    poller->recover(dialogs);
    EXPECT_EQ(prompts.takeMessage(), "There is no unsaved run to recover.");
}

TEST_F(RunFilesTest, AStoppedSaveIsNone)
{
    SampleStore samples;
    samples.reset(design);
    for (std::int32_t i = 0; i < 17000; ++i) // enough to tell how far it is
        samples.add(0, i, {i});
    std::string status;
    RunFiles files({prompts, values, kept, dateText, [&status](const std::string& text) { status = text; }});
    prompts.stopsWork = true;
    EXPECT_EQ(files.save({design, samples, {}}, Kind::table, folder.path("run.txt")), "");
    EXPECT_EQ(status + values.parmExport + saved("run.txt"), "Saving export to run.txt was stopped");
}

} // namespace
} // namespace zint
