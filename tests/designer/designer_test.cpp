#include "designer/designer.h"
#include "shared/fileError.h"
#include "shared/runTimeError.h"
#include "support/manualTime.h"
#include "support/scriptedAdapter.h"
#include "support/scriptedDialogs.h"
#include "support/scriptedPrompts.h"
#include "support/temporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zint {
namespace {

struct DesignerTest : testing::Test {
    TemporaryFolder folder;
    EventGate gate;
    ScriptedAdapter adapter{&gate};
    ManualTimer timer;
    ScriptedPrompts prompts;
    ScriptedDialogs dialogs;
    ProgramValues values{.parmInitDir = "/start"};
    Design design;
    KeptDesigns kept{folder.path("kept"), [](auto) { return "today"; }};
    std::optional<Designer> designer;

    DesignerTest()
    {
        loadDefaultDesign(design);
        designer.emplace(adapter, timer, ConnectionChoice{}, design, prompts, dialogs, values, kept);
        designer->load();
    }

    const DesignerPanel& panel() const { return designer->panel(); }
    const GridRow& row(std::size_t n) const { return panel().obdGrid.rows.at(n); }
};

TEST_F(DesignerTest, SavesOpensAndKeepsTheTitle)
{
    EXPECT_EQ(panel().statusBox, "Default Settings (31 events)");
    designer->setTitle("Car1");
    designer->save();
    EXPECT_EQ(dialogs.asked,
              "save /start||OBD2 config files (*.obc)|*.obc|Text files (*.txt)|*.txt|All files (*.*)|*.*");
    EXPECT_EQ(design.eventCount(), 31) << "cancelled";

    dialogs.chosen = folder.path("car.obc");
    designer->save();
    EXPECT_EQ(panel().statusBox, "car.obc saved");
    EXPECT_EQ(panel().fileLab, "car.obc");
    EXPECT_EQ(values.parmSaveFile, "car.obc");
    EXPECT_EQ(values.parmInitDir, folder.path());
    EXPECT_EQ(panel().obdGrid.rows.size(), 22U) << "the unpolled rows left with the commit";
    EXPECT_TRUE(contents(folder.path("car.obc"))
                    .starts_with("Car1\r\n|200\r\n0104|Calculated Engine Load|1|10|3|0|0\r\n"));

    designer->newDesign();
    EXPECT_EQ(panel().obdGrid.title, "Default Settings");
    dialogs.chosen = folder.path("car.obc");
    designer->open();
    EXPECT_EQ(panel().statusBox, "car.obc loaded");
    EXPECT_EQ(panel().obdGrid.title, "Car1");
    designer->disableAll();
    designer->save();
    EXPECT_EQ(contents(folder.path("car.obc")), "Car1\r\n|200\r\nEOP - end of Parms\r\n")
        << "saved again without a question";
}

TEST_F(DesignerTest, AFileThatCantBeReadGivesTheDefault)
{
    folder.write(folder.path("bad.obc"), "t\n|200\n0105|x|three|1|0\n");
    dialogs.chosen = folder.path("bad.obc");
    designer->open();
    EXPECT_EQ(prompts.takeMessage(), "Error loading filebad.obc");
    EXPECT_EQ(prompts.reason, "Type mismatch");
    EXPECT_EQ(panel().statusBox, "Default values loaded");
    EXPECT_EQ(design.eventCount(), 31);
    values.parmSave = folder.path("good.obc");
    designer->save();
    EXPECT_TRUE(dialogs.asked.starts_with("save ")) << "the file of before is not overwritten";

    folder.write(folder.path("RUN.LOG"),
                 "Logged\r\n|-1\r\n010C|rpm|5|1|0|0|0\r\nEOP - end of Parms\r\nsamples");
    dialogs.chosen = folder.path("RUN.LOG");
    designer->open();
    EXPECT_EQ(panel().obdGrid.title, "Logged");
    EXPECT_TRUE(panel().autoSpeed);
    EXPECT_EQ(panel().sampleDsp, "Auto");
    EXPECT_EQ(panel().pollSpeed.value, 200);
    dialogs.asked.clear();
    designer->save();
    EXPECT_TRUE(dialogs.asked.starts_with("save ")) << "a log is not overwritten";
    dialogs.chosen = "/dev/full";
    EXPECT_THROW(designer->save(), FileError);
}

TEST_F(DesignerTest, EditsAreUndoneAndCommitsAreAllOrNothing)
{
    designer->setCell(0, GridColumn::description, "lamp");
    EXPECT_THROW(designer->setCell(0, GridColumn::offset, "x"), RunTimeError);
    designer->sortBy(GridColumn::description);
    const std::string first = row(0).description;
    designer->sortBy(GridColumn::description);
    EXPECT_EQ(row(30).description, first) << "the second click reverses";
    designer->undo();
    designer->undo();
    designer->undo();
    EXPECT_EQ(row(0).description, "MIL Status");
    EXPECT_FALSE(panel().canUndo);
    designer->redo();
    EXPECT_EQ(row(0).description, "lamp");

    prompts.typed = "0902";
    EXPECT_TRUE(designer->addNew());
    EXPECT_EQ(row(31), (GridRow{"0902", "", 0, 10, 0}));
    EXPECT_FALSE(designer->addNew()) << "an empty answer adds nothing";
    designer->setTitle("full");
    designer->enableAll();
    for (int i = 0; i < 33; ++i) {
        prompts.typed = "0105";
        designer->addNew();
    }
    dialogs.asked.clear();
    EXPECT_THROW(designer->saveAs(), TooManyEvents);
    EXPECT_EQ(dialogs.asked, "") << "what can't be saved needs no name";
    EXPECT_THROW(designer->commit(), TooManyEvents);
    EXPECT_EQ(panel().obdGrid.rows.size(), 65U);
    EXPECT_EQ(design.title(), "Default Settings");
    EXPECT_EQ(design.eventCount(), 31);
    EXPECT_EQ(design.entries[32].code, "");
    designer->undo();
    designer->commit();
    EXPECT_EQ(design.eventCount(), 64);
}

TEST_F(DesignerTest, ASampleIsFoundAtOnceAndNotOverwritten)
{
    values.isFolderRemembered = false;
    values.sampleFolder = folder.path();
    folder.write(folder.path("sample.obc"), "Sample\n|200\n010C|rpm|5|1|0\n");
    dialogs.chosen = folder.path("sample.obc");
    designer->open();
    EXPECT_TRUE(dialogs.asked.starts_with("open " + folder.path() + "||")) << dialogs.asked;
    EXPECT_EQ(panel().fileLab, "sample.obc");
    EXPECT_EQ(values.parmSave, "");
    designer->unload();
    designer->load();
    designer->save();
    EXPECT_TRUE(dialogs.asked.starts_with("save " + folder.path() + "||")) << dialogs.asked;
}

TEST_F(DesignerTest, RecoversWhatWasLeftReplacedOrLost)
{
    const auto keptFiles = [this] {
        return std::distance(std::filesystem::directory_iterator(utf8Path(folder.path("kept"))), {});
    };
    designer->recover();
    EXPECT_EQ(prompts.takeMessage(), "There is no unsaved design to recover.");
    designer->commit();
    EXPECT_FALSE(fileExists(folder.path("kept"))) << "nothing of the default is lost";

    designer->setCell(0, GridColumn::frequency, "0");
    designer->setTitle("left");
    EXPECT_EQ(keptFiles(), 1) << "a crash may come at any time";
    designer->recover();
    EXPECT_EQ(prompts.takeMessage(), "There is no unsaved design to recover.") << "this one is being edited";
    designer->unload();
    designer->load();
    prompts.typed = "ATH1";
    designer->askInitSequence();
    designer->setTitle("replaced");
    designer->newDesign();
    EXPECT_EQ(keptFiles(), 2);

    prompts.chosen = 0;
    designer->recover();
    EXPECT_EQ(prompts.question, "Recover Unsaved Design\nUnsaved designs\ntoday   replaced (22 events)\n"
                                "today   left (22 events)");
    EXPECT_EQ(panel().statusBox, "replaced (22 events) recovered");
    EXPECT_EQ(panel().pollPrefix, "ATH1");
    prompts.chosen = 0;
    designer->recover();
    EXPECT_EQ(panel().obdGrid.title, "left") << "and the one before can still be recovered";
    EXPECT_EQ(row(0).frequency, 0) << "disabled rows come back too";
    designer->save();
    EXPECT_TRUE(dialogs.asked.starts_with("save "));
    dialogs.chosen = folder.path("car.obc");
    designer->save();
    EXPECT_EQ(keptFiles(), 1) << "what is saved need not be kept";

    for (int i = 0; i < 12; ++i) {
        designer->setTitle("t" + std::to_string(i));
        designer->newDesign();
    }
    EXPECT_EQ(keptFiles(), 10);
}

TEST_F(DesignerTest, GoesOnWithTheDesignThatWentToTheRunner)
{
    designer->setTitle("tried");
    designer->commit();
    designer->unload();
    designer->load();
    designer->setTitle("tried again");
    designer->newDesign();
    prompts.chosen = 0;
    designer->recover();
    EXPECT_EQ(std::ranges::count(prompts.question, '\n'), 2) << "one kept design: " << prompts.question;
}

TEST_F(DesignerTest, SaysWhenNothingCanBeKept)
{
    folder.write(folder.path("kept"), "no folder");
    designer->setTitle("x");
    EXPECT_TRUE(panel().statusBox.starts_with("Unsaved changes can't be kept: ")) << panel().statusBox;
    EXPECT_EQ(panel().obdGrid.title, "x");
}

TEST_F(DesignerTest, PreparesTheAdapter)
{
    prompts.typed = "atsh 81 10 f1";
    designer->askInitSequence();
    EXPECT_EQ(panel().pollPrefix, "ATSH 81 10 F1");
    prompts.typed = "ATZ";
    designer->askInitSequence();
    EXPECT_EQ(prompts.question, "Init Cmds\nExtra Initialization Commands ATSH 81 10 F1");
    EXPECT_EQ(prompts.takeMessage(), "ATZ would interfere will ability to recognize poll data");
    EXPECT_EQ(design.extraCommands, "ATSH 81 10 F1");

    designer->movePollSpeed(101);
    EXPECT_EQ(panel().sampleDsp, "100ms");
    EXPECT_EQ(design.sampleSpeed, 200) << "the slider shows only";
    designer->clickAutoSpeed(true);
    EXPECT_EQ(design.sampleSpeed, -1);
    EXPECT_FALSE(panel().pollSpeed.enabled);
    designer->clickAutoSpeed(false);
    EXPECT_EQ(design.sampleSpeed, 200);
    EXPECT_EQ(panel().sampleDsp, "200ms");
}

TEST_F(DesignerTest, DisablesWhatTheVehicleDoesNotSupport)
{
    const auto verify = [this](const char* reply) {
        adapter.expectOpening();
        adapter.expect("0100\r").answer(reply);
        adapter.expect("ATD\r");
        designer->verifySupport();
        EXPECT_EQ(panel().statusBox, "com1 Verify events with OBD2");
        adapter.play();
        EXPECT_EQ(panel().statusBox, "com1 Closed");
        EXPECT_FALSE(timer.running);
    };
    verify("NO DATA\r\r>");
    EXPECT_EQ(prompts.takeMessage(), "Please try again, is possible ignition not ON");
    EXPECT_TRUE(panel().labelStats.ends_with("Errors: 1"));
    verify("41 00 BE 1G A8 13 \r\r>");
    EXPECT_EQ(prompts.takeMessage(), "Garbled OBD2 0100 response (BE 1G A8 13 ), try again");
    EXPECT_FALSE(panel().canUndo);
    verify("BUS INIT: OK\r41 00 BE 1F A8 13 \r\r>");
    EXPECT_EQ(row(3).frequency, 0) << "0104";
    EXPECT_EQ(row(3).offset, 0);
    EXPECT_EQ(row(4).frequency, 10) << "0105";
    EXPECT_EQ(design.entries[4].frequency, 10) << "only the grid changes";
}

TEST_F(DesignerTest, TheTimeOutGuardsTheAnswerToo)
{
    adapter.expectOpening();
    adapter.expect("0100\r");
    adapter.expect("ATD\r");
    designer->verifySupport();
    adapter.play();
    EXPECT_TRUE(timer.running);
    timer.tick();
    EXPECT_EQ(prompts.takeMessage(),
              "OBD is not responding... Please verify connections between computer and vehicle");
    EXPECT_EQ(panel().statusBox, "com1 Closed");
    EXPECT_TRUE(panel().labelStats.ends_with("Errors: 1"));
    EXPECT_EQ(values.lastFailureText, "Timeout responding to ATZ");
}

TEST_F(DesignerTest, SpreadsOffsetsAndShowsTheTimeline)
{
    designer->calculateOffsets();
    EXPECT_EQ(row(0).offset, 0);
    EXPECT_EQ(row(1).offset, 9);
    designer->showTimeline();
    EXPECT_TRUE(prompts.takeMessage().starts_with("----------\r\n   \r\n   Calculated Engine Load\r\n"));
    EXPECT_EQ(design.title(), "");
    designer->disableAll();
    EXPECT_THROW(designer->showTimeline(), RunTimeError);
    EXPECT_EQ(design.eventCount(), 22);
}

} // namespace
} // namespace zint
