#include "dtcdb/accessDatabase.h"
#include "dtcdb/dtcEditor.h"
#include "shared/fileError.h"
#include "support/scriptedDialogs.h"
#include "support/scriptedPrompts.h"
#include "support/temporaryFolder.h"

#include <SQLiteCpp/SQLiteCpp.h>

namespace zint {
namespace {

/// An editor whose database is not there yet.
struct DtcEditorTest : testing::Test {
    TemporaryFolder folder;
    ScriptedPrompts prompts;
    ScriptedDialogs dialogs;
    ProgramValues values = [this] {
        ProgramValues start;
        start.parmDTCdb = folder.path("dtc.mdb");
        start.descriptionsFile = folder.path("dtc.txt");
        return start;
    }();
    std::string focused; ///< the box that got the focus last, and the cursor's place
    DtcEditor editor{{prompts, dialogs, values, std::chrono::milliseconds(1)}};

    DtcEditorTest()
    {
        editor.onFocus = [this](DtcEditor::Box box, std::optional<std::size_t> place) {
            focused = box == &DtcRecord::code          ? "code"
                      : box == &DtcRecord::description ? "description"
                                                       : "notes";
            focused += place ? " " + std::to_string(*place) : "";
        };
    }

    void openWith(const std::string& lines)
    {
        TemporaryFolder::write(values.descriptionsFile, lines);
        setUpDtcDatabase(values.parmDTCdb, values.descriptionsFile, unwatched);
        editor.changeName(values.parmDTCdb);
        editor.pressControl();
    }

    void importFrom(const std::string& file, const std::string& lines)
    {
        TemporaryFolder::write(file, lines);
        editor.changeTextFile(file);
        editor.pressImport();
    }

    void type(const std::string& code, const std::string& description, const std::string& notes = {})
    {
        editor.type(&DtcRecord::code, code);
        editor.type(&DtcRecord::description, description);
        editor.type(&DtcRecord::notes, notes);
    }

    /// Presses a button. @return the code that is shown then, and the status
    std::string press(void (DtcEditor::*button)())
    {
        (editor.*button)();
        return shown();
    }

    std::string search(const std::string& code)
    {
        editor.pressSearch(code);
        return shown();
    }

    std::string save(const std::string& code, const std::string& description)
    {
        focused.clear();
        type(code, description);
        editor.pressSave();
        return status() + (panel().isEditing ? " > " + focused : "");
    }

    std::string shown() const { return panel().record.code + "|" + status(); }
    const DtcEditPanel& panel() const { return editor.panel(); }
    const std::string& status() const { return editor.panel().statusBox; }

