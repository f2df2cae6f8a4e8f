#include "dtcdb/accessDatabase.h"
#include "dtcdb/dtcEditor.h"
#include "shared/fileError.h"
#include "support/scriptedDialogs.h"
#include "support/scriptedPrompts.h"
#include "support/temporaryFolder.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include <map>
#include <sstream>

namespace zint {
namespace {

using Editor = DtcEditor;

const std::map<std::string, void (Editor::*)()> buttons{
    {"control", &Editor::pressControl}, {"add", &Editor::pressAdd},       {"first", &Editor::pressFirst},
    {"words", &Editor::pressFindWords}, {"edit", &Editor::pressEdit},     {"prev", &Editor::pressPrev},
    {"import", &Editor::pressImport},   {"save", &Editor::pressSave},     {"next", &Editor::pressNext},
    {"export", &Editor::pressExport},   {"cancel", &Editor::pressCancel}, {"last", &Editor::pressLast},
    {"undo", &Editor::pressUndoDelete}, {"delete", &Editor::pressDelete}};

/// An editor whose database is not there yet.
struct DtcEditorTest : testing::Test {
    TemporaryFolder folder;
    ScriptedPrompts prompts;
    ScriptedDialogs dialogs;
    ProgramValues values{.parmDTCdb = folder.path("dtc.mdb"), .descriptionsFile = folder.path("dtc.txt")};
    Editor editor{{prompts, dialogs, values, std::chrono::milliseconds(1)}};
    const DtcEditPanel& panel = editor.panel();

    void importFrom(const std::string& file, const std::string& lines)
    {
        TemporaryFolder::write(folder.path(file), lines);
        editor.changeTextFile(folder.path(file));
        editor.pressImport();
    }

    void openWith(const std::string& lines)
    {
        TemporaryFolder::write(values.descriptionsFile, lines);
        setUpDtcDatabase(values.parmDTCdb, values.descriptionsFile, unwatched);
        editor.changeName(values.parmDTCdb);
        editor.pressControl();
    }

    /// Presses buttons, and compares what is shown then: "first P0300|status/ next P0301|".
    void play(const std::string& steps)
    {
        std::istringstream script(steps);
        for (std::string button, then; script >> button && std::getline(script >> std::ws, then, '/');) {
            (editor.*buttons.at(button))();
            EXPECT_EQ(shown(), then) << button;
        }
    }

    std::string save(const std::string& code, const std::string& description)
    {
        editor.type(&DtcRecord::code, code);
        editor.type(&DtcRecord::description, description);
        editor.pressSave();
        return panel.statusBox;
    }

