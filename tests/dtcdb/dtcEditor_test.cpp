#include "dtcdb/accessDatabase.h"
#include "dtcdb/dtcEditor.h"
#include "shared/fileError.h"
#include "support/accessFile.h"
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
    DtcEditor editor{{prompts, dialogs, values}};

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

    void type(const std::string& code, const std::string& description, const std::string& notes = {})
    {
        editor.type(&DtcRecord::code, code);
        editor.type(&DtcRecord::description, description);
        editor.type(&DtcRecord::notes, notes);
    }

    void add(const std::string& code)
    {
        editor.pressAdd();
        type(code, "text of " + code);
        editor.pressSave();
    }

    /// Presses a button. @return the code that is shown then
    std::string press(void (DtcEditor::*button)())
    {
        (editor.*button)();
        return panel().record.code;
    }

    std::string search(const std::string& code)
    {
        editor.pressSearch(code);
        return panel().record.code + "|" + panel().statusBox;
    }

    const DtcEditPanel& panel() const { return editor.panel(); }
    const std::string& status() const { return editor.panel().statusBox; }
};

TEST_F(DtcEditorTest, MakesOpensAndClosesADatabase)
{
    EXPECT_EQ(panel().DTCcontrol.caption, "Create New DB");
    EXPECT_EQ(panel().dtcDBname.text, values.parmDTCdb);
    EXPECT_EQ(panel().DTCtext, values.descriptionsFile);
    EXPECT_FALSE(panel().canAdd || panel().canBrowse || panel().canChange || panel().canExchange);

    const std::string path = folder.path("new \xC3\xA4.mdb");
    editor.changeName(path);
    editor.pressControl();
    EXPECT_EQ(panel().DTCcontrol.caption, "Close DB");
    EXPECT_FALSE(panel().dtcDBname.enabled);
    EXPECT_EQ(status(), "Press Add or use Import to add records");
    EXPECT_EQ(panel().DTCframe, "Current DTC Record (0 Record(s) Total)");
    EXPECT_TRUE(panel().canAdd && panel().canExchange);
    EXPECT_FALSE(panel().canBrowse || panel().canChange);
    EXPECT_EQ(values.parmDTCdb, path);

    add("P0300");
    editor.pressControl();
    EXPECT_EQ(status(), "DB is CLOSED");
    EXPECT_EQ(panel().DTCcontrol.caption, "Open DB");
    EXPECT_EQ(panel().record.code, "");
    EXPECT_TRUE(panel().dtcDBname.enabled);
    EXPECT_FALSE(panel().canAdd || panel().canBrowse);

    editor.pressControl();
    EXPECT_EQ(status(), "DB is OPEN, DTC Editor Ready");
    EXPECT_EQ(panel().record.description, "text of P0300");
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
        EXPECT_FALSE(panel().canAdd);
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
    EXPECT_EQ(panel().DTCcontrol.caption, "Create New DB");
    failsWith("File exists");
    EXPECT_EQ(contents(folder.path("sudden.mdb")), "somebody's");
    EXPECT_EQ(panel().DTCcontrol.caption, "Open DB");
    TemporaryFolder::write(folder.path("jet.mdb"), std::string("\0\1\0\0Standard Jet DB\0", 20) + "x");
    editor.changeName(folder.path("jet.mdb"));
    failsWith("jet.mdb");

    SQLite::Database(folder.path("foreign.mdb"), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE)
        .exec("CREATE TABLE DTCset (Code, Description, Notes)");
    editor.changeName(folder.path("foreign.mdb"));
    failsWith("no index \"DTCndx\"");
    EXPECT_EQ(values.parmDTCdb, before);

    dialogs.chosen = text;
    editor.pressBrowseDb();
    EXPECT_EQ(panel().dtcDBname.text, text);
    EXPECT_EQ(dialogs.asked, "open ||Access db files (*.mdb)|*.mdb|All files (*.*)|*.*");
    EXPECT_EQ(values.parmInitDir, folder.path());
    editor.pressBrowseDb(); // and cancels
    EXPECT_EQ(panel().dtcDBname.text, text);
}

