#include "dtcdb/accessDatabase.h"
#include "dtcdb/dtcEditor.h"
#include "shared/fileError.h"
#include "support/scriptedDialogs.h"
#include "support/scriptedPrompts.h"
#include "support/temporaryFolder.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include <algorithm>
#include <map>
#include <sstream>

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

    /// Presses buttons, and compares what is shown then: "first P0300|status / next P0301|".
    void play(const std::string& steps)
    {
        using Button = void (DtcEditor::*)();
        static const std::map<std::string, Button> buttons{
            {"control", &DtcEditor::pressControl}, {"first", &DtcEditor::pressFirst},
            {"prev", &DtcEditor::pressPrev},       {"next", &DtcEditor::pressNext},
            {"last", &DtcEditor::pressLast},       {"words", &DtcEditor::pressFindWords},
            {"add", &DtcEditor::pressAdd},         {"edit", &DtcEditor::pressEdit},
            {"save", &DtcEditor::pressSave},       {"cancel", &DtcEditor::pressCancel},
            {"delete", &DtcEditor::pressDelete},   {"undo", &DtcEditor::pressUndoDelete},
            {"import", &DtcEditor::pressImport},   {"export", &DtcEditor::pressExport}};
        for (std::size_t at = 0; at < steps.size();) {
            const std::size_t end = std::min(steps.find(" / ", at), steps.size());
            const std::string step = steps.substr(at, end - at);
            const std::size_t word = step.find(' ');
            (editor.*buttons.at(step.substr(0, word)))();
            EXPECT_EQ(shown(), step.substr(word + 1)) << step;
            at = end + 3;
        }
    }

    std::string search(const std::string& code)
    {
        editor.pressSearch(code);
        return shown() +
               panel().DTCframe.substr(std::string("Current DTC Record (4 Record(s) Total)").size());
    }

    std::string save(const std::string& code, const std::string& description)
    {
        focused.clear();
        editor.type(&DtcRecord::code, code);
        editor.type(&DtcRecord::description, description);
        editor.pressSave();
        return panel().statusBox + (panel().isEditing ? " > " + focused : "");
    }

    std::string shown() const { return panel().record.code + "|" + panel().statusBox; }
    const DtcEditPanel& panel() const { return editor.panel(); }

    /// Which buttons can be pressed.
    std::string enabled() const
    {
        const DtcEditPanel& p = panel();
        const bool all[] = {p.DTCcontrol.enabled, p.dtcDBname.enabled, p.canAdd,    p.canChange,
                            p.canUndoDelete,      p.canBrowse,         p.canImport, p.canExport,
                            p.canShowSkipped,     p.isEditing};
        std::istringstream words("control name add change undo browse import export skipped save");
        std::string names;
        std::string name;
        for (const bool isEnabled : all)
            names += words >> name && isEnabled ? name + " " : "";
        return names;
    }
};

TEST_F(DtcEditorTest, MakesOpensAndClosesADatabase)
{
    EXPECT_EQ(panel().DTCcontrol.caption, "Create New DB");
    EXPECT_EQ(panel().dtcDBname.text + panel().DTCtext, values.parmDTCdb + values.descriptionsFile);
    const std::string path = folder.path("new \xC3\xA4.mdb");
    editor.changeName(std::filesystem::relative(utf8Path(path)).string());
    play("control |Press Add or use Import to add records");
    EXPECT_EQ(utf8Text(utf8Path(values.parmDTCdb).lexically_normal()), path)
        << "the same file from wherever the program is started";
    EXPECT_EQ(panel().DTCcontrol.caption + panel().DTCframe,
              "Close DBCurrent DTC Record (0 Record(s) Total)");
    EXPECT_EQ(enabled(), "control add import export ");

    importFrom(values.descriptionsFile, "P0300,Misfire\nnothing\n");
    EXPECT_EQ(enabled(), "control add change browse import export skipped ");
    play("control |DB is CLOSED");
    EXPECT_EQ(panel().DTCcontrol.caption + panel().DTCframe, "Open DBCurrent DTC Record");
    EXPECT_EQ(enabled(), "control name ");
    play("control P0300|DB is OPEN, DTC Editor Ready");
    EXPECT_EQ(enabled(), "control add change browse import export ") << "other lines were skipped before";
    EXPECT_EQ(panel().DTCframe, "Current DTC Record (1 Record(s) Total)");
}

