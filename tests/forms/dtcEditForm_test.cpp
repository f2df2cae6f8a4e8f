#include "dtcdb/window/dtcEditForm.h"
#include "forms/formTest.h"
#include "platform/text.h"

#include <QLineEdit>

#include <set>
#include <sstream>

namespace zint {
namespace {

const std::string boxes = "DTCcode DTCdescr DTCnotes ";
const std::string browsing = "DTCfirst DTCprev DTCnext DTClast DTCsearch DTCsearchCode findWords ";
const std::string changing = "DTCedit DTCdel ";
const std::string closed = "dtcDBname browseDB ";
const std::string filling = "DTCadd importDTC exportDTC ";

struct DtcEditFormTest : FormTest {
    DtcEditFormTest()
    {
        values.parmDTCdb = folder.path("dtc.mdb");
        values.descriptionsFile = folder.path("dtc.txt");
        TemporaryFolder::write(values.descriptionsFile,
                               "P0300,Misfire,n\nP0301,Cylinder 1,\nP0302,Cylinder 2,\nnone\n");
        (form = new dtcEditForm(context))->show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(form));
    }

    QLineEdit* box(const char* name) { return control<QLineEdit>(name); }

    /// These controls and no others.
    void expectEnabled(const std::string& names)
    {
        const auto split = [](const std::string& text) {
            std::istringstream words(text);
            return std::set<std::string>{std::istream_iterator<std::string>(words), {}};
        };
        const std::set<std::string> expected = split(names);
        for (const std::string& name : split(boxes + browsing + changing + closed + filling +
                                             "DTCcontrol DTCsave DTCcancel undoDelete skippedLines"))
            EXPECT_EQ(control<QWidget>(name.c_str())->isEnabled(), expected.contains(name)) << name;
    }