    /// Which buttons can be pressed.
    std::string enabled() const
    {
        const DtcEditPanel& p = panel();
        const std::pair<const char*, bool> all[] = {{"control ", p.DTCcontrol.enabled},
                                                    {"name ", p.dtcDBname.enabled},
                                                    {"add ", p.canAdd},
                                                    {"change ", p.canChange},
                                                    {"undo ", p.canUndoDelete},
                                                    {"browse ", p.canBrowse},
                                                    {"import ", p.canImport},
                                                    {"export ", p.canExport},
                                                    {"skipped ", p.canShowSkipped},
                                                    {"save ", p.isEditing}};
        std::string names;
        for (const auto& [name, isEnabled] : all)
            names += isEnabled ? name : "";
        return names;
    }
};

TEST_F(DtcEditorTest, MakesOpensAndClosesADatabase)
{
    EXPECT_EQ(panel().DTCcontrol.caption, "Create New DB");
    EXPECT_EQ(panel().dtcDBname.text + panel().DTCtext, values.parmDTCdb + values.descriptionsFile);
    EXPECT_EQ(enabled(), "control name ");
    const std::string path = folder.path("new \xC3\xA4.mdb");
    editor.changeName(std::filesystem::relative(utf8Path(path)).string());
    EXPECT_EQ(press(&DtcEditor::pressControl), "|Press Add or use Import to add records");
    EXPECT_EQ(utf8Text(utf8Path(values.parmDTCdb).lexically_normal()), path)
        << "the same file from wherever the program is started";
    EXPECT_EQ(panel().DTCcontrol.caption + panel().DTCframe,
              "Close DBCurrent DTC Record (0 Record(s) Total)");
    EXPECT_EQ(enabled(), "control add import export ");

    importFrom(values.descriptionsFile, "P0300,Misfire\nnothing\n");
    EXPECT_EQ(enabled(), "control add change browse import export skipped ");
    EXPECT_EQ(press(&DtcEditor::pressControl), "|DB is CLOSED");
    EXPECT_EQ(panel().DTCcontrol.caption + panel().DTCframe, "Open DBCurrent DTC Record");
    EXPECT_EQ(enabled(), "control name ");
    EXPECT_EQ(press(&DtcEditor::pressControl), "P0300|DB is OPEN, DTC Editor Ready");
    EXPECT_EQ(enabled(), "control add change browse import export ") << "other lines were skipped before";
    EXPECT_EQ(panel().DTCframe, "Current DTC Record (1 Record(s) Total)");
}

TEST_F(DtcEditorTest, TellsWhyAFileCannotBeOpenedOrMade)
{
    const std::string text = folder.path("notes.txt");
    TemporaryFolder::write(text, "no database");
    const std::string before = values.parmDTCdb;
    const auto failsWith = [this](const std::string& why) {
        editor.pressControl();
        EXPECT_EQ(prompts.takeMessage(), "Error opening DTC DB, please check filename");
        EXPECT_NE(prompts.reason.find(why), std::string::npos) << prompts.reason;
        EXPECT_EQ(enabled(), "control name ");
    };
    editor.changeName(text);
    EXPECT_EQ(panel().DTCcontrol.caption, "Open DB");
    failsWith("no database of this program");
    editor.changeName(folder.path("none/dtc.mdb"));
    failsWith("No such file or directory");
    editor.changeName("");
    failsWith("");
    editor.changeName(folder.path("sudden.mdb"));
    TemporaryFolder::write(folder.path("sudden.mdb"), "somebody's"); // between the look and the press
    failsWith("File exists");
    EXPECT_EQ(contents(folder.path("sudden.mdb")), "somebody's");
    EXPECT_EQ(panel().DTCcontrol.caption, "Open DB");
    EXPECT_EQ(values.parmDTCdb, before);

    dialogs.chosen = text;
    editor.pressBrowseDb();
    EXPECT_EQ(panel().dtcDBname.text, text);
    EXPECT_EQ(dialogs.asked, "open ||Access db files (*.mdb)|*.mdb|All files (*.*)|*.*");
    EXPECT_EQ(values.parmInitDir, folder.path());
    editor.pressBrowseDb(); // and cancels
    EXPECT_EQ(panel().dtcDBname.text, text);
    values.parmInitDir.clear();
    dialogs.chosen = folder.path("codes.txt");
    editor.pressBrowseText();
    EXPECT_EQ(panel().DTCtext + values.parmInitDir, folder.path("codes.txt") + folder.path());
}

TEST_F(DtcEditorTest, MovesInOrderAndFindsTheClosestCode)
{
    openWith("U0100,d\nP0310,c\nP0300,b\nB1000,a\n");
    EXPECT_EQ(press(&DtcEditor::pressPrev), "B1000|");
    EXPECT_EQ(press(&DtcEditor::pressNext), "P0300|");
    EXPECT_EQ(press(&DtcEditor::pressLast), "U0100|");
    EXPECT_EQ(press(&DtcEditor::pressNext), "U0100|");
    EXPECT_EQ(press(&DtcEditor::pressPrev), "P0310|");
    EXPECT_EQ(press(&DtcEditor::pressFirst), "B1000|");
    const std::string closest = "|DTC not found, using closest match";
    const std::string frame = "Current DTC Record (4 Record(s) Total)";
    EXPECT_EQ(search("p0305"), "P0310" + closest);
    EXPECT_EQ(panel().DTCframe, frame + ": P0305 has no description - next is P0310");
    EXPECT_EQ(search("U1000"), "U0100" + closest);
    EXPECT_EQ(panel().DTCframe, frame + ": U1000 is the maker's own code - the last one is U0100");
    EXPECT_EQ(search(""), "B1000" + closest);
    EXPECT_EQ(panel().DTCframe, frame);
    EXPECT_EQ(search("p0300"), "P0300|");

    DtcDatabase::open(values.parmDTCdb)->add({"P0301", "of another program", ""});
    EXPECT_EQ(press(&DtcEditor::pressNext), "P0301|");
    EXPECT_EQ(panel().DTCframe, "Current DTC Record (5 Record(s) Total)");
}

TEST_F(DtcEditorTest, FindsWordsOfDescriptions)
{
    openWith("P0301,Cylinder 1 misfire\nP0300,Random MISFIRE\nP0100,100% of_all\nP0101,100 offal\n");
    const auto find = [this](const char* words, std::optional<std::size_t> chosen) {
        prompts.typed = words;
        prompts.chosen = chosen;
        prompts.question.clear();
        return press(&DtcEditor::pressFindWords);
    };
    EXPECT_EQ(find("fire  cyl", 0), "P0301|");
    EXPECT_EQ(prompts.question, "Find Words\n1 description(s) found:\nP0301 Cylinder 1 misfire");
    EXPECT_EQ(find("misfire", {}), "P0301|") << "a Cancel";
    EXPECT_EQ(prompts.question,
              "Find Words\n2 description(s) found:\nP0300 Random MISFIRE\nP0301 Cylinder 1 misfire");
    EXPECT_EQ(find("0% of_a", 0), "P0100|") << "no patterns";
    EXPECT_EQ(find("x' OR", {}), "P0100|No description holds \"x' OR\"");
    prompts.typed.reset();
    EXPECT_EQ(press(&DtcEditor::pressFindWords), "P0100|");
    EXPECT_TRUE(prompts.question.ends_with("x' OR")) << "the words of the last time";
}

TEST_F(DtcEditorTest, AddsARecord)
{
    openWith("P0300,Misfire,n\n");
    EXPECT_EQ(press(&DtcEditor::pressAdd), "Pxxyy|");
    EXPECT_EQ(enabled(), "save ");
    EXPECT_EQ(panel().record.description + panel().record.notes, "");
    EXPECT_EQ(focused, "code");
    EXPECT_EQ(save("", ""), "Field cannot be blank > code");
    EXPECT_EQ(save("P0301", ""), "Field cannot be blank > description");
    EXPECT_EQ(save("P03G1", "d"), "Invalid DTC Code > code 3");
    EXPECT_EQ(save("P0300", "d"), "Duplicate DTC code found > code");
    EXPECT_EQ(panel().record.description, "d") << "what was typed stays";
    type("P0299", "Underboost", "turbo");
    EXPECT_EQ(press(&DtcEditor::pressSave), "P0299|DTC saved");
    EXPECT_EQ(panel().record.notes, "turbo");
    EXPECT_EQ(panel().DTCframe, "Current DTC Record (2 Record(s) Total)");
    EXPECT_EQ(press(&DtcEditor::pressNext), "P0300|");
    editor.pressAdd();
    EXPECT_EQ(press(&DtcEditor::pressCancel), "P0300|DTC add canceled") << "the record that was shown before";
}

TEST_F(DtcEditorTest, ChangesARecord)
{
    openWith("P0300,Misfire,n\nP0301,Cylinder 1,n\n");
    editor.type(&DtcRecord::description, "not in edit mode");
    EXPECT_EQ(panel().record.description, "Misfire");
    editor.pressEdit();
    EXPECT_EQ(focused, "description");
    EXPECT_EQ(save("P0301", "d"), "Code is already in use > code");
    EXPECT_EQ(save("P0400", "EGR flow"), "DTC saved");
    EXPECT_EQ(press(&DtcEditor::pressPrev), "P0301|");
    editor.pressEdit();
    type("P0302", "never");
    EXPECT_EQ(press(&DtcEditor::pressCancel), "P0301|DTC update canceled");
    EXPECT_EQ(panel().record.description, "Cylinder 1");
}

TEST_F(DtcEditorTest, SeesWhatAnotherProgramDoesToTheRecord)
{
    openWith("P0300,Misfire\nP0301,Cylinder 1\n");
    const auto other = DtcDatabase::open(values.parmDTCdb);
    editor.pressEdit();
    other->update(*other->first(), {"P0300", "changed", std::string(300, 'n')});
    EXPECT_EQ(
        save("P0300", "mine"),
        "Another program has changed the record: Save again replaces that, Cancel shows it > description");
    EXPECT_EQ(other->first()->record.description, "changed");
    EXPECT_EQ(save("P0300", "mine"), "DTC saved");

    other->update(*other->first(), {"P0300", std::string(150, 'd'), ""});
    EXPECT_EQ(press(&DtcEditor::pressEdit), "P0300|The texts are longer than the boxes: Save cuts them");
    EXPECT_EQ(panel().record.description.size(), 100U);
    EXPECT_EQ(press(&DtcEditor::pressSave), "P0300|DTC saved");
    EXPECT_EQ(other->first()->record.description.size(), 100U);

    editor.pressEdit();
    other->remove(*other->first());
    EXPECT_EQ(save("P0300", "d"), "The record is gone: another program has deleted it > code");
    EXPECT_EQ(press(&DtcEditor::pressCancel), "P0301|DTC update canceled");
    const auto record = other->first()->record;
    other->remove(*other->first());
    other->add({"P0302", "in its place", ""});
    EXPECT_EQ(press(&DtcEditor::pressDelete), "P0302|The record is gone, this is the next one");
    other->remove(*other->first());
    EXPECT_EQ(press(&DtcEditor::pressEdit), "|The record is gone, this is the next one");
    EXPECT_EQ(enabled(), "control add import export ");
}

TEST_F(DtcEditorTest, DeletesAndBringsBackUntilTheNextChange)
{
    openWith("P0300,a\nP0301,b\nP0302,c\n");
    editor.pressNext();
    EXPECT_EQ(press(&DtcEditor::pressDelete), "P0302|DTC deleted");
    EXPECT_EQ(panel().DTCframe, "Current DTC Record (2 Record(s) Total)");
    EXPECT_EQ(press(&DtcEditor::pressDelete), "P0300|DTC deleted") << "the last one";
    editor.pressFirst();
    EXPECT_EQ(press(&DtcEditor::pressUndoDelete), "P0302|The deleted record is back");
    EXPECT_EQ(panel().DTCframe, "Current DTC Record (2 Record(s) Total)");
    EXPECT_EQ(enabled().find("undo"), std::string::npos) << "one, once";

    editor.pressDelete();
    DtcDatabase::open(values.parmDTCdb)->add({"P0302", "of another program", ""});
    EXPECT_EQ(press(&DtcEditor::pressUndoDelete), "P0302|Duplicate DTC code found");
    EXPECT_EQ(panel().record.description, "of another program");
    editor.pressEdit();
    EXPECT_EQ(enabled(), "save ");
    editor.pressSave();
    EXPECT_EQ(enabled().find("undo"), std::string::npos);

    editor.pressDelete();
    EXPECT_EQ(press(&DtcEditor::pressDelete), "|DTC deleted");
    EXPECT_EQ(enabled(), "control add undo import export ");
    editor.pressAdd();
    EXPECT_EQ(press(&DtcEditor::pressCancel), "|DTC add canceled");
    importFrom(values.descriptionsFile, "P0300,a\n");
    EXPECT_EQ(enabled().find("undo"), std::string::npos);
}

TEST_F(DtcEditorTest, ImportsAndTellsWhatWasSkipped)
{
    openWith("P0300,Misfire,n\n");
    const std::string file = folder.path("more.txt");
    importFrom(file, "P0299,Underboost\nP0300,\"again\"\nX,no\n");
    EXPECT_EQ(shown(), "P0299|1 DTC('s) add, 1 skip, 1dup, 3 total");
    EXPECT_EQ(panel().textHint, "1 line(s): quotation marks were taken as text: choose Spreadsheet CSV");
    EXPECT_EQ(panel().DTCframe, "Current DTC Record (2 Record(s) Total)");
    editor.showSkipped();
    EXPECT_EQ(prompts.takeMessage(), "Line 3: \"X\" is no code\r\n");
    editor.pressEdit();
    EXPECT_FALSE(panel().canShowSkipped) << "while a record is edited";
    editor.pressCancel();
    editor.setOptions({.dupOver = true});
    editor.pressImport();
    EXPECT_EQ(status(), "0 DTC('s) add, 1 skip, 2upd, 3 total");

    editor.pressLast();
    editor.changeTextFile(folder.path("none.txt"));
    EXPECT_THROW(editor.pressImport(), FileError);
    EXPECT_EQ(shown(), "P0300|Import stopped, the table is as it was");
    EXPECT_FALSE(panel().canShowSkipped);
    prompts.stopsWork = true;
    std::string many;
    for (int i = 0; i < 1100; ++i)
        many += "P0001,d\n";
    importFrom(file, many);
    EXPECT_EQ(shown(), "P0300|Import stopped, the table is as it was");
    EXPECT_EQ(panel().textHint, "");
}

TEST_F(DtcEditorTest, ExportsAndAsksBeforeItReplacesWhatItDidNotWrite)
{
    openWith("P0300,Misfire,n\nP0301,Cylinder 1\n");
    const std::string shipped = contents(values.descriptionsFile);
    const std::string stopped = "Export stopped, the file is as it was";
    editor.pressLast();
    prompts.answer = false;
    EXPECT_EQ(press(&DtcEditor::pressExport), "P0301|" + stopped);
    EXPECT_NE(prompts.question.find("It is the file that comes with the program"), std::string::npos);
    EXPECT_EQ(contents(values.descriptionsFile), shipped);

    const std::string file = folder.path("list.csv");
    editor.changeTextFile(file);
    editor.setOptions({.noNotes = true});
    EXPECT_EQ(press(&DtcEditor::pressExport), "P0300|2 DTC('s) exported")
        << "nothing is replaced, no question";
    EXPECT_EQ(contents(file), "P0300,Misfire\r\nP0301,Cylinder 1\r\n");
    editor.setOptions({});
    EXPECT_EQ(press(&DtcEditor::pressExport), "P0300|2 DTC('s) exported")
        << "it has written that file itself";
    EXPECT_TRUE(panel().textHint.starts_with("1 record(s) will not read back as they are"))
        << panel().textHint;
    importFrom(folder.path("mine.txt"), "P0302,Cylinder 2\n");
    prompts.answer = true;
    EXPECT_EQ(press(&DtcEditor::pressExport), "P0300|3 DTC('s) exported");
    EXPECT_EQ(prompts.question, "Export\n\"" + folder.path("mine.txt") +
                                    "\" exists. Shall the exported records take the place of what is in it?");
    editor.changeTextFile(folder.path("none/a.txt"));
    EXPECT_THROW(editor.pressExport(), FileError);
    EXPECT_EQ(status(), stopped);
}

TEST_F(DtcEditorTest, ALockedDatabaseLosesNothing)
{
    openWith("P0300,Misfire,n\n");
    SQLite::Database other(values.parmDTCdb, SQLite::OPEN_READWRITE);
    other.exec("BEGIN EXCLUSIVE");
    EXPECT_THROW(editor.pressNext(), DatabaseError);
    EXPECT_EQ(panel().record.code + panel().DTCframe, "P0300Current DTC Record (1 Record(s) Total)");
    other.exec("ROLLBACK");
    editor.pressAdd();
    type("P0301", "Cylinder 1");
    other.exec("BEGIN IMMEDIATE");
    EXPECT_THROW(editor.pressSave(), DatabaseError);
    EXPECT_EQ(panel().isEditing ? panel().record.description : "", "Cylinder 1");
    other.exec("ROLLBACK");
    EXPECT_EQ(press(&DtcEditor::pressSave), "P0301|DTC saved");

    editor.pressEdit();
    other.exec("BEGIN EXCLUSIVE");
    EXPECT_THROW(editor.pressCancel(), DatabaseError);
    EXPECT_FALSE(panel().isEditing) << "a file that fails keeps nobody in edit mode";
    EXPECT_EQ(panel().record.description, "Cylinder 1");
}

TEST_F(DtcEditorTest, OpensForReadingWhatMayNotBeWritten)
{
    setUpDtcDatabase(values.parmDTCdb, ZINT_DATA_FOLDER "/dtc.txt", unwatched);
    std::string bytes = contents(values.parmDTCdb);
    bytes[18] = '\3'; // the version that is needed to write
    TemporaryFolder::write(values.parmDTCdb, bytes);
    editor.changeName(values.parmDTCdb);
    EXPECT_EQ(press(&DtcEditor::pressControl),
              "B0001|DB is OPEN, but can only be read: you may not write to the file or its folder");
    EXPECT_EQ(enabled(), "control browse export ");
}

TEST_F(DtcEditorTest, CopiesTheRecordsOfAnAccessDatabase)
{
    if (!canReadAccessDatabases())
        GTEST_SKIP() << "built without the library";
    const std::string jet = folder.path("old.mdb");
    const std::string before = contents(ZINT_ACCESS_FILES "/jet3.mdb");
    TemporaryFolder::write(jet, before);
    editor.changeName(jet);
    prompts.answer = false;
    editor.pressControl();
    EXPECT_FALSE(panel().isOpen);
    prompts.answer = true;
    dialogs.chosen = folder.path("fresh.mdb");
    EXPECT_EQ(press(&DtcEditor::pressControl), "P0133|64 of 66 record(s) copied")
        << "but a code in small letters that is there in capitals, and a long one";
    EXPECT_EQ(dialogs.asked.substr(0, dialogs.asked.rfind("Access")),
              "save " + folder.path() + "|old-copy.mdb|");
    EXPECT_EQ(values.parmDTCdb, folder.path("fresh.mdb"));
    EXPECT_EQ(panel().dtcDBname.text, values.parmDTCdb);
    EXPECT_EQ(contents(jet), before);
}

} // namespace
} // namespace zint
