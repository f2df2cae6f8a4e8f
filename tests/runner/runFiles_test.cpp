#include "runner/runFiles.h"
#include "support/scriptedDialogs.h"
#include "support/scriptedPrompts.h"
#include "support/temporaryFolder.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

TEST(RunFiles, WritingThatIsStoppedLeavesTheFileAndTheKeptRun)
{
    const TemporaryFolder folder;
    Design design;
    design.eventCount() = design.polledCount() = 1;
    design.entries[1] = {.code = "010D", .frequency = 1};
    SampleStore samples;
    samples.reset(design);
    constexpr std::int32_t count = 50000;
    for (std::int32_t i = 0; i < count; ++i)
        samples.add(0, i, i);
    KeptRuns kept(folder.path("runs"), [](auto) { return "then"; });
    kept.begin(design, samples, {});
    kept.leave();

    ScriptedPrompts prompts;
    ScriptedDialogs dialogs;
    ProgramValues values;
    std::string status;
    RunFiles files({prompts, values, [](auto) { return "then"; },
                    [&status](const std::string& text) { status = text; }});
    const std::string path = folder.path("some.log");
    const RunFiles::Run run{design, samples, {}};
    ASSERT_TRUE(files.save(run, RunFiles::Kind::log, path).isWritten);
    const std::string whole = contents(path);

    prompts.stopsWork = true;
    EXPECT_FALSE(files.save(run, RunFiles::Kind::log, path).isWritten);
    EXPECT_EQ(status, "Saving log to some.log was stopped");
    files.recover(kept, dialogs);
    EXPECT_EQ(contents(path), whole);

    prompts.stopsWork = false;
    prompts.chosen = 0;
    dialogs.chosen = path;
    files.recover(kept, dialogs);
    EXPECT_EQ(prompts.question, "Recover Unsaved Run\nUnsaved runs\nthen    (50000 samples in 13:53:19)");
    EXPECT_EQ(contents(path), whole);
    EXPECT_TRUE(kept.list().empty());
}

} // namespace
} // namespace zint
