#include "designer/designer.h"
#include "designer/sampleSpeed.h"
#include "shared/fileError.h"
#include "shared/runTimeError.h"
#include "support/manualTime.h"
#include "support/scriptedAdapter.h"
#include "support/scriptedDialogs.h"
#include "support/scriptedPrompts.h"
#include "support/temporaryFolder.h"

#include <algorithm>

namespace zint {
namespace {

struct DesignerTest : testing::Test {
    TemporaryFolder folder;
    EventGate gate;
    ScriptedAdapter adapter{&gate};
    ManualTimer timer, silence;
    ScriptedPrompts prompts;
    ScriptedDialogs dialogs;
    ProgramValues values{.parmInitDir = "/start"};
    Design design;
    KeptDesigns kept{folder.path(), [](auto) { return "today"; }};
    std::optional<Designer> designer;

    DesignerTest()
    {
        loadDefaultDesign(design);
        designer.emplace(AdapterLine{adapter, {}, timer, &silence}, design, prompts, dialogs, values, kept,
                         ParametersFile(folder.path()));
        designer->load();
    }

    const DesignerPanel& panel() const { return designer->panel(); }
    std::string status() const { return panel().statusBox + (panel().isModified ? " *" : ""); }
    const DesignEntry& row(std::size_t n) const { return panel().obdGrid.at(n); }

    void open(const std::string& name, const std::string& text)
    {
        dialogs.chosen = folder.path(name);
        folder.write(dialogs.chosen, text);
        designer->open();
    }

    void leaveAndComeBack()
    {
        designer->unload();
        designer->load();
    }

    /// What the dialog is asked that Save shows; empty when it shows none.
    std::string askedBySave()
    {
        dialogs.asked.clear();
        designer->save();
        return dialogs.asked.substr(0, dialogs.asked.rfind("|OBD2"));
    }

    /// Asks the vehicle. @return the status afterwards, and the message
    std::string verify(const char* reply)
    {
        adapter.expectOpening();
        adapter.expect("0100\r").answer(reply);
        adapter.expect("ATD\r");
        designer->verifySupport();
        EXPECT_EQ(status(), "com1 Verify events with OBD2");
        adapter.play();
        return status() + prompts.takeMessage();
    }

