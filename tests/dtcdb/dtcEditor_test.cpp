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

// clang-format off
const std::map<std::string, void (DtcEditor::*)()> buttons{
    {"control", &DtcEditor::pressControl}, {"add", &DtcEditor::pressAdd},       {"first", &DtcEditor::pressFirst},
    {"words", &DtcEditor::pressFindWords}, {"edit", &DtcEditor::pressEdit},     {"prev", &DtcEditor::pressPrev},
    {"import", &DtcEditor::pressImport},   {"save", &DtcEditor::pressSave},     {"next", &DtcEditor::pressNext},
    {"export", &DtcEditor::pressExport},   {"cancel", &DtcEditor::pressCancel}, {"last", &DtcEditor::pressLast},
    {"undo", &DtcEditor::pressUndoDelete}, {"delete", &DtcEditor::pressDelete}};

/// What the panel says can be done, and what that is called here.
const std::pair<bool DtcEditPanel::*, const char*> abilities[] = {
    {&DtcEditPanel::canAdd, "add "},       {&DtcEditPanel::canChange, "change "}, {&DtcEditPanel::canUndoDelete, "undo "},
    {&DtcEditPanel::canBrowse, "browse "}, {&DtcEditPanel::canImport, "import "}, {&DtcEditPanel::canExport, "export "},
    {&DtcEditPanel::canShowSkipped, "skipped "}, {&DtcEditPanel::isEditing, "save "}};
// clang-format on

/// An editor whose database is not there yet.
struct DtcEditorTest : testing::Test {
    TemporaryFolder folder;
    ScriptedPrompts prompts;
    ScriptedDialogs dialogs;
    ProgramValues values{.parmDTCdb = folder.path("dtc.mdb"), .descriptionsFile = folder.path("dtc.txt")};
    std::string focused; ///< the box that got the focus last, and the cursor's place
    DtcEditor editor{{prompts, dialogs, values, std::chrono::milliseconds(1)}};
    const DtcEditPanel& panel = editor.panel();

