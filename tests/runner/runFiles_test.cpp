#include "runner/pollerTest.h"
#include "support/scriptedDialogs.h"

namespace zint {
namespace {

using Kind = RunFiles::Kind;
using Name = RunFiles::Name;

/// With a run of one sample.
struct RunFilesTest : PollerTest {
    ScriptedDialogs dialogs;

    RunFilesTest()
    {
        values.parmInitDir = "/start";
        values.parmLogFile = "yesterday.log";
        run();
    }

    void run()
    {
        start({{"010C", "41 0C 00 04 \r\r>"}, {"010C", ""}});
        pressStop();
    }

    /// The user chooses a file. @return what asked for it
    std::string save(Kind kind, Name name, const std::string& path)
    {
        dialogs.asked.clear();
        dialogs.chosen = path;
        poller->save(kind, poller->chooseFile(kind, name, dialogs));
        return dialogs.asked;
    }

    std::string saved(const char* name) const { return contents(folder.path(name)); }
};

TEST_F(RunFilesTest, AsksOnceForANameUnlessAnotherIsWanted)
{
    EXPECT_EQ(save(Kind::log, Name::usual, ""),
              "save /start|yesterday.log|Zint log files (*.log)|*.log|Text files (*.txt)|*.txt|"
              "All files (*.*)|*.*");
    EXPECT_EQ(values.parmLogFile, "yesterday.log") << "cancelled";
    EXPECT_NE(save(Kind::log, Name::usual, folder.path("run.log")), "");
    EXPECT_EQ(values.parmLogFile, "run.log");
    EXPECT_EQ(values.parmInitDir, folder.path());
    EXPECT_EQ(save(Kind::log, Name::usual, ""), "") << "the same file again";
    EXPECT_NE(save(Kind::log, Name::asked, ""), "");
    EXPECT_EQ(values.parmLogFile, "run.log");
    poller->resetValues();
    EXPECT_NE(save(Kind::log, Name::usual, ""), "") << "another run, another name";
}

TEST_F(RunFilesTest, WritesLogTableAndDump)
{
    save(Kind::log, Name::usual, folder.path("run.log"));
    EXPECT_EQ(panel().statusBox, "run.log log saved");
    EXPECT_TRUE(saved("run.log").ends_with("\r\ntoday\r\n 2 \r\n##1\r\n0,4\r\n"));
    save(Kind::table, Name::usual, folder.path("run.txt"));
    EXPECT_EQ(panel().statusBox, "run.txt export saved");
    EXPECT_TRUE(saved("run.txt").ends_with("\r\n0\t1\r\n"));
    save(Kind::dump, Name::asked, folder.path("dump.txt"));
    EXPECT_EQ(panel().statusBox, "dump.txt debug data saved");
    EXPECT_EQ(saved("dump.txt"), "-1,1,0\r\n0,4,0\r\n");
    EXPECT_EQ(values.parmExportFile, "run.txt") << "a dump has no name of its own";
}

TEST_F(RunFilesTest, TellsWhatCantBeWrittenAndTriesALogsNameAgain)
{
    EXPECT_NE(poller->save(Kind::table, "/dev/full"), "");
    EXPECT_EQ(panel().statusBox, "Error Saving export to full");
    EXPECT_EQ(values.parmExport + values.parmInitDir, "/start");
    EXPECT_NE(poller->save(Kind::log, "/dev/full"), "");
    EXPECT_EQ(panel().statusBox, "Error Saving log to full");
    EXPECT_EQ(values.parmLog, "/dev/full");
}

TEST_F(RunFilesTest, SaysWhatBecomesOfARunThatIsNotSaved)
{
    poller->resetValues();
    EXPECT_EQ(panel().statusBox, "Values reset. The unsaved run is under Recover Unsaved Run...");
    run();
    save(Kind::log, Name::usual, folder.path("run.log"));
    poller->resetValues();
    EXPECT_EQ(panel().statusBox, "Values reset.");
    EXPECT_EQ(kept.list().size(), 1U) << "what is saved is not kept";
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
    for (const bool stops : {true, false}) {
        prompts.stopsWork = stops;
        prompts.chosen = 0;
        dialogs.chosen = folder.path("run.log");
        poller->recover(dialogs);
        EXPECT_EQ(kept.list().size(), stops ? 1U : 0U);
    }
    EXPECT_EQ(prompts.question, "Recover Unsaved Run\nUnsaved runs\ntoday   Car (1 sample in 0:00)");
    EXPECT_TRUE(saved("run.log").ends_with("\r\ntoday\r\n 2 \r\n##1\r\n0,4\r\n"));
    poller->recover(dialogs);
    EXPECT_EQ(prompts.takeMessage(), "There is no unsaved run to recover.");
}

TEST_F(RunFilesTest, TheUserMayStopALongSave)
{
    SampleStore samples;
    samples.reset(design);
    for (std::int32_t i = 0; i < 17000; ++i) // enough to tell how far it is
        samples.add(0, i, i);
    std::string status;
    RunFiles files({prompts, values, kept, [](auto) { return "today"; },
                    [&status](const std::string& text) { status = text; }});
    prompts.stopsWork = true;
    EXPECT_EQ(files.save({design, samples, {}}, Kind::log, folder.path("run.log")), "");
    EXPECT_EQ(status, "Saving log to run.log was stopped");
    EXPECT_EQ(saved("run.log"), "");
}

} // namespace
} // namespace zint