TEST_F(DtcEditorTest, TellsWhyAFileCannotBeOpenedOrMade)
{
    const std::string text = folder.path("notes.txt");
    const std::string sudden = folder.path("sudden.mdb");
    TemporaryFolder::write(text, "no database");
    const std::string before = values.parmDTCdb;
    const std::pair<std::string, const char*> rows[] = {
        {text, "no database of this program"},
        {folder.path("none/dtc.mdb"), "No such file or directory"},
        {"", ""},
        {sudden, "File exists"}};
    for (const auto& [name, why] : rows) {
        editor.changeName(name);
        TemporaryFolder::write(name == sudden ? sudden : text,
                               "somebody's"); // between the look and the press
        play("control |");
        EXPECT_EQ(prompts.takeMessage(), "Error opening DTC DB, please check filename");
        EXPECT_NE(prompts.reason.find(why), std::string::npos) << prompts.reason;
        EXPECT_EQ(enabled(), "control name ");
    }
    EXPECT_EQ(contents(sudden), "somebody's");
    EXPECT_EQ(values.parmDTCdb, before);

    dialogs.chosen = text;
    editor.pressBrowseDb();
    EXPECT_EQ(dialogs.asked, "open ||Access db files (*.mdb)|*.mdb|All files (*.*)|*.*");
    EXPECT_EQ(values.parmInitDir, folder.path());
    editor.pressBrowseDb(); // and cancels
    EXPECT_EQ(panel().dtcDBname.text + panel().DTCcontrol.caption, text + "Open DB");
    values.parmInitDir.clear();
    dialogs.chosen = folder.path("codes.txt");
    editor.pressBrowseText();
    EXPECT_EQ(panel().DTCtext + values.parmInitDir, folder.path("codes.txt") + folder.path());
}

TEST_F(DtcEditorTest, MovesInOrderAndFindsTheClosestCode)
{
    openWith("U0100,d\nP0310,c\nP0300,b\nB1000,a\n");
    play("prev B1000| / next P0300| / last U0100| / next U0100| / prev P0310| / first B1000|");
    const std::string closest = "|DTC not found, using closest match";
    EXPECT_EQ(search("p0305"), "P0310" + closest + ": P0305 has no description - next is P0310");
    EXPECT_EQ(search("U1000"), "U0100" + closest + ": U1000 is the maker's own code - the last one is U0100");
    EXPECT_EQ(search(""), "B1000" + closest);
    EXPECT_EQ(search("p0300"), "P0300|");
    DtcDatabase::open(values.parmDTCdb)->add({"P0301", "of another program", ""});
    play("next P0301|");
    EXPECT_EQ(panel().DTCframe, "Current DTC Record (5 Record(s) Total)");
}

TEST_F(DtcEditorTest, FindsWordsOfDescriptions)
{
    openWith("P0301,Cylinder 1 misfire\nP0300,Random MISFIRE\nP0100,100% of_all\nP0101,100 offal\n");
    const auto find = [this](const char* words, std::optional<std::size_t> chosen) {
        prompts.typed = words;
        prompts.chosen = chosen;
        editor.pressFindWords();
        return shown() + prompts.question;
    };
    EXPECT_EQ(find("fire  cyl", 0), "P0301|Find Words\n1 description(s) found:\nP0301 Cylinder 1 misfire");
    EXPECT_EQ(find("misfire", {}), "P0301|Find Words\n2 description(s) found:\nP0300 Random MISFIRE\n"
                                   "P0301 Cylinder 1 misfire")
        << "and a Cancel";
    EXPECT_EQ(find("0% of_a", 0).substr(0, 6), "P0100|") << "no patterns";
    find("x' OR", {});
    EXPECT_EQ(shown(), "P0100|No description holds \"x' OR\"");
    play("words P0100|");
    EXPECT_TRUE(prompts.question.ends_with("x' OR")) << "the words of the last time";
}

