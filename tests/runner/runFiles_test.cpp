#include "runner/runFiles.h"
#include "support/designOf.h"
#include "support/scriptedDialogs.h"
#include "support/scriptedPrompts.h"
#include "support/temporaryFolder.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

using Kind = RunFiles::Kind;
using Name = RunFiles::Name;

struct RunFilesTest : testing::Test {
    TemporaryFolder folder;
    ScriptedPrompts prompts;
    ScriptedDialogs dialogs;
    ProgramValues values{.parmInitDir = "/start", .parmLogFile = "yesterday.log"};
    KeptRuns kept{folder.path("kept"), [](auto) { return "today"; }};
    std::string status;
    RunFiles files{{prompts, values, kept, [](auto) { return "today"; },
                    [this](const std::string& text) { status = text; }}};
    Design design = designOf({{.code = "010C", .conversion = 5, .frequency = 1}});
    SampleStore samples;

    RunFilesTest()
    {
        samples.reset(design);
        kept.begin(design, samples, {});
        sample(4);
    }

    RunFiles::Run run() const { return {design, samples, {}}; }

    void sample(std::int32_t value)
    {
        samples.add(0, value, 0);
        kept.add(0, value, 0);
    }

    /// The user chooses a file. @return what asked for it
    std::string save(Kind kind, Name name, const std::string& path)
    {
        dialogs.asked.clear();
        dialogs.chosen = path;
        const std::string chosen = files.choose(kind, name, dialogs);
        if (!chosen.empty())
            files.save(run(), kind, chosen);
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
    files.leave(run());
    EXPECT_NE(save(Kind::log, Name::usual, ""), "") << "another run, another name";
}

TEST_F(RunFilesTest, WritesLogTableAndDump)
{
    save(Kind::log, Name::usual, folder.path("run.log"));
    EXPECT_EQ(status, "run.log log saved");
    EXPECT_TRUE(saved("run.log").ends_with("\r\ntoday\r\n 2 \r\n##1\r\n0,4\r\n"));
    save(Kind::table, Name::usual, folder.path("run.txt"));
    EXPECT_EQ(status, "run.txt export saved");
    EXPECT_TRUE(saved("run.txt").ends_with("\r\n0\t1\r\n"));
    save(Kind::dump, Name::asked, folder.path("dump.txt"));
    EXPECT_EQ(status, "dump.txt debug data saved");
    EXPECT_EQ(saved("dump.txt"), "-1,1,0\r\n0,4,0\r\n");
    EXPECT_EQ(values.parmExportFile, "run.txt") << "a dump has no name of its own";
}

TEST_F(RunFilesTest, TellsWhatCantBeWrittenAndTriesALogsNameAgain)
{
    EXPECT_NE(files.save(run(), Kind::table, "/dev/full"), "");
    EXPECT_EQ(status, "Error Saving export to full");
    EXPECT_EQ(values.parmExport + values.parmInitDir, "/start");
    EXPECT_NE(files.save(run(), Kind::log, "/dev/full"), "");
    EXPECT_EQ(status, "Error Saving log to full");
    EXPECT_EQ(values.parmLog, "/dev/full");
}

TEST_F(RunFilesTest, SaysWhatBecomesOfARunThatIsNotSaved)
{
    save(Kind::log, Name::usual, folder.path("run.log"));
    EXPECT_EQ(files.leave(run()), "");
    kept.begin(design, samples, {});
    EXPECT_EQ(files.leave(run()), " The unsaved run is under Recover Unsaved Run...");
    EXPECT_EQ(kept.list().size(), 1U);
    std::filesystem::remove_all(folder.path("kept"));
    TemporaryFolder::write(folder.path("kept"), "no folder");
    kept.begin(design, samples, {});
    EXPECT_EQ(files.leave(run()), " The unsaved run could not be kept.");
    EXPECT_EQ(kept.failure(), "");
}

TEST_F(RunFilesTest, ARecoveredRunBecomesALogUnlessItsUserStopsThat)
{
    for (std::int32_t i = 0; i < 20000; ++i)
        sample(i);
    files.leave(run());
    for (const bool stops : {true, false}) {
        prompts.stopsWork = stops;
        prompts.chosen = 0;
        dialogs.chosen = folder.path("recovered.log");
        files.recover(dialogs);
        EXPECT_EQ(kept.list().size(), stops ? 1U : 0U);
    }
    EXPECT_EQ(prompts.question, "Recover Unsaved Run\nUnsaved runs\ntoday   Car (20001 samples in 0:00)");
    files.save(run(), Kind::log, folder.path("whole.log"));
    EXPECT_TRUE(saved("recovered.log") == saved("whole.log"));
    prompts.stopsWork = true;
    files.save(run(), Kind::log, folder.path("whole.log"));
    EXPECT_EQ(status, "Saving log to whole.log was stopped");
    files.recover(dialogs);
    EXPECT_EQ(prompts.takeMessage(), "There is no unsaved run to recover.");
}

} // namespace
} // namespace zint
