#include "dtcdb/window/dtcEditForm.h"
#include "forms/formTest.h"

namespace zint {
namespace {

struct DtcEditFormTest : FormTest {
    DtcEditFormTest()
    {
        values.parmDTCdb = folder.path("dtc.mdb");
        values.descriptionsFile = folder.path("dtc.txt");
        TemporaryFolder::write(values.descriptionsFile,
                               "P0300,Misfire,n\nP0301,Cylinder 1,\nP0302,Cylinder 2,\nnone\n");
        open<dtcEditForm>(context);
    }

    void openAndImport()
    {
        click("DTCcontrol");
        click("importDTC");
    }
};

TEST_F(DtcEditFormTest, EnablesWhatCanBeDone)
{
    const std::string boxes = "DTCcode DTCdescr DTCnotes";
    const std::string browsing = " DTCfirst DTCprev DTCnext DTClast DTCsearch DTCsearchCode findWords";
    const std::string filling = " DTCadd importDTC exportDTC";
    const auto seen = [&] {
        return enabled("DTCcontrol dtcDBname browseDB " + boxes + browsing + filling +
                       " DTCedit DTCdel DTCsave DTCcancel undoDelete skippedLines");
    };
    const auto isShownAsText = [this] {
        const auto* box = control<QLineEdit>("DTCcode");
        return box->isReadOnly() &&
               box->palette().color(QPalette::Base) == form->palette().color(QPalette::Window);
    };
    const std::string closed = "DTCcontrol dtcDBname browseDB";
    const std::string ready = "DTCcontrol " + boxes + browsing + filling + " DTCedit DTCdel";
    EXPECT_EQ(seen(), closed);
    control("dtcDBname")->setFocus();
    expectAfterEach("Return DTCcontrol " + boxes + filling + " / importDTC " + ready + " skippedLines", seen);
    EXPECT_EQ(shown("statusBox DTCframe"),
              "3 DTC('s) add, 1 skip, 0dup, 4 total|Current DTC Record (3 Record(s) Total)");
    EXPECT_EQ(messageBy("skippedLines"), "Line 4: \"none\" is no code\n");
    EXPECT_TRUE(isShownAsText());
    type("DTCsearchCode", "P0301");
    expectAfterEach("DTCadd " + boxes + " DTCsave DTCcancel", seen);
    EXPECT_FALSE(isShownAsText());
    expectAfterEach("DTCcancel " + ready + " skippedLines / DTCdel " + ready +
                        " undoDelete skippedLines / DTCcontrol " + closed,
                    seen);
    EXPECT_EQ(shown("DTCsearchCode DTCcode"), "|");
    for (const char* button : {"browseDB", "browseText"}) {
        bool isClosed = false;
        inNextDialog([&](QDialog& dialog) { isClosed = dialog.close(); });
        click(button);
        EXPECT_TRUE(isClosed) << button;
    }
    std::string bytes = contents(values.parmDTCdb);
    bytes[18] = '\3'; // the version that is needed to write
    TemporaryFolder::write(values.parmDTCdb, bytes);
    expectAfterEach("DTCcontrol DTCcontrol " + boxes + browsing + " exportDTC", seen);
}

TEST_F(DtcEditFormTest, BrowsesWithTheFocusInTheSearchBox)
{
    openAndImport();
    click("DTCcontrol");
    click("DTCcontrol");
    expectAfterEach("Ctrl+PgDown P0302 / PgUp P0301 / Ctrl+PgUp P0300 / PgDown P0301 / "
                    "DTCsearchCode:p0302 P0301 / Return P0302",
                    "DTCcode");
    EXPECT_EQ(control<QLineEdit>("DTCsearchCode")->selectedText(), u"p0302");
}

TEST_F(DtcEditFormTest, HandsTheOptionsOnToExportAndImport)
{
    openAndImport();
    type("DTCtext", folder.path("list"));
    expectAfterEach("delimNotes P0300,Misfire,n delimNotes / useTab P0300\tMisfire\tn delimNotes / "
                    "useLen P0300Misfire    delimNotes / useCsv \xEF\xBB\xBF"
                    "Code,Descrip  / useSpace P0300 Misfire n delimNotes hint / "
                    "useComma P0300,Misfire,n delimNotes / noNotes P0300,Misfire\r\n delimNotes",
                    [this] {
                        click("exportDTC");
                        return contents(folder.path("list")).substr(0, 15) + " " + enabled("delimNotes") +
                               (textOf("textHint").isEmpty() ? "" : " hint");
                    });
    click("dupOver");
    click("importDTC");
    EXPECT_EQ(shown("statusBox"), "0 DTC('s) add, 0 skip, 3upd, 3 total");
}

TEST_F(DtcEditFormTest, EditsARecordWithTheKeyboard)
{
    openAndImport();
    press("Ctrl+N");
    EXPECT_EQ(control<QLineEdit>("DTCcode")->selectedText(), u"Pxxyy");
    type("DTCdescr", std::string(120, 'd'));
    const std::string added = "P0303|" + std::string(100, 'd');
    const auto seen = [this] { return shown("DTCcode DTCdescr").substr(0, 106) + " " + focused(); };
    expectAfterEach("DTCcode:P030G P030G" + added.substr(5) + " DTCcode / Return P030G" + added.substr(5) +
                        " DTCcode / Del P030" + added.substr(5) + " DTCcode / 3 " + added + " DTCcode",
                    seen);
    expectAfterEach("Ctrl+S DTC saved", "statusBox");
    press("PgUp");
    expectAfterEach("F2 P0302|Cylinder 2 DTCdescr / DTCdescr:other P0302|other DTCdescr", seen);
    expectAfterEach("Esc P0302|Cylinder 2 / DTCdel " + added +
                        " / undoDelete P0302|Cylinder 2 / DTCadd Pxxyy|",
                    "DTCcode DTCdescr");
    closeBy("backCom");
    EXPECT_EQ(DtcDatabase::open(values.parmDTCdb)->count(), 4) << "what was not saved is dropped";
}

} // namespace
} // namespace zint