    std::string shown() const { return panel.record.code + "|" + panel.statusBox; }
};

TEST_F(DtcEditorTest, MakesOpensAndClosesADatabase)
{
    EXPECT_EQ(panel.DTCcontrol.caption + panel.dtcDBname.text + panel.DTCtext,
              "Create New DB" + values.parmDTCdb + values.descriptionsFile);
    const std::string path = folder.path("new \xC3\xA4.mdb");
    const auto working = std::filesystem::current_path();
    std::filesystem::current_path(utf8Path(folder.path()));
    editor.changeName(fileNamePart(path));
    play("control |Press Add or use Import to add records");
    EXPECT_EQ(utf8Path(values.parmDTCdb), utf8Path(path).make_preferred()) << "wherever one starts";
    EXPECT_EQ(panel.DTCcontrol.caption, "Close DB");
    importFrom("list", "P0300,Misfire\n");
    play("control |DB is CLOSED");
    EXPECT_EQ(panel.DTCframe + panel.DTCcontrol.caption, "Current DTC RecordOpen DB");
    play("control P0300|DB is OPEN, DTC Editor Ready");
    editor.pressControl();
    std::string bytes = contents(path);
    bytes[18] = '\3'; // the version that is needed to write
    TemporaryFolder::write(path, bytes);
    play("control P0300|DB is OPEN, but can only be read: you may not write to the file or its folder");
    std::filesystem::current_path(working);
}

TEST_F(DtcEditorTest, TakesFilesAndTellsWhyOneCannotBeOpenedOrMade)
{
    TemporaryFolder::write(folder.path("notes.txt"), "no database");
    for (const auto& [file, why] : {std::pair("notes.txt", "no database of this program"),
                                    {"none/dtc.mdb", "No such file or directory"}}) {
        editor.changeName(folder.path(file));
        play("control |");
        EXPECT_EQ(prompts.takeMessage(), "Error opening DTC DB, please check filename");
        EXPECT_NE(prompts.reason.find(why), std::string::npos) << prompts.reason;
        EXPECT_EQ(values.parmDTCdb, folder.path("dtc.mdb"));
    }
    dialogs.chosen = folder.path("notes.txt");
    editor.pressBrowseDb();
    EXPECT_EQ(dialogs.asked, "open ||Access db files (*.mdb)|*.mdb|All files (*.*)|*.*");
    EXPECT_EQ(std::exchange(values.parmInitDir, {}), folder.path());
    editor.pressBrowseDb(); // and cancels
    EXPECT_EQ(panel.dtcDBname.text + panel.DTCcontrol.caption, folder.path("notes.txt") + "Open DB");
    dialogs.chosen = folder.path("codes.txt");
    editor.pressBrowseText();
    EXPECT_EQ(panel.DTCtext + values.parmInitDir, folder.path("codes.txt") + folder.path());
}

TEST_F(DtcEditorTest, MovesInOrderAndFindsCodesAndWords)
{
    openWith("U0100,d\nP0310,100% of_all\nP0300,Random MISFIRE\nB1000,100 offal\n");
    play("prev B1000|/ next P0300|/ last U0100|/ next U0100|/ prev P0310|/ first B1000|");
    const std::tuple<const char*, const char*, std::string> rows[] = {
        {"", "B1000", "(4 Record(s) Total)"},
        {"p0305", "P0310", "P0305 has no description - next is P0310"},
        {"U1000", "U0100", "U1000 is the maker's own code - the last one is U0100"}};
    for (const auto& [code, found, note] : rows) {
        editor.pressSearch(code);
        EXPECT_EQ(shown(), found + std::string("|DTC not found, using closest match"));
        EXPECT_TRUE(panel.DTCframe.ends_with(" " + note)) << panel.DTCframe;
    }
    editor.pressSearch("p0300");
    EXPECT_EQ(shown(), "P0300|");
    DtcDatabase::open(values.parmDTCdb)->add({"p0301", "Cylinder 1 misfire", ""}); // by another program
    play("next p0301|/ prev P0300|");
    EXPECT_EQ(panel.DTCframe, "Current DTC Record (5 Record(s) Total)");

    const auto find = [this](const char* words, std::optional<std::size_t> chosen) {
        prompts.typed = words;
        prompts.chosen = chosen;
        editor.pressFindWords();
        return shown() + prompts.question;
    };
    EXPECT_EQ(find("fire  ran", 0), "P0300|Find Words\n1 description(s) found:\nP0300 Random MISFIRE");
    EXPECT_EQ(find("misfire", {}), "P0300|Find Words\n2 description(s) found:\nP0300 Random MISFIRE\n"
                                   "p0301 Cylinder 1 misfire");
    EXPECT_TRUE(find("0%", 0).starts_with("P0310|")) << "no patterns";
    EXPECT_TRUE(find("of_a", 0).starts_with("P0310|"));
    find("x' OR", {});
    EXPECT_EQ(shown(), "P0310|No description holds \"x' OR\"");
    prompts.typed = " ";
    play("words P0310|/ words P0310|"); // and cancels
    EXPECT_TRUE(prompts.question.ends_with("x' OR")) << "the words of the last time";
}

TEST_F(DtcEditorTest, AddsAndChangesRecords)
{
    openWith("P0300,Misfire,n\n");
    editor.type(&DtcRecord::description, "not in edit mode");
    EXPECT_EQ(panel.record.description, "Misfire");
    play("add Pxxyy|");
    EXPECT_EQ(panel.record.description + panel.record.notes, "");
    EXPECT_EQ(save("", "d"), "Field cannot be blank");
    EXPECT_EQ(save("P0301", ""), "Field cannot be blank");
    EXPECT_EQ(save("P03G1", "d"), "Invalid DTC Code");
    EXPECT_EQ(save("P0300", "d"), "Duplicate DTC code found");
    EXPECT_EQ(panel.record.description, "d") << "what was typed stays";
    editor.type(&DtcRecord::notes, "turbo");
    EXPECT_EQ(save("P0299", "Underboost"), "DTC saved");
    EXPECT_EQ(panel.record.notes + panel.DTCframe, "turboCurrent DTC Record (2 Record(s) Total)");
    play("next P0300|/ add Pxxyy|/ cancel P0300|DTC add canceled/ edit P0300|");
    EXPECT_EQ(save("P0299", "d"), "Code is already in use");
    EXPECT_EQ(save("P0400", "EGR flow"), "DTC saved");
    play("edit P0400|");
    editor.type(&DtcRecord::description, "never");
    play("cancel P0400|DTC update canceled");
    EXPECT_EQ(panel.record.description, "EGR flow");
}

TEST_F(DtcEditorTest, SeesWhatAnotherProgramDoesToTheRecord)
{
    openWith("P0301,Cylinder 1\nP0300,Misfire\n");
    const auto other = DtcDatabase::open(values.parmDTCdb);
    editor.pressEdit();
    for (const char* notes : {" ", "changed, too"}) {
        const DtcRecord changed{"P0300", "changed", notes};
        other->update(*other->first(), changed);
        EXPECT_EQ(save("P0300", "mine"), "Another program has changed the record: Save again replaces that, "
                                         "Cancel shows it");
        EXPECT_EQ(other->first()->record, changed);
    }
    EXPECT_EQ(save("P0300", "mine"), "DTC saved");
    other->update(*other->first(), {"P0300", std::string(150, 'd'), ""});
    play("edit P0300|The texts are longer than the boxes: Save cuts them/ save P0300|DTC saved/ edit "
         "P0300|");
    EXPECT_EQ(other->first()->record.description, std::string(100, 'd'));
    other->remove(*other->first());
    EXPECT_EQ(save("P0300", "d"), "The record is gone: another program has deleted it");
    play("cancel P0301|DTC update canceled");
    const std::int64_t key = other->first()->key;
    other->remove(*other->first());
    other->add({"P0302", "in its place", ""});
    ASSERT_EQ(other->first()->key, key) << "the table gives it once more";
    play("delete P0302|The record is gone, this is the next one");
    EXPECT_FALSE(panel.canUndoDelete) << "another program has deleted it";
    other->remove(*other->first());
    play("edit |The record is gone, this is the next one");
}

TEST_F(DtcEditorTest, DeletesAndBringsBackUntilTheNextChange)
{
    openWith("P0299,x\nP0300,a\nP0301,b\nP0302,c\n");
    play("delete P0300|DTC deleted/ control |DB is CLOSED/ control P0300|DB is OPEN, DTC Editor Ready");
    EXPECT_FALSE(panel.canUndoDelete);
    play("next P0301|/ delete P0302|DTC deleted/ delete P0300|DTC deleted/ undo P0302|The deleted record is "
         "back");
    EXPECT_FALSE(panel.canUndoDelete) << "one, once";
    editor.pressDelete();
    DtcDatabase::open(values.parmDTCdb)->add({"P0302", "of another program", ""});
    play("undo P0302|Duplicate DTC code found");
    EXPECT_TRUE(panel.canUndoDelete);
    play("edit P0302|");
    EXPECT_FALSE(panel.canUndoDelete);
    play("save P0302|DTC saved");
    EXPECT_FALSE(panel.canUndoDelete);
    play("delete P0300|DTC deleted/ delete |DTC deleted");
    importFrom("list", "P0300,a\n");
    EXPECT_FALSE(panel.canUndoDelete);
}

TEST_F(DtcEditorTest, ImportsAndTellsWhatWasSkipped)
{
    openWith("P0300,Misfire,n\n");
    importFrom("list", "P0299,\"Underboost\"\nP0300,again,\"n\"\nX,no\n");
    EXPECT_EQ(shown() + panel.DTCframe,
              "P0299|1 DTC('s) add, 1 skip, 1dup, 3 totalCurrent DTC Record (2 Record(s) Total)");
    EXPECT_EQ(panel.textHint, "2 line(s): quotation marks were taken as text: choose Spreadsheet CSV");
    editor.showSkipped();
    EXPECT_EQ(prompts.takeMessage(), "Line 3: \"X\" is no code\r\n");
    play("edit P0299|");
    EXPECT_EQ(panel.textHint, "");
    editor.setOptions({.dupOver = true});
    play("cancel P0299|DTC update canceled/ import P0299|0 DTC('s) add, 1 skip, 2upd, 3 total/ last P0300|");
    prompts.stopsWork = true;
    importFrom("list", "P0001,d\n" + std::string(1100, '\n'));
    EXPECT_EQ(shown(), "P0300|Import stopped, the table is as it was");
    EXPECT_FALSE(panel.canShowSkipped || DtcDatabase::open(values.parmDTCdb)->find("P0001"));
    editor.changeTextFile(folder.path("none"));
    EXPECT_THROW(editor.pressImport(), FileError);
    EXPECT_EQ(shown(), "P0300|Import stopped, the table is as it was");
}

TEST_F(DtcEditorTest, ExportsAndAsksBeforeItReplacesWhatItDidNotWrite)
{
    openWith("P0300,Misfire,n\nP0301,Cylinder 1\n");
    prompts.answer = false;
    play("last P0301|/ export P0301|Export stopped, the file is as it was");
    EXPECT_TRUE(prompts.question.starts_with("Export\n\"" + values.descriptionsFile +
                                             "\" exists. Shall the exported records take the place of what "
                                             "is in it?\r\n\r\nIt is the file that comes with the program"))
        << prompts.question;
    EXPECT_EQ(contents(values.descriptionsFile), "P0300,Misfire,n\nP0301,Cylinder 1\n");
    editor.changeTextFile(folder.path("list"));
    editor.setOptions({.noNotes = true});
    play("export P0300|2 DTC('s) exported"); // nothing is replaced, so there is no question
    EXPECT_EQ(contents(folder.path("list")) + panel.textHint, "P0300,Misfire\r\nP0301,Cylinder 1\r\n");
    editor.setOptions({});
    play("export P0300|2 DTC('s) exported"); // it has written that file itself
    EXPECT_TRUE(panel.textHint.starts_with("1 record(s) will not read back as they are")) << panel.textHint;
    TemporaryFolder::write(folder.path("mine"), "");
    editor.changeTextFile(folder.path("mine"));
    prompts.answer = true;
    play("export P0300|2 DTC('s) exported");
    EXPECT_TRUE(prompts.question.ends_with("what is in it?")) << prompts.question;
    editor.changeTextFile(folder.path("none/a"));
    EXPECT_THROW(editor.pressExport(), FileError);
    EXPECT_EQ(shown(), "P0300|Export stopped, the file is as it was");
}

TEST_F(DtcEditorTest, ALockedDatabaseLosesNothing)
{
    openWith("P0300,Misfire,n\n");
    SQLite::Database other(values.parmDTCdb, SQLite::OPEN_READWRITE);
    other.exec("BEGIN EXCLUSIVE");
    EXPECT_THROW(editor.pressNext(), DatabaseError);
    EXPECT_EQ(shown() + panel.DTCframe, "P0300|Current DTC Record (1 Record(s) Total)");
    other.exec("ROLLBACK; BEGIN IMMEDIATE");
    editor.pressAdd();
    EXPECT_THROW(save("P0301", "Cylinder 1"), DatabaseError);
    EXPECT_TRUE(panel.isEditing && panel.record.description == "Cylinder 1");
    other.exec("ROLLBACK");
    play("save P0301|DTC saved/ edit P0301|");
    other.exec("BEGIN EXCLUSIVE");
    EXPECT_THROW(editor.pressCancel(), DatabaseError);
    EXPECT_FALSE(panel.isEditing) << "a file that fails keeps nobody in edit mode";
}

TEST_F(DtcEditorTest, CopiesTheRecordsOfAnAccessDatabase)
{
    if (!canReadAccessDatabases())
        GTEST_SKIP() << "built without the library";
    const std::string jet = folder.path("old.mdb");
    const std::string fresh = folder.path("fresh.mdb");
    std::filesystem::copy_file(ZINT_ACCESS_FILES "/jet4.mdb", jet);
    editor.changeName(jet);
    prompts.answer = true;
    dialogs.chosen = fresh;
    play("control P0133|64 of 66 record(s) copied"); // one code is there twice, and one is too long
    EXPECT_EQ(values.parmDTCdb + panel.dtcDBname.text + values.parmInitDir, fresh + fresh + folder.path());
    EXPECT_EQ(contents(jet), contents(ZINT_ACCESS_FILES "/jet4.mdb"));
}

} // namespace
} // namespace zint