TEST_F(DtcEditorTest, MovesInOrderAndFindsTheClosestCode)
{
    openWith("U0100,d\nP0310,c\nP0300,b\nB1000,a\n");
    EXPECT_EQ(panel().record.code, "B1000");
    EXPECT_EQ(press(&DtcEditor::pressPrev), "B1000");
    EXPECT_EQ(press(&DtcEditor::pressNext), "P0300");
    EXPECT_EQ(press(&DtcEditor::pressLast), "U0100");
    EXPECT_EQ(press(&DtcEditor::pressNext), "U0100");
    EXPECT_EQ(press(&DtcEditor::pressPrev), "P0310");
    EXPECT_EQ(press(&DtcEditor::pressFirst), "B1000");
    const std::string closest = "|DTC not found, using closest match";
    EXPECT_EQ(search("P0305"), "P0310" + closest);
    EXPECT_EQ(search("U9"), "U0100" + closest);
    EXPECT_EQ(search(""), "B1000" + closest);
    EXPECT_EQ(search("p0300"), "P0300|");

    DtcDatabase::open(values.parmDTCdb)->add({"P0301", "of another program", ""});
    EXPECT_EQ(press(&DtcEditor::pressNext), "P0301");
    EXPECT_EQ(panel().DTCframe, "Current DTC Record (5 Record(s) Total)");
}

TEST_F(DtcEditorTest, AddsARecord)
{
    openWith("P0300,Misfire,n\n");
    editor.pressAdd();
    EXPECT_TRUE(panel().isEditing);
    EXPECT_FALSE(panel().canAdd || panel().canBrowse || panel().canChange || panel().canExchange ||
                 panel().DTCcontrol.enabled);
    EXPECT_EQ(panel().record.code + panel().record.description + panel().record.notes, "Pxxyy");
    EXPECT_EQ(focused, "code");

    const auto refused = [this](const std::string& code, const std::string& description) {
        focused.clear();
        type(code, description);
        editor.pressSave();
        EXPECT_TRUE(panel().isEditing);
        EXPECT_EQ(panel().record.code, code) << "what was typed stays";
        return status() + " > " + focused;
    };
    EXPECT_EQ(refused("", ""), "Field cannot be blank > code");
    EXPECT_EQ(refused("P0301", ""), "Field cannot be blank > description");
    EXPECT_EQ(refused("P03G1", "d"), "Invalid DTC Code > code 3");
    EXPECT_EQ(refused("P0300", "d"), "Duplicate DTC code found > code");
    type("P0299", "Underboost", "turbo");
    editor.pressSave();
    EXPECT_EQ(status(), "DTC saved");
    EXPECT_FALSE(panel().isEditing);
    EXPECT_EQ(panel().record.notes, "turbo");
    EXPECT_EQ(panel().DTCframe, "Current DTC Record (2 Record(s) Total)");
    EXPECT_EQ(press(&DtcEditor::pressNext), "P0300");

    editor.pressAdd();
    editor.pressCancel();
    EXPECT_EQ(status(), "DTC add canceled");
    EXPECT_EQ(panel().record.code, "P0300") << "the record that was shown before";
}

TEST_F(DtcEditorTest, ChangesARecord)
{
    openWith("P0300,Misfire,n\nP0301,Cylinder 1,n\n");
    editor.type(&DtcRecord::description, "not in edit mode");
    EXPECT_EQ(panel().record.description, "Misfire");
    editor.pressEdit();
    EXPECT_EQ(focused, "description");
    type("P0301", "d");
    editor.pressSave();
    EXPECT_EQ(status(), "Code is already in use");
    EXPECT_TRUE(panel().isEditing);
    type("P0400", "EGR flow");
    editor.pressSave();
    EXPECT_EQ(status(), "DTC saved");
    EXPECT_EQ(panel().record.code, "P0400");
    EXPECT_EQ(press(&DtcEditor::pressPrev), "P0301");

    editor.pressEdit();
    type("P0302", "never");
    editor.pressCancel();
    EXPECT_EQ(status(), "DTC update canceled");
    EXPECT_EQ(panel().record.description, "Cylinder 1");

    editor.pressEdit();
    const auto other = DtcDatabase::open(values.parmDTCdb);
    other->remove(other->find("P0301")->key);
    type("P0301", "d");
    editor.pressSave();
    EXPECT_EQ(status(), "The record is gone: another program has deleted it");
    editor.pressCancel();
    EXPECT_EQ(panel().record.code, "P0400");
    other->remove(other->first()->key);
    editor.pressEdit();
    EXPECT_EQ(status(), "The record is gone, this is the next one");
    EXPECT_FALSE(panel().isEditing || panel().canChange);
}

TEST_F(DtcEditorTest, DeletesAndShowsTheNextRecord)
{
    openWith("P0300,a\nP0301,b\nP0302,c\n");
    editor.pressNext();
    EXPECT_EQ(press(&DtcEditor::pressDelete), "P0302");
    EXPECT_EQ(status(), "DTC deleted");
    EXPECT_EQ(panel().DTCframe, "Current DTC Record (2 Record(s) Total)");
    EXPECT_EQ(press(&DtcEditor::pressDelete), "P0300") << "the last one";
    EXPECT_EQ(press(&DtcEditor::pressDelete), "");
    EXPECT_FALSE(panel().canBrowse || panel().canChange);
    editor.pressAdd();
    editor.pressCancel();
    EXPECT_EQ(status(), "DTC add canceled");
    EXPECT_EQ(panel().record.code, "");
    EXPECT_TRUE(panel().canAdd);
}