    std::ptrdiff_t keptFiles() const
    {
        return std::ranges::count_if(std::filesystem::directory_iterator(utf8Path(folder.path("designs"))),
                                     [](const auto& entry) { return entry.path().extension() == ".obc"; });
    }
};

TEST_F(DesignerTest, SavesOpensAndKeepsTheTitle)
{
    EXPECT_EQ(status(), "Default Settings (31 events)");
    designer->setTitle("Car1");
    EXPECT_EQ(status(), "Default Settings (31 events) *");
    designer->showTimeline();
    EXPECT_TRUE(prompts.takeMessage().starts_with("----------\r\n   \r\n   Manifold Air Pressure\r\n"));
    leaveAndComeBack();
    dialogs.chosen = folder.path("car.obc");
    EXPECT_EQ(askedBySave(), "save /start|");
    EXPECT_EQ(status(), "car.obc saved");
    EXPECT_TRUE(contents(folder.path("car.obc")).starts_with("Car1\r\n|200\r\n0104|")) << "polled rows";

    std::string shown;
    designer->onChanged = [&] { shown = status(); };
    dialogs.chosen = folder.path("gone/x.obc");
    EXPECT_THROW(designer->saveAs(), FileError);
    EXPECT_EQ(dialogs.asked,
              "save " + folder.path() + "|car.obc|OBD2 config files (*.obc)|*.obc|" + textFileKinds.filter);
    EXPECT_EQ(shown, "x.obc not saved");
    EXPECT_EQ(values.parmSaveFile + values.parmInitDir, "car.obc" + folder.path());
    open("car.obc", "Car2\n|200\n010C|rpm|5|1|0\n");
    EXPECT_EQ(status(), "car.obc loaded");
    designer->disableAll();
    EXPECT_EQ(askedBySave(), "");
    EXPECT_EQ(contents(folder.path("car.obc")), "Car2\r\n|200\r\nEOP - end of Parms\r\n");
    designer->newDesign();
    EXPECT_EQ(askedBySave(), "save " + folder.path() + "|") << "car.obc is another design";
}

TEST_F(DesignerTest, AFileThatCantBeReadGivesTheDefault)
{
    values.parmSave = folder.path("bad.obc");
    folder.write(values.parmSave, "t\n|200\n0105|x|three|1|0\n");
    designer->load();
    EXPECT_EQ(prompts.takeMessage(), "") << "not before the window stands";
    designer->tellLoadFailure();
    EXPECT_EQ(prompts.takeMessage() + prompts.reason, "Error loading filebad.obcType mismatch");
    open("bad.obc", "title only");
    EXPECT_EQ(prompts.takeMessage(), "Error loading filebad.obc");
    EXPECT_EQ(status(), "Default values loaded");
    EXPECT_EQ(askedBySave(), "save " + folder.path() + "|") << "the file of before is not overwritten";

    open("RUN.LOG", "Logged\r\n|-1\r\n010C|rpm|5|1|0|0|0\r\nEOP - end of Parms\r\nsamples");
    EXPECT_EQ(panel().pollTitle + panel().sampleDsp, "LoggedAuto");
    EXPECT_EQ(askedBySave(), "save " + folder.path() + "|RUN.obc") << "a log is not overwritten";
}

TEST_F(DesignerTest, TellsWhyItOpensInPlaceOfTheRunnerAndWhichFileIsMissing)
{
    values.isPollingWanted = true;
    values.parmSave = folder.path("gone.obc");
    designer->load();
    EXPECT_EQ(status(),
              "This design has events that are never polled (grey). Set how often, then Goto Polling.");
    EXPECT_EQ(askedBySave() + panel().fileLab, "gone.obc");
    values.isPollingWanted = true;
    designer->load();
    EXPECT_EQ(status(), "Default Settings (22 events) - press Goto Polling");
}

TEST_F(DesignerTest, OpensTheFileOfTheStartAsFromTheMenu)
{
    values.designToOpen = folder.path("car.obc");
    folder.write(values.designToOpen, "Car\n|200\n010C|rpm|5|1|0\n");
    designer->load();
    EXPECT_EQ(status() + values.parmSaveFile + values.parmInitDir, "car.obc loadedcar.obc" + folder.path());
    leaveAndComeBack();
    EXPECT_EQ(status(), "Car (1 events)") << "once";
}

TEST_F(DesignerTest, EditsAreUndoneAndCommitsAreAllOrNothing)
{
    designer->setCell(0, GridColumn::description, "lamp");
    try {
        designer->setCell(0, GridColumn::offset, "x");
        ADD_FAILURE() << "x is no number";
    } catch (const RunTimeError& error) {
        EXPECT_TRUE(error.reason().starts_with("Row 1: the offset takes a whole number"));
    }
    designer->sortBy(GridColumn::description);
    EXPECT_EQ(panel().sorting, GridSorting{GridColumn::description});
    designer->sortBy(GridColumn::description);
    EXPECT_EQ(panel().sorting, (GridSorting{GridColumn::description, true}));
    for (int i = 0; i < 3; ++i)
        designer->undo();
    EXPECT_EQ(row(0).description, "MIL Status");
    EXPECT_FALSE(panel().sorting || panel().canUndo);
    designer->redo();
    EXPECT_EQ(row(0).description, "lamp");

    prompts.typed = "zzz";
    EXPECT_TRUE(designer->addNew());
    EXPECT_EQ(status(), "zzz is no hexadecimal number; it is sent as it is *");
    EXPECT_FALSE(panel().canRedo) << "a new edit ends what was undone";
    EXPECT_FALSE(designer->addNew()) << "an empty answer adds nothing";
    designer->setTitle("full");
    designer->enableAll();
    for (int i = 0; i < 33; ++i)
        designer->duplicateRow(0);
    leaveAndComeBack();
    prompts.chosen = 0;
    designer->recover();
    EXPECT_EQ(status(), "full (65 events) recovered *");
    EXPECT_THROW(designer->saveAs(), TooManyEvents);
    EXPECT_EQ(dialogs.asked, "") << "what can't be saved needs no name";
    EXPECT_THROW(designer->commit(), TooManyEvents);
    EXPECT_EQ(design.events.size(), 64U) << "the first of them";
    designer->removeRow(0);
    design.places[1].reserved1 = 7;
    designer->commit();
    EXPECT_EQ(design.events.size(), 64U);
    EXPECT_EQ(design.places[1].reserved1, 7) << "stays with the place";
}

TEST_F(DesignerTest, ASampleIsOfferedUntilAFolderIsChosenAndNotOverwritten)
{
    values.isFolderRemembered = false;
    values.sampleFolder = folder.path();
    for (int i = 0; i < 2; ++i) {
        open("sample.obc", "Sample\n|200\n010C|rpm|5|1|0\n");
        EXPECT_EQ(dialogs.asked, "open " + folder.path() +
                                     "||OBD2 config files (*.obc)|*.obc|Zint log files (*.log)|*.log|" +
                                     textFileKinds.filter);
    }
    EXPECT_EQ(askedBySave() + panel().fileLab, "save /start|sample.obcsample.obc");
    leaveAndComeBack();
    EXPECT_EQ(askedBySave(), "save /start|");
}

TEST_F(DesignerTest, RecoversWhatWasLeftReplacedOrLost)
{
    designer->commit();
    EXPECT_FALSE(fileExists(folder.path("designs"))) << "nothing of the default is lost";
    designer->setCell(0, GridColumn::frequency, "0");
    designer->setTitle("left");
    EXPECT_EQ(keptFiles(), 1) << "a crash may come at any time";
    KeptDesigns elsewhere(folder.path(), [](auto) { return "today"; }); // of another program
    EXPECT_TRUE(elsewhere.list({}).empty()) << "this one is being edited";
    leaveAndComeBack();
    prompts.typed = "ATH1";
    designer->askInitSequence();
    designer->commit();
    leaveAndComeBack(); // from the runner
    EXPECT_TRUE(panel().isModified);
    designer->setTitle("replaced");
    designer->newDesign();
    EXPECT_EQ(keptFiles(), 2) << "it went on being one design";
    const auto listed = elsewhere.list({});

    prompts.chosen = 0;
    designer->recover();
    EXPECT_EQ(
        prompts.question,
        "Recover Unsaved Design\nUnsaved designs\n"
        "today   replaced (22 events): without: 0101 MIL Status, 0102 unused and 7 more; init commands ATH1\n"
        "today   left (22 events): other rows: 0104 Calculated Engine Load");
    EXPECT_EQ(panel().pollPrefix + status(), "ATH1replaced (22 events) recovered *");
    EXPECT_THROW(elsewhere.bringBack(listed.at(0)), FileError);
    prompts.chosen = 0;
    designer->recover();
    EXPECT_EQ(panel().pollTitle, "left") << "and the one before can still be recovered";
    EXPECT_EQ(row(0).frequency, 0) << "disabled rows come back too";
    dialogs.chosen = folder.path("car.obc");
    EXPECT_EQ(askedBySave(), "save /start|");
    EXPECT_EQ(keptFiles(), 1) << "what is saved need not be kept";
    designer->setTitle("all rows polled");
    EXPECT_EQ(keptFiles(), 2);
    designer->save();
    EXPECT_EQ(keptFiles(), 1) << "though saving changed nothing in the grid";
    leaveAndComeBack();
    EXPECT_EQ(status(), "all rows polled (21 events)");
    std::filesystem::remove_all(utf8Path(folder.path("designs")));
    folder.write(folder.path("designs"), "no folder");
    designer->setTitle("x");
    EXPECT_TRUE(status().starts_with("Unsaved changes can't be kept: "));
}

TEST_F(DesignerTest, PreparesPolling)
{
    prompts.typed = "atsh 81 10 f1";
    designer->askInitSequence();
    prompts.typed = "ATZ";
    designer->askInitSequence();
    EXPECT_EQ(prompts.question, "Init Cmds\nExtra Initialization Commands ATSH 81 10 F1");
    EXPECT_EQ(prompts.takeMessage(), "ATZ would interfere will ability to recognize poll data");
    const auto speeds = [this] { return panel().sampleDsp + " " + speedText(design.sampleSpeed); };
    designer->movePollSpeed(101);
    EXPECT_EQ(speeds(), "100ms 200ms") << "the slider shows only";
    designer->clickAutoSpeed(true);
    EXPECT_EQ(speeds(), "Auto Auto");
    designer->clickAutoSpeed(false);
    EXPECT_EQ(speeds(), "200ms 200ms");
    values.requestSeconds = 0.05;
    designer->calculateOffsets();
    EXPECT_EQ(row(1).offset, 9);
    EXPECT_TRUE(panel().costLab.ends_with("; as fast as the last run, 0.11 s")) << panel().costLab;
}

TEST_F(DesignerTest, DisablesWhatTheVehicleDoesNotSupport)
{
    EXPECT_EQ(verify("NO DATA\r\r>"), "com1 ClosedPlease try again, is possible ignition not ON");
    EXPECT_TRUE(panel().labelStats.ends_with("Errors: 1"));
    EXPECT_EQ(verify("41 00 BE 1G A8 13 \r\r>"),
              "com1 ClosedGarbled OBD2 0100 response (BE 1G A8 13 ), try again");
    std::string rows = "t\n|200\n0104|x|0|9|8\n";
    for (const char* supported : {"010C", "0105", "0120", "01", "01xx", "0904", "2101", "01FFFFFFFFFF"})
        rows += supported + std::string("|x|0|9|8\n");
    open("car.obc", rows);
    EXPECT_EQ(verify("41 00 BE 1F A8 13 \r41 00 00 00 00 00 \r\r>"),
              "com1 Closed - 1 of 9 events disabled. This is a hint: see Help. *");
    EXPECT_EQ(row(0).frequency + row(0).offset, 0) << "0104, by a bit order of its own";
    EXPECT_EQ(design.events[0].frequency, 9) << "only the grid changes";
    EXPECT_TRUE(values.carSupport.supported.test(0x04)) << "what is known of the car goes by the standard";
    EXPECT_FALSE(values.carSupport.told.test(0x21));
}

TEST_F(DesignerTest, TheSupportCheckEndsWithTheTimeOutOrTheAdapter)
{
    EXPECT_EQ(verify(""), "com1 Reading Data");
    adapter.sendNotice(PortNotice::unexplained);
    EXPECT_EQ(status(), "com1 - unhandled comm Event: 0");
    timer.tick();
    EXPECT_EQ(prompts.takeMessage() + status(), std::string(AdapterLink::notRespondingText) + "com1 Closed");
    EXPECT_TRUE(panel().labelStats.ends_with("Errors: 2"));
    EXPECT_EQ(values.lastFailureText, "") << "that is Check Engine's";
    adapter.expect("ATZ\r");
    designer->verifySupport();
    adapter.vanish();
    EXPECT_EQ(status(), "com1 - adapter disconnected");
}

} // namespace
} // namespace zint
