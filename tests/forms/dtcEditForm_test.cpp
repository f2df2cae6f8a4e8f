#include "dtcdb/dtcEditForm.h"
#include "forms/formTest.h"
#include "platform/text.h"

#include <QLineEdit>

namespace zint {
namespace {

struct DtcEditFormTest : FormTest {
    DtcEditFormTest()
    {
        values.parmDTCdb = folder.path("dtc.mdb");
        values.descriptionsFile = folder.path("dtc.txt");
        TemporaryFolder::write(values.descriptionsFile, "P0300,Misfire,n\nP0301,Cylinder 1,\nnone\n");
        (form = new dtcEditForm(context))->show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(form));
    }

    QLineEdit* box(const char* name) { return control<QLineEdit>(name); }

    void expectEnabled(const std::string& names, bool isEnabled)
    {
        std::istringstream words(names);
        for (std::string name; words >> name;)
            EXPECT_EQ(control<QWidget>(name.c_str())->isEnabled(), isEnabled) << name;
    }

    void choose(const char* option) { control<QAbstractButton>(option)->click(); }
};

TEST_F(DtcEditFormTest, FillsANewDatabaseAndFindsItsCodes)
{
    const std::string browsing = "DTCfirst DTCprev DTCnext DTClast DTCsearch DTCsearchCode DTCedit DTCdel ";
    expectEnabled("dtcDBname browseDB DTCcontrol browseText", true);
    expectEnabled(browsing +
                      "DTCcode DTCdescr DTCnotes DTCadd DTCsave DTCcancel importDTC exportDTC skippedLines",
                  false);
    EXPECT_EQ(textOf("DTCcontrol"), u"Create New DB");
    box("dtcDBname")->setFocus();
    QTest::keyClick(box("dtcDBname"), Qt::Key_Return);
    EXPECT_EQ(textOf("DTCcontrol"), u"Close DB");
    EXPECT_EQ(textOf("statusBox"), u"Press Add or use Import to add records");
    expectEnabled("DTCcode DTCadd importDTC exportDTC", true);
    expectEnabled(browsing + "dtcDBname browseDB", false);

    click("importDTC");
    EXPECT_EQ(textOf("statusBox"), u"2 DTC('s) add, 1 skip, 0dup, 3 total");
    EXPECT_EQ(textOf("DTCframe"), u"Current DTC Record (2 Record(s) Total)");
    EXPECT_EQ(box("DTCnotes")->text(), u"n");
    expectEnabled(browsing + "skippedLines", true);
    EXPECT_EQ(messageOf([&] { click("skippedLines"); }), u"Line 3: \"none\" is no code\n");
    box("DTCsearchCode")->setFocus();
    QTest::keyClicks(box("DTCsearchCode"), u"p0301"_qs);
    QTest::keyClick(box("DTCsearchCode"), Qt::Key_Return);
    EXPECT_EQ(box("DTCdescr")->text(), u"Cylinder 1");
    EXPECT_TRUE(box("DTCcode")->isReadOnly());

    for (const char* option : {"useTab", "delimNotes", "noNotes"})
        choose(option);
    click("exportDTC");
    EXPECT_EQ(contents(values.descriptionsFile), "P0300\tMisfire\r\nP0301\tCylinder 1\r\n");
    choose("dupOver");
    click("importDTC");
    EXPECT_EQ(textOf("statusBox"), u"0 DTC('s) add, 0 skip, 2upd, 2 total");
    box("DTCtext")->setText(toQt(folder.path("none")));
    EXPECT_TRUE(messageOf([&] { click("importDTC"); }).contains(u"No such file"));
    EXPECT_EQ(textOf("statusBox"), u"Import stopped, the table is as it was");
}

TEST_F(DtcEditFormTest, EditsARecordWithTheKeyboard)
{
    click("DTCcontrol");
    click("importDTC");
    click("DTCadd");
    expectEnabled("DTCsave DTCcancel", true);
    expectEnabled("DTCadd DTCedit DTCdel DTCnext DTCsearchCode DTCcontrol importDTC exportDTC", false);
    EXPECT_EQ(form->focusWidget(), box("DTCcode"));
    EXPECT_EQ(box("DTCcode")->selectedText(), u"Pxxyy");
    QTest::keyClicks(box("DTCcode"), u"P030G"_qs);
    box("DTCdescr")->setText(QString(120, u'd'));
    QTest::keyClick(box("DTCdescr"), Qt::Key_Return);
    EXPECT_EQ(textOf("statusBox"), u"Invalid DTC Code");
    EXPECT_EQ(form->focusWidget(), box("DTCcode"));
    EXPECT_EQ(box("DTCcode")->cursorPosition(), 4);
    QTest::keyClick(box("DTCcode"), Qt::Key_Delete);
    QTest::keyClicks(box("DTCcode"), u"2"_qs);
    QTest::keyClick(box("DTCcode"), Qt::Key_Return);
    EXPECT_EQ(textOf("statusBox"), u"DTC saved");
    EXPECT_EQ(box("DTCdescr")->text().size(), DtcDatabase::descriptionSize);

    click("DTCprev");
    click("DTCedit");
    EXPECT_EQ(form->focusWidget(), box("DTCdescr"));
    QTest::keyClicks(box("DTCdescr"), u"other"_qs);
    QTest::keyClick(box("DTCdescr"), Qt::Key_Escape);
    EXPECT_TRUE(
        waitUntil([&] { return textOf("statusBox") == u"DTC update canceled"; })); // a key's click takes time
    EXPECT_EQ(box("DTCdescr")->text(), u"Cylinder 1");
    click("DTCdel");
    EXPECT_EQ(box("DTCcode")->text(), u"P0302");

    click("DTCadd");
    form->setAttribute(Qt::WA_DeleteOnClose, false);
    click("backCom");
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(DtcDatabase::open(values.parmDTCdb)->count(), 2) << "what was not saved is dropped";
}

} // namespace
} // namespace zint