    DtcEditorTest()
    {
        editor.onFocus = [this](DtcEditor::Box box, std::optional<std::size_t> place) {
            focused = box == &DtcRecord::code ? "code" : "description";
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

    /// Presses buttons, and compares what is shown then: "first P0300|status / next P0301|".
    void play(const std::string& steps)
    {
        for (std::size_t at = 0; at < steps.size();) {
            const std::size_t end = std::min(steps.find(" / ", at), steps.size());
            const std::string step = steps.substr(at, end - at);
            const std::size_t word = step.find(' ');
            (editor.*buttons.at(step.substr(0, word)))();
            EXPECT_EQ(shown(), step.substr(word + 1)) << step;
            at = end + 3;
        }
    }

    std::string save(const std::string& code, const std::string& description)
    {
        focused.clear();
        editor.type(&DtcRecord::code, code);
        editor.type(&DtcRecord::description, description);
        editor.pressSave();
        return panel.statusBox + (panel.isEditing ? " > " + focused : "");
    }

    std::string shown() const { return panel.record.code + "|" + panel.statusBox; }
    std::string frame() const { return panel.DTCframe.substr(std::string("Current DTC Record").size()); }

    /// What can be done.
    std::string enabled() const
    {
        std::string names = panel.DTCcontrol.enabled ? "control " : "";
        names += panel.dtcDBname.enabled ? "name " : "";
        for (const auto& [ability, name] : abilities)
            names += panel.*ability ? name : "";
        return names;
    }
};

TEST_F(DtcEditorTest, MakesOpensAndClosesADatabase)
{
    EXPECT_EQ(panel.DTCcontrol.caption + panel.dtcDBname.text + panel.DTCtext,
              "Create New DB" + values.parmDTCdb + values.descriptionsFile);
    const std::string path = folder.path("new \xC3\xA4.mdb");
    editor.changeName(std::filesystem::relative(utf8Path(path)).string());
    play("control |Press Add or use Import to add records");
    EXPECT_EQ(utf8Text(utf8Path(values.parmDTCdb).lexically_normal()), path)
        << "wherever the program is started";
    EXPECT_EQ(panel.DTCcontrol.caption + frame(), "Close DB (0 Record(s) Total)");
    EXPECT_EQ(enabled(), "control add import export ");
    importFrom(values.descriptionsFile, "P0300,Misfire\nnothing\n");
    EXPECT_EQ(enabled(), "control add change browse import export skipped ");
    play("control |DB is CLOSED");
    EXPECT_EQ(panel.DTCcontrol.caption + frame() + enabled(), "Open DBcontrol name ");
    play("control P0300|DB is OPEN, DTC Editor Ready");
    EXPECT_EQ(enabled(), "control add change browse import export ") << "other lines were skipped before";
    editor.pressControl();

    std::string bytes = contents(path);
    bytes[18] = '\3'; // the version that is needed to write
    TemporaryFolder::write(path, bytes);
    play("control P0300|DB is OPEN, but can only be read: you may not write to the file or its folder");
    EXPECT_EQ(enabled(), "control browse export ");
}

TEST_F(DtcEditorTest, TellsWhyAFileCannotBeOpenedOrMade)
{
    const std::string text = folder.path("notes.txt");
    const std::string sudden = folder.path("sudden.mdb");
    const std::pair<std::string, const char*> rows[] = {
        {text, "no database of this program"},
        {folder.path("none/dtc.mdb"), "No such file or directory"},
        {"", ""},
        {sudden, "File exists"}};
    TemporaryFolder::write(text, "no database");
    for (const auto& [name, why] : rows) {
        editor.changeName(name);
        TemporaryFolder::write(name == sudden ? sudden : text,
                               "somebody's"); // between the look and the press
        play("control |");
        EXPECT_EQ(prompts.takeMessage(), "Error opening DTC DB, please check filename");
        EXPECT_NE(prompts.reason.find(why), std::string::npos) << prompts.reason;
        EXPECT_EQ(enabled(), "control name ");
    }
    EXPECT_EQ(contents(sudden) + values.parmDTCdb, "somebody's" + folder.path("dtc.mdb"));

    dialogs.chosen = text;
    editor.pressBrowseDb();
    EXPECT_EQ(dialogs.asked, "open ||Access db files (*.mdb)|*.mdb|All files (*.*)|*.*");
    EXPECT_EQ(std::exchange(values.parmInitDir, {}), folder.path());
    editor.pressBrowseDb(); // and cancels
    EXPECT_EQ(panel.dtcDBname.text + panel.DTCcontrol.caption, text + "Open DB");
    dialogs.chosen = folder.path("codes.txt");
    editor.pressBrowseText();
    EXPECT_EQ(panel.DTCtext + values.parmInitDir, folder.path("codes.txt") + folder.path());
}

TEST_F(DtcEditorTest, MovesInOrderAndFindsCodesAndWords)
{
    openWith("U0100,d\nP0310,100% of_all\nP0300,Random MISFIRE\nB1000,100 offal\n");
    play("prev B1000| / next P0300| / last U0100| / next U0100| / prev P0310| / first B1000|");
    const auto search = [this](const char* code) {
        editor.pressSearch(code);
        return shown() + frame().substr(std::string(" (4 Record(s) Total)").size());
    };
    const std::string closest = "|DTC not found, using closest match";
    EXPECT_EQ(search("p0305"), "P0310" + closest + ": P0305 has no description - next is P0310");
    EXPECT_EQ(search("U1000"), "U0100" + closest + ": U1000 is the maker's own code - the last one is U0100");
    EXPECT_EQ(search(""), "B1000" + closest);
    EXPECT_EQ(search("p0300"), "P0300|");
    DtcDatabase::open(values.parmDTCdb)->add({"P0301", "Cylinder 1 misfire", ""}); // by another program
    play("next P0301|");
    EXPECT_EQ(frame(), " (5 Record(s) Total)");

    const auto find = [this](const char* words, std::optional<std::size_t> chosen) {
        prompts.typed = words;
        prompts.chosen = chosen;
        editor.pressFindWords();
        return shown() + prompts.question;
    };
    EXPECT_EQ(find("fire  ran", 0), "P0300|Find Words\n1 description(s) found:\nP0300 Random MISFIRE");
    EXPECT_EQ(find("misfire", {}), "P0300|Find Words\n2 description(s) found:\nP0300 Random MISFIRE\n"
                                   "P0301 Cylinder 1 misfire")
        << "and a Cancel";
    EXPECT_EQ(find("0% of_a", 0).substr(0, 6), "P0310|") << "no patterns";
    find("x' OR", {});
    EXPECT_EQ(shown(), "P0310|No description holds \"x' OR\"");
    play("words P0310|");
    EXPECT_TRUE(prompts.question.ends_with("x' OR")) << "the words of the last time";
}

TEST_F(DtcEditorTest, AddsAndChangesRecords)
{
    openWith("P0300,Misfire,n\n");
    editor.type(&DtcRecord::description, "not in edit mode");
    EXPECT_EQ(panel.record.description, "Misfire");
    play("add Pxxyy|");
    EXPECT_EQ(focused + panel.record.description + panel.record.notes + enabled(), "codesave ");
    EXPECT_EQ(save("", ""), "Field cannot be blank > code");
    EXPECT_EQ(save("P0301", ""), "Field cannot be blank > description");
    EXPECT_EQ(save("P03G1", "d"), "Invalid DTC Code > code 3");
    EXPECT_EQ(save("P0300", "d"), "Duplicate DTC code found > code");
    EXPECT_EQ(panel.record.description, "d") << "what was typed stays";
    editor.type(&DtcRecord::notes, "turbo");
    EXPECT_EQ(save("P0299", "Underboost"), "DTC saved");
    EXPECT_EQ(panel.record.notes + frame(), "turbo (2 Record(s) Total)");
    play("next P0300| / add Pxxyy| / cancel P0300|DTC add canceled / edit P0300|");
    EXPECT_EQ(focused, "description");
    EXPECT_EQ(save("P0299", "d"), "Code is already in use > code");
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
    other->update(*other->first(), {"P0300", "changed", ""});
    EXPECT_EQ(save("P0300", "mine"),
              "Another program has changed the record: Save again replaces that, Cancel "
              "shows it > description");
    EXPECT_EQ(other->first()->record.description, "changed");
    EXPECT_EQ(save("P0300", "mine"), "DTC saved");
    other->update(*other->first(), {"P0300", std::string(150, 'd'), ""});
    play("edit P0300|The texts are longer than the boxes: Save cuts them / save P0300|DTC saved / edit "
         "P0300|");
    EXPECT_EQ(other->first()->record.description, std::string(100, 'd'));
    other->remove(*other->first());
    EXPECT_EQ(save("P0300", "d"), "The record is gone: another program has deleted it > code");
    play("cancel P0301|DTC update canceled");
    const std::int64_t key = other->first()->key;
    other->remove(*other->first());
    other->add({"P0302", "in its place", ""});
    ASSERT_EQ(other->first()->key, key) << "the table gives it once more";
    play("delete P0302|The record is gone, this is the next one");
    other->remove(*other->first());
    play("edit |The record is gone, this is the next one");
}

TEST_F(DtcEditorTest, DeletesAndBringsBackUntilTheNextChange)
{
    openWith("P0300,a\nP0301,b\nP0302,c\n");
    play("next P0301| / delete P0302|DTC deleted / delete P0300|DTC deleted / undo P0302|The deleted record "
         "is back");
    EXPECT_EQ(frame(), " (2 Record(s) Total)");
    EXPECT_FALSE(panel.canUndoDelete) << "one, once";
    editor.pressDelete();
    DtcDatabase::open(values.parmDTCdb)->add({"P0302", "of another program", ""});
    play("undo P0302|Duplicate DTC code found");
    EXPECT_EQ(panel.record.description + (panel.canUndoDelete ? "+" : ""), "of another program+");
    play("edit P0302| / save P0302|DTC saved");
    EXPECT_FALSE(panel.canUndoDelete);
    play("delete P0300|DTC deleted / delete |DTC deleted");
    EXPECT_EQ(enabled(), "control add undo import export ");
    play("add Pxxyy| / cancel |DTC add canceled");
    importFrom(values.descriptionsFile, "P0300,a\n");
    EXPECT_FALSE(panel.canUndoDelete);
}

TEST_F(DtcEditorTest, ImportsAndTellsWhatWasSkipped)
{
    openWith("P0300,Misfire,n\n");
    importFrom(folder.path("more.txt"), "P0299,Underboost\nP0300,\"again\"\nX,no\n");
    EXPECT_EQ(shown() + frame(), "P0299|1 DTC('s) add, 1 skip, 1dup, 3 total (2 Record(s) Total)");
    EXPECT_EQ(panel.textHint, "1 line(s): quotation marks were taken as text: choose Spreadsheet CSV");
    editor.showSkipped();
    EXPECT_EQ(prompts.takeMessage(), "Line 3: \"X\" is no code\r\n");
    play("edit P0299|");
    EXPECT_EQ(enabled(), "save ");
    editor.setOptions({.dupOver = true});
    play(
        "cancel P0299|DTC update canceled / import P0299|0 DTC('s) add, 1 skip, 2upd, 3 total / last P0300|");

    editor.changeTextFile(folder.path("none.txt"));
    EXPECT_THROW(editor.pressImport(), FileError);
    EXPECT_EQ(shown(), "P0300|Import stopped, the table is as it was");
    EXPECT_FALSE(panel.canShowSkipped);
    prompts.stopsWork = true;
    std::string many;
    for (int i = 0; i < 1100; ++i)
        many += "P0001,d\n";
    importFrom(folder.path("more.txt"), many);
    EXPECT_EQ(shown(), "P0300|Import stopped, the table is as it was");
}

TEST_F(DtcEditorTest, ExportsAndAsksBeforeItReplacesWhatItDidNotWrite)
{
    openWith("P0300,Misfire,n\nP0301,Cylinder 1\n");
    const std::string shipped = contents(values.descriptionsFile);
    prompts.answer = false;
    play("last P0301| / export P0301|Export stopped, the file is as it was");
    EXPECT_NE(prompts.question.find("It is the file that comes with the program"), std::string::npos);
    EXPECT_EQ(contents(values.descriptionsFile), shipped);
    editor.changeTextFile(folder.path("list.csv"));
    editor.setOptions({.noNotes = true});
    play("export P0300|2 DTC('s) exported"); // nothing is replaced, so there is no question
    EXPECT_EQ(contents(folder.path("list.csv")), "P0300,Misfire\r\nP0301,Cylinder 1\r\n");
    editor.setOptions({});
    play("export P0300|2 DTC('s) exported"); // it has written that file itself
    EXPECT_TRUE(panel.textHint.starts_with("1 record(s) will not read back as they are")) << panel.textHint;
    importFrom(folder.path("mine.txt"), "P0302,Cylinder 2\n");
    prompts.answer = true;
    play("export P0300|3 DTC('s) exported");
    EXPECT_EQ(prompts.question, "Export\n\"" + folder.path("mine.txt") +
                                    "\" exists. Shall the exported records take the place of what is in it?");
    editor.changeTextFile(folder.path("none/a.txt"));
    EXPECT_THROW(editor.pressExport(), FileError);
    EXPECT_EQ(shown(), "P0300|Export stopped, the file is as it was");
}

TEST_F(DtcEditorTest, ALockedDatabaseLosesNothing)
{
    openWith("P0300,Misfire,n\n");
    SQLite::Database other(values.parmDTCdb, SQLite::OPEN_READWRITE);
    other.exec("BEGIN EXCLUSIVE");
    EXPECT_THROW(editor.pressNext(), DatabaseError);
    EXPECT_EQ(shown() + frame(), "P0300| (1 Record(s) Total)");
    other.exec("ROLLBACK; BEGIN IMMEDIATE");
    editor.pressAdd();
    EXPECT_THROW(save("P0301", "Cylinder 1"), DatabaseError);
    EXPECT_EQ(panel.record.description + enabled(), "Cylinder 1save ");
    other.exec("ROLLBACK");
    play("save P0301|DTC saved / edit P0301|");
    other.exec("BEGIN EXCLUSIVE");
    EXPECT_THROW(editor.pressCancel(), DatabaseError);
    EXPECT_FALSE(panel.isEditing) << "a file that fails keeps nobody in edit mode";
}

TEST_F(DtcEditorTest, CopiesTheRecordsOfAnAccessDatabase)
{
    if (!canReadAccessDatabases())
        GTEST_SKIP() << "built without the library";
    const std::string jet = folder.path("old.mdb");
    TemporaryFolder::write(jet, contents(ZINT_ACCESS_FILES "/jet3.mdb"));
    editor.changeName(jet);
    prompts.answer = false;
    play("control |");
    prompts.answer = true;
    dialogs.chosen = folder.path("fresh.mdb");
    play("control P0133|64 of 66 record(s) copied"); // one code is there twice, and one is too long
    EXPECT_TRUE(dialogs.asked.starts_with("save " + folder.path() + "|old-copy.mdb|")) << dialogs.asked;
    EXPECT_EQ(values.parmDTCdb + panel.dtcDBname.text, folder.path("fresh.mdb") + folder.path("fresh.mdb"));
    EXPECT_EQ(contents(jet), contents(ZINT_ACCESS_FILES "/jet3.mdb"));
}

} // namespace
} // namespace zint