TEST_F(DtcEditorTest, AddsARecord)
{
    openWith("P0300,Misfire,n\n");
    play("add Pxxyy|");
    EXPECT_EQ(enabled(), "save ");
    EXPECT_EQ(focused + panel().record.description + panel().record.notes, "code");
    EXPECT_EQ(save("", ""), "Field cannot be blank > code");
    EXPECT_EQ(save("P0301", ""), "Field cannot be blank > description");
    EXPECT_EQ(save("P03G1", "d"), "Invalid DTC Code > code 3");
    EXPECT_EQ(save("P0300", "d"), "Duplicate DTC code found > code");
    EXPECT_EQ(panel().record.description, "d") << "what was typed stays";
    editor.type(&DtcRecord::notes, "turbo");
    EXPECT_EQ(save("P0299", "Underboost"), "DTC saved");
    EXPECT_EQ(panel().record.notes + panel().DTCframe, "turboCurrent DTC Record (2 Record(s) Total)");
    play("next P0300| / add Pxxyy| / cancel P0300|DTC add canceled");
}

TEST_F(DtcEditorTest, ChangesARecord)
{
    openWith("P0300,Misfire,n\nP0301,Cylinder 1,n\n");
    editor.type(&DtcRecord::description, "not in edit mode");
    EXPECT_EQ(panel().record.description, "Misfire");
    play("edit P0300|");
    EXPECT_EQ(focused, "description");
    EXPECT_EQ(save("P0301", "d"), "Code is already in use > code");
    EXPECT_EQ(save("P0400", "EGR flow"), "DTC saved");
    play("prev P0301| / edit P0301|");
    editor.type(&DtcRecord::description, "never");
    play("cancel P0301|DTC update canceled");
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
    play("edit P0300|The texts are longer than the boxes: Save cuts them / save P0300|DTC saved");
    EXPECT_EQ(other->first()->record.description, std::string(100, 'd'));
    editor.pressEdit();
    other->remove(*other->first());
    EXPECT_EQ(save("P0300", "d"), "The record is gone: another program has deleted it > code");
    play("cancel P0301|DTC update canceled");
    other->remove(*other->first());
    other->add({"P0302", "in its place", ""});
    play("delete P0302|The record is gone, this is the next one");
    other->remove(*other->first());
    play("edit |The record is gone, this is the next one");
}

TEST_F(DtcEditorTest, DeletesAndBringsBackUntilTheNextChange)
{
    openWith("P0300,a\nP0301,b\nP0302,c\n");
    const auto canUndo = [this] { return panel().canUndoDelete; };
    play("next P0301| / delete P0302|DTC deleted / delete P0300|DTC deleted");
    EXPECT_EQ(panel().DTCframe, "Current DTC Record (1 Record(s) Total)");
    play("undo P0302|The deleted record is back");
    EXPECT_EQ(panel().DTCframe, "Current DTC Record (2 Record(s) Total)");
    EXPECT_FALSE(canUndo()) << "one, once";

    editor.pressDelete();
    DtcDatabase::open(values.parmDTCdb)->add({"P0302", "of another program", ""});
    play("undo P0302|Duplicate DTC code found");
    EXPECT_EQ(panel().record.description, "of another program");
    play("edit P0302|");
    EXPECT_FALSE(canUndo());
    play("save P0302|DTC saved");
    EXPECT_FALSE(canUndo());
    play("delete P0300|DTC deleted / delete |DTC deleted");
    EXPECT_EQ(enabled(), "control add undo import export ");
    play("add Pxxyy| / cancel |DTC add canceled");
    importFrom(values.descriptionsFile, "P0300,a\n");
    EXPECT_FALSE(canUndo());
}