TEST_F(DtcEditorTest, ImportsAndExports)
{
    openWith("P0300,Misfire,n\n");
    const std::string file = folder.path("more.txt");
    dialogs.chosen = file;
    editor.pressBrowseText();
    EXPECT_EQ(panel().DTCtext, file);
    TemporaryFolder::write(file, "P0299,Underboost\nP0300,again\nX,no\n");
    editor.pressImport();
    EXPECT_EQ(status(), "1 DTC('s) add, 1 skip, 1dup, 3 total");
    EXPECT_EQ(panel().record.code, "P0299");
    EXPECT_EQ(panel().DTCframe, "Current DTC Record (2 Record(s) Total)");
    EXPECT_TRUE(panel().canShowSkipped);
    editor.showSkipped();
    EXPECT_EQ(prompts.takeMessage(), "Line 3: \"X\" is no code\r\n");

    editor.setOptions({.dupOver = true});
    editor.pressImport();
    EXPECT_EQ(status(), "0 DTC('s) add, 1 skip, 2upd, 3 total");
    editor.setOptions({.noNotes = true});
    editor.pressExport();
    EXPECT_EQ(status(), "2 DTC('s) exported");
    EXPECT_EQ(contents(file), "P0299,Underboost\r\nP0300,again\r\n");

    editor.changeTextFile(folder.path("none.txt"));
    EXPECT_THROW(editor.pressImport(), FileError);
    EXPECT_EQ(status(), "Import stopped, the table is as it was");
    std::string many;
    for (int i = 0; i < 1100; ++i)
        many += "nothing\n";
    TemporaryFolder::write(file, many);
    editor.changeTextFile(file);
    prompts.stopsWork = true;
    editor.pressImport();
    EXPECT_EQ(status(), "Import stopped, the table is as it was");
    prompts.stopsWork = false;
    editor.pressImport();
    editor.showSkipped();
    EXPECT_TRUE(prompts.takeMessage().ends_with("\r\nand 100 more\r\n"));
}

TEST_F(DtcEditorTest, ALockedDatabaseLosesNothing)
{
    openWith("P0300,Misfire,n\n");
    SQLite::Database other(values.parmDTCdb, SQLite::OPEN_READWRITE);
    other.exec("BEGIN EXCLUSIVE");
    EXPECT_THROW(editor.pressNext(), DatabaseError);
    EXPECT_EQ(panel().record.code, "P0300");
    other.exec("ROLLBACK");
    editor.pressAdd();
    type("P0301", "Cylinder 1");
    other.exec("BEGIN IMMEDIATE");
    EXPECT_THROW(editor.pressSave(), DatabaseError);
    EXPECT_TRUE(panel().isEditing);
    EXPECT_EQ(panel().record.description, "Cylinder 1");
    other.exec("ROLLBACK");
    editor.pressSave();
    EXPECT_EQ(status(), "DTC saved");

    editor.pressEdit();
    other.exec("BEGIN EXCLUSIVE");
    EXPECT_THROW(editor.pressCancel(), DatabaseError);
    EXPECT_FALSE(panel().isEditing) << "a file that fails keeps nobody in edit mode";
    EXPECT_EQ(panel().record.description, "Cylinder 1");
}

TEST_F(DtcEditorTest, CopiesTheRecordsOfAnAccessDatabase)
{
    if (!canReadAccessDatabases())
        GTEST_SKIP() << "built without the library";
    const std::string jet = folder.path("old.mdb");
    const std::string before = AccessFile{
        .rows = {
            {"P0300", "Misfire", "n"},
            {"p0300", "twice", ""},
            {"LONGCODE", "d", ""},
            {"P0301", "d", ""}}}.bytes();
    TemporaryFolder::write(jet, before);
    editor.changeName(jet);
    prompts.answer = false;
    editor.pressControl();
    EXPECT_FALSE(panel().isOpen);
    prompts.answer = true;
    dialogs.chosen = folder.path("fresh.mdb");
    editor.pressControl();
    EXPECT_EQ(dialogs.asked.substr(0, dialogs.asked.rfind("Access")),
              "save " + folder.path() + "|old-copy.mdb|");
    EXPECT_EQ(status(), "2 of 4 record(s) copied");
    EXPECT_EQ(panel().record.description, "Misfire");
    EXPECT_EQ(values.parmDTCdb, folder.path("fresh.mdb"));
    EXPECT_EQ(panel().dtcDBname.text, values.parmDTCdb);
    EXPECT_EQ(contents(jet), before);
}

} // namespace
} // namespace zint
