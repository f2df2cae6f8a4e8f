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

    bool isShownAsText()
    {
        const auto* box = control<QLineEdit>("DTCcode");
        EXPECT_EQ(box->isReadOnly(),
                  box->palette().color(QPalette::Base) == form->palette().color(QPalette::Window));
        return box->isReadOnly();
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
    const std::string closed = "DTCcontrol dtcDBname browseDB";
    const std::string ready = "DTCcontrol " + boxes + browsing + filling + " DTCedit DTCdel";
    EXPECT_EQ(seen(), closed);
    control("dtcDBname")->setFocus();
    press("Return");
    EXPECT_EQ(seen(), "DTCcontrol " + boxes + filling);
    EXPECT_EQ(focused(), "importDTC");
    expectAfterClicks({{"importDTC", ready + " skippedLines"}}, seen);
    EXPECT_EQ(shown("statusBox DTCframe"),
              "3 DTC('s) add, 1 skip, 0dup, 4 total|Current DTC Record (3 Record(s) Total)");
    EXPECT_EQ(messageBy("skippedLines"), "Line 4: \"none\" is no code\n");
    EXPECT_TRUE(isShownAsText());
    expectAfterClicks({{"DTCadd", boxes + " DTCsave DTCcancel"}}, seen);
    EXPECT_FALSE(isShownAsText());
    type("DTCsearchCode", "P0301");
    expectAfterClicks({{"DTCcancel", ready + " skippedLines"},
                       {"DTCdel", ready + " undoDelete skippedLines"},
                       {"DTCcontrol", closed}},
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
    expectAfterClicks({{"DTCcontrol", "DTCcontrol " + boxes + browsing + " exportDTC"}}, seen);
}

TEST_F(DtcEditFormTest, BrowsesByButtonsAndKeys)
{
    openAndImport();
    const std::tuple<const char*, const char*, const char*> rows[] = {{"DTClast", "Ctrl+PgDown", "P0302"},
                                                                      {"DTCprev", "PgUp", "P0301"},
                                                                      {"DTCfirst", "Ctrl+PgUp", "P0300"},
                                                                      {"DTCnext", "PgDown", "P0301"}};
    for (const auto& [button, keys, code] : rows) {
        click(button);
        EXPECT_EQ(shown("DTCcode"), code) << button;
    }
    control("DTCsearchCode")->setFocus(); // where it is after opening
    for (const auto& [button, keys, code] : rows) {
        press(keys);
        EXPECT_EQ(shown("DTCcode"), code) << keys;
    }
    type("DTCsearchCode", "p0302");
    press("Return");
    EXPECT_EQ(shown("DTCdescr"), "Cylinder 2");
    EXPECT_EQ(control<QLineEdit>("DTCsearchCode")->selectedText(), u"p0302");
}

TEST_F(DtcEditFormTest, HandsTheOptionsOnToExportAndImport)
{
    openAndImport();
    type("DTCtext", folder.path("list"));
    const auto exported = [this] {
        click("exportDTC");
        return contents(folder.path("list")).substr(0, 15) + " " + enabled("delimNotes") +
               (textOf("textHint").isEmpty() ? "" : " hint");
    };
    expectAfterClicks({{"delimNotes", "P0300,Misfire,n delimNotes"},
                       {"useTab", "P0300\tMisfire\tn delimNotes"},
                       {"useLen", "P0300Misfire    delimNotes"},
                       {"useCsv", "\xEF\xBB\xBF"
                                  "Code,Descrip "},
                       {"useSpace", "P0300 Misfire n delimNotes hint"},
                       {"useComma", "P0300,Misfire,n delimNotes"},
                       {"noNotes", "P0300,Misfire\r\n delimNotes"}},
                      exported);
    click("dupOver");
    click("importDTC");
    EXPECT_EQ(shown("statusBox"), "0 DTC('s) add, 0 skip, 3upd, 3 total");
}

TEST_F(DtcEditFormTest, EditsARecordWithTheKeyboard)
{
    openAndImport();
    press("Ctrl+N");
    const auto* code = control<QLineEdit>("DTCcode");
    EXPECT_EQ(focused(), "DTCcode");
    EXPECT_EQ(code->selectedText(), u"Pxxyy");
    type("DTCcode", "P030G");
    type("DTCdescr", std::string(120, 'd'));
    press("Return");
    EXPECT_EQ(shown("statusBox") + focused(), "Invalid DTC CodeDTCcode");
    EXPECT_EQ(code->cursorPosition(), 4);
    press("Del");
    press("3");
    press("Ctrl+S");
    EXPECT_EQ(shown("statusBox DTCcode DTCdescr"), "DTC saved|P0303|" + std::string(100, 'd'));
    press("PgUp");
    press("F2");
    EXPECT_EQ(focused(), "DTCdescr");
    type("DTCdescr", "other");
    press("Esc");
    EXPECT_EQ(shown("DTCdescr"), "Cylinder 2");
    expectAfterClicks({{"DTCdel", "P0303"}, {"undoDelete", "P0302"}, {"DTCadd", "Pxxyy"}},
                      [this] { return shown("DTCcode"); });
    closeBy("backCom");
    EXPECT_EQ(DtcDatabase::open(values.parmDTCdb)->count(), 4) << "what was not saved is dropped";
}

} // namespace
} // namespace zint