    void pressKeys(const char* keys)
    {
        const QKeyCombination key = QKeySequence(QLatin1String(keys))[0];
        QTest::keyClick(form->focusWidget(), key.key(), key.keyboardModifiers());
        QTest::qWait(150); // a button's shortcut takes the time of a click
    }
};

TEST_F(DtcEditFormTest, EnablesWhatCanBeDone)
{
    expectEnabled(closed + "DTCcontrol");
    box("dtcDBname")->setFocus();
    QTest::keyClick(box("dtcDBname"), Qt::Key_Return);
    expectEnabled(boxes + filling + "DTCcontrol");
    click("importDTC");
    expectEnabled(boxes + filling + browsing + changing + "DTCcontrol skippedLines");
    EXPECT_EQ(textOf("statusBox") + textOf("DTCframe"), u"3 DTC('s) add, 1 skip, 0dup, 4 total"
                                                        u"Current DTC Record (3 Record(s) Total)"_qs);
    EXPECT_EQ(messageOf([&] { click("skippedLines"); }), u"Line 4: \"none\" is no code\n");
    const auto isShownAsText = [this] {
        return box("DTCcode")->palette().color(QPalette::Base) == form->palette().color(QPalette::Window);
    };
    EXPECT_TRUE(box("DTCcode")->isReadOnly() && isShownAsText());
    click("DTCadd");
    expectEnabled(boxes + "DTCsave DTCcancel");
    EXPECT_FALSE(box("DTCcode")->isReadOnly() || isShownAsText());
    click("DTCcancel");
    box("DTCsearchCode")->setText(u"P0301"_qs);
    click("DTCcontrol");
    EXPECT_EQ(box("DTCsearchCode")->text() + box("DTCcode")->text(), u"");
    for (const char* button : {"browseDB", "browseText"}) {
        bool isClosed = false;
        QTimer::singleShot(50, form, [&] { isClosed = QApplication::activeModalWidget()->close(); });
        click(button);
        EXPECT_TRUE(waitUntil([&] { return isClosed; })) << button;
    }
    std::string bytes = contents(values.parmDTCdb);
    bytes[18] = '\3'; // the version that is needed to write
    TemporaryFolder::write(values.parmDTCdb, bytes);
    click("DTCcontrol");
    expectEnabled(boxes + browsing + "exportDTC DTCcontrol");
}

TEST_F(DtcEditFormTest, BrowsesByButtonsAndKeys)
{
    click("DTCcontrol");
    click("importDTC");
    const std::tuple<const char*, const char*, const char*> rows[] = {{"DTClast", "Ctrl+PgDown", "P0302"},
                                                                      {"DTCprev", "PgUp", "P0301"},
                                                                      {"DTCfirst", "Ctrl+PgUp", "P0300"},
                                                                      {"DTCnext", "PgDown", "P0301"}};
    for (const auto& [button, keys, code] : rows) {
        click(button);
        EXPECT_EQ(box("DTCcode")->text(), QLatin1String(code)) << button;
    }
    box("DTCsearchCode")->setFocus(); // where it is after opening
    for (const auto& [button, keys, code] : rows) {
        pressKeys(keys);
        EXPECT_EQ(box("DTCcode")->text(), QLatin1String(code)) << keys;
    }
    QTest::keyClicks(box("DTCsearchCode"), u"p0302"_qs);
    QTest::keyClick(box("DTCsearchCode"), Qt::Key_Return);
    EXPECT_EQ(box("DTCdescr")->text() + box("DTCsearchCode")->selectedText(), u"Cylinder 2p0302");
}

TEST_F(DtcEditFormTest, HandsTheOptionsOnToExportAndImport)
{
    click("DTCcontrol");
    click("importDTC");
    box("DTCtext")->setText(toQt(folder.path("list")));
    const std::pair<const char*, std::string> rows[] = {{"delimNotes", "P0300,Misfire,n"},
                                                        {"useTab", "P0300\tMisfire\tn"},
                                                        {"useLen", "P0300Misfire   "},
                                                        {"useCsv", "\xEF\xBB\xBF"
                                                                   "Code,"},
                                                        {"useSpace", "P0300 Misfire n"},
                                                        {"useComma", "P0300,Misfire,n"},
                                                        {"noNotes", "P0300,Misfire\r"}};
    for (const auto& [option, start] : rows) {
        control<QAbstractButton>(option)->click();
        click("exportDTC");
        EXPECT_EQ(contents(folder.path("list")).substr(0, start.size()), start);
        EXPECT_EQ(control<QWidget>("delimNotes")->isEnabled(), option != std::string_view("useCsv"));
        EXPECT_EQ(textOf("textHint").isEmpty(), option != std::string_view("useSpace"));
    }
    control<QAbstractButton>("dupOver")->click();
    click("importDTC");
    EXPECT_EQ(textOf("statusBox"), u"0 DTC('s) add, 0 skip, 3upd, 3 total");
}

TEST_F(DtcEditFormTest, EditsARecordWithTheKeyboard)
{
    click("DTCcontrol");
    click("importDTC");
    pressKeys("Ctrl+N");
    EXPECT_EQ(form->focusWidget(), box("DTCcode"));
    EXPECT_EQ(box("DTCcode")->selectedText(), u"Pxxyy");
    QTest::keyClicks(box("DTCcode"), u"P030G"_qs);
    box("DTCdescr")->setText(QString(120, u'd'));
    QTest::keyClick(box("DTCdescr"), Qt::Key_Return);
    EXPECT_EQ(textOf("statusBox"), u"Invalid DTC Code");
    EXPECT_EQ(form->focusWidget(), box("DTCcode"));
    EXPECT_EQ(box("DTCcode")->cursorPosition(), 4);
    QTest::keyClick(box("DTCcode"), Qt::Key_Delete);
    QTest::keyClicks(box("DTCcode"), u"3"_qs);
    pressKeys("Ctrl+S");
    EXPECT_EQ(textOf("statusBox") + box("DTCdescr")->text(), u"DTC saved"_qs + QString(100, u'd'));
    click("DTCprev");
    pressKeys("F2");
    EXPECT_EQ(form->focusWidget(), box("DTCdescr"));
    QTest::keyClicks(box("DTCdescr"), u"other"_qs);
    pressKeys("Esc");
    EXPECT_EQ(box("DTCdescr")->text(), u"Cylinder 2");
    click("DTCdel");
    EXPECT_EQ(box("DTCcode")->text(), u"P0303");
    click("undoDelete");
    EXPECT_EQ(box("DTCcode")->text(), u"P0302");
    click("DTCadd");
    form->setAttribute(Qt::WA_DeleteOnClose, false);
    click("backCom");
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(DtcDatabase::open(values.parmDTCdb)->count(), 4) << "what was not saved is dropped";
}

} // namespace
} // namespace zint