TEST_F(DtcEditorTest, ImportsAndTellsWhatWasSkipped)
{
    openWith("P0300,Misfire,n\n");
    importFrom(folder.path("more.txt"), "P0299,Underboost\nP0300,\"again\"\nX,no\n");
    EXPECT_EQ(shown(), "P0299|1 DTC('s) add, 1 skip, 1dup, 3 total");
    EXPECT_EQ(panel().textHint, "1 line(s): quotation marks were taken as text: choose Spreadsheet CSV");
    EXPECT_EQ(panel().DTCframe, "Current DTC Record (2 Record(s) Total)");
    editor.showSkipped();
    EXPECT_EQ(prompts.takeMessage(), "Line 3: \"X\" is no code\r\n");
    play("edit P0299|");
    EXPECT_FALSE(panel().canShowSkipped) << "while a record is edited";
    editor.setOptions({.dupOver = true});
    play(
        "cancel P0299|DTC update canceled / import P0299|0 DTC('s) add, 1 skip, 2upd, 3 total / last P0300|");

    editor.changeTextFile(folder.path("none.txt"));
    EXPECT_THROW(editor.pressImport(), FileError);
    EXPECT_EQ(shown(), "P0300|Import stopped, the table is as it was");
    EXPECT_FALSE(panel().canShowSkipped);
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

    const std::string file = folder.path("list.csv");
    editor.changeTextFile(file);
    editor.setOptions({.noNotes = true});
    play("export P0300|2 DTC('s) exported"); // nothing is replaced, so there is no question
    EXPECT_EQ(contents(file), "P0300,Misfire\r\nP0301,Cylinder 1\r\n");
    editor.setOptions({});
    play("export P0300|2 DTC('s) exported"); // it has written that file itself
    EXPECT_TRUE(panel().textHint.starts_with("1 record(s) will not read back as they are"))
        << panel().textHint;
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
    EXPECT_EQ(panel().record.code + panel().DTCframe, "P0300Current DTC Record (1 Record(s) Total)");
    other.exec("ROLLBACK; BEGIN IMMEDIATE");
    editor.pressAdd();
    EXPECT_THROW(save("P0301", "Cylinder 1"), DatabaseError);
    EXPECT_EQ(panel().isEditing ? panel().record.description : "", "Cylinder 1");
    other.exec("ROLLBACK");
    play("save P0301|DTC saved / edit P0301|");
    other.exec("BEGIN EXCLUSIVE");
    EXPECT_THROW(editor.pressCancel(), DatabaseError);
    EXPECT_FALSE(panel().isEditing) << "a file that fails keeps nobody in edit mode";
    EXPECT_EQ(panel().record.description, "Cylinder 1");
}

TEST_F(DtcEditorTest, OpensForReadingWhatMayNotBeWritten)
{
    DtcDatabase::create(values.parmDTCdb)->add({"P0300", "Misfire", ""});
    std::string bytes = contents(values.parmDTCdb);
    bytes[18] = '\3'; // the version that is needed to write
    TemporaryFolder::write(values.parmDTCdb, bytes);
    editor.changeName(values.parmDTCdb);
    play("control P0300|DB is OPEN, but can only be read: you may not write to the file or its folder");
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
    play("control |");
    prompts.answer = true;
    dialogs.chosen = folder.path("fresh.mdb");
    play("control P0133|64 of 66 record(s) copied"); // one code is there twice, and one is too long
    EXPECT_TRUE(dialogs.asked.starts_with("save " + folder.path() + "|old-copy.mdb|")) << dialogs.asked;
    EXPECT_EQ(values.parmDTCdb, folder.path("fresh.mdb"));
    EXPECT_EQ(panel().dtcDBname.text, values.parmDTCdb);
    EXPECT_EQ(contents(jet), before);
}

} // namespace
} // namespace zint
