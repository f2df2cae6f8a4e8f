#include "forms/formTest.h"
#include "scanner/window/calcHdrForm.h"
#include "scanner/window/scanForm.h"
#include "widgets/plainTextBox.h"

#include <QMenuBar>
#include <QRegularExpression>

namespace zint {
namespace {

struct ScanFormTest : FormTest {
    PlainTextBox* outBox = nullptr;

    ScanFormTest() { openScanner(); }

    void openScanner()
    {
        open<scanForm>(context);
        outBox = control<PlainTextBox>("outBox");
    }

    void expectStatus(const char* text)
    {
        EXPECT_TRUE(waitUntil([&] { return shown("statusBox") == text; })) << shown("statusBox");
    }
};

TEST_F(ScanFormTest, ShowsRepliesByItsFiltersAndFormatsAndRemembersThem)
{
    for (const auto& [name, text] :
         {std::pair{"modeStart", "1"}, {"pidStart", "b"}, {"pidStop", "e"}, {"cmdSuffix", "1"}})
        type(name, text);
    const auto scan = [this] {
        adapter->expectOpening();
        adapter->expect("010B1\r").answer("41 0B 00 \r\r>");
        adapter->expect("010C1\r").answer("41 0C 30 39 \r\r>");
        adapter->expect("010D1\r").answer("?\r\r>");
        adapter->expect("010E1\r").answer("NO DATA\r\r>");
        adapter->expect("ATD\r");
        outBox->replace({});
        click("comScan");
        adapter->play();
        const std::string text = outBox->text();
        const std::size_t start = text.find('\n') + 1; // behind the line of what was asked for
        return text.substr(start, text.find("Scan Completed") - start);
    };
    expectAfterClicks({{"displayAll", "V 010B1  00 \r\nV 010C1  30 39 \r\nX 010D1 ?\r\nN 010E1 NO DATA\r\n"},
                       {"displayValid", "V 010B1  00 \r\nV 010C1  30 39 \r\n"},
                       {"displayData", "V 010B1  00 \r\nV 010C1  30 39 \r\nX 010D1 ?\r\n"},
                       {"displayNonz", "V 010C1  30 39 \r\n"},
                       {"dspAscii", "V 010C1  30 39    [09]\r\n"},
                       {"dspDecimal", "V 010C1  30 39    [09] 12345\r\n"},
                       {"dspNames", "V 010C1  30 39    [09] 12345 Engine RPM\r\n"}},
                      scan);
    expectStatus("com1 Scan Completed 4 Events(s)");
    EXPECT_EQ(shown("labelStats ProgressBar1"), "Bytes In: 497 Out: 259 Errors: 0|100%");
    EXPECT_TRUE(outBox->text().starts_with("Header: 686AF1 Mode:1-01 Pid:B-E Suffix:1\r\n"));
    EXPECT_TRUE(messageBy("labelStats").ends_with("\n    Invalid:1\n       Zero:1"));
    click("mnuClear");
    const QRegularExpression date(
        QStringLiteral("^[A-Z][a-z]+, [A-Z][a-z]+ \\d\\d, \\d{4} \\d\\d:\\d\\d [AP]M\\r\\n$"));
    EXPECT_TRUE(date.match(toQt(outBox->text())).hasMatch()) << outBox->text();

    closeBy("backCom");
    openScanner();
    EXPECT_EQ(shown("pidStart pidStop cmdSuffix"), "B|E|1");
    for (const char* choice : {"displayNonz", "dspAscii", "dspDecimal", "dspNames"})
        EXPECT_TRUE(control<QAbstractButton>(choice)->isChecked()) << choice;
}

TEST_F(ScanFormTest, EnterBeginsAScanFromTheSixBoxesAlone)
{
    const auto enter = [this](const char* name) {
        control(name)->setFocus();
        QTest::keyClick(control(name), Qt::Key_Return);
    };
    for (const char* other : {"outBox", "displayAll", "dspAscii"})
        enter(other);
    for (const char* name : {"cmdHead", "modeStart", "modeStop", "pidStart", "pidStop", "cmdSuffix"}) {
        adapter->expect("ATZ\r");
        enter(name);
        EXPECT_EQ(shown("comScan"), "Stop Scan") << name;
        EXPECT_FALSE(control<QAction>("mnuOpenCom")->isEnabled() || control("calcHdr")->isEnabled());
        EXPECT_EQ(control<QLineEdit>(name)->isReadOnly(), name == std::string_view("cmdHead")) << name;
        enter(name); // ends none
        adapter->expect("ATD\r");
        click("mnuCloseCom");
        expectStatus("com1 Scan Halted after 0 Events(s)");
    }
    adapter->expect("ATZ\r");
    click("mnuOpenCom");
    adapter->expect("ATD\r");
    closeBy("backCom");
}

TEST_F(ScanFormTest, AScanGoesOnWhileAFileIsChosen)
{
    adapter->expectOpening();
    click("comScan");
    inNextDialog([this](QDialog& dialog) {
        adapter->expect("0100\r");
        adapter->play();
        expectStatus("com1 Scanning");
        dialog.close();
    });
    click("mnuSaveOutputAs");
    adapter->expect("ATD\r");
    click("comScan");
}

TEST_F(ScanFormTest, ChecksABoxOnceWhenItIsLeft)
{
    type("modeStart", "3g");
    press("Tab");
    EXPECT_EQ(shown("modeStart"), "01");
    expectStatus("Mode must be 1 or 2 hex digits");
    type("pidStop", "12345");
    QFocusEvent toMenu(QEvent::FocusOut, Qt::MenuBarFocusReason);
    QCoreApplication::sendEvent(control("pidStop"), &toMenu);
    EXPECT_EQ(shown("pidStop"), "12345");
    control("menubar")->setFocus(Qt::MenuBarFocusReason);
    control("pidStart")->setFocus(); // by the mouse, out of the menu
    EXPECT_EQ(shown("pidStop"), "");
    for (const char* scan : {"mnuOpenCom", "comScan"}) {
        type("pidStop", "12345");
        click(scan); // the focus is still in the box
        expectStatus("Pid must be 0 to 4 hex digits");
        EXPECT_EQ(shown("pidStop comScan"), "|Begin Scan");
    }
}

TEST_F(ScanFormTest, TheCalculatorMakesAHeaderThatMayErase)
{
    type("modeStop", "4");
    type("cmdHead", "7e8");
    control<QPushButton>("calcHdr")->click(); // as a key does, which leaves the focus in the box
    auto* dialog = control<calcHdrForm>("calcHdrForm");
    EXPECT_EQ(dialog->header(), "686AF1");
    dialog->reject();
    EXPECT_EQ(shown("cmdHead"), "686AF1");
    EXPECT_FALSE(control("warning")->isVisible());
    QCoreApplication::sendPostedEvents(dialog, QEvent::DeferredDelete);

    click("calcHdr");
    dialog = control<calcHdrForm>("calcHdrForm");
    click("optBit6");
    dialog->accept();
    EXPECT_EQ(shown("cmdHead"), "6C10F1");
    EXPECT_TRUE(control("warning")->isVisible() && textOf("warning").contains(u"erases"));
}

struct CalcHdrFormTest : FormTest {
    calcHdrForm* edit(const char* header) { return open<calcHdrForm>(header, settings, nullptr); }
};

TEST_F(CalcHdrFormTest, ControlsMakeTheHeader)
{
    auto* dialog = edit("6C30F1");
    EXPECT_EQ(shown("targetFrame hdrTarget optBit7"), "Target (physical)|30|Inframe             Response");
    QString guide;
    for (const QLabel* label : dialog->findChildren<QLabel*>())
        guide += label->text();
    EXPECT_TRUE(guide.contains(u"F1-FDOff-board test equipment"));

    dialog = edit("686AF1");
    EXPECT_EQ(enabled("hdrTarget prioVal"), "prioVal");
    expectAfterClicks({{"optBit0", "78|786AF1"},
                       {"optBit1", "58|586AF1"},
                       {"optBit2", "18|186AF1"},
                       {"optBit3", "98|986AF1"},
                       {"optBit4", "99|996AF1"},
                       {"optBit5", "9B|9B6AF1"},
                       {"optBit7", "93|936AF1"},
                       {"optBit6", "97|9710F1"}},
                      [&] { return shown("hdrOpt") + "|" + dialog->header(); });
    EXPECT_EQ(enabled("hdrTarget") + focused(), "hdrTargethdrTarget");
    EXPECT_EQ(control<QLineEdit>("hdrTarget")->selectedText(), u"10");
    for (const auto& [box, text] : {std::pair{"hdrTarget", "5"}, {"hdrSource", "9"}, {"prioVal", "9"}})
        type(box, text);
    EXPECT_EQ(shown("hdrTarget hdrSource"), "05|09");
    click("optBit0"); // takes the focus: the box that was left is checked first
    EXPECT_EQ(shown("prioVal") + dialog->header(), "7E70509");
}

TEST_F(CalcHdrFormTest, ReturnAppliesWhatWasTypedAndEscapeCancels)
{
    auto* dialog = edit("6C30F1");
    type("hdrTarget", "0");
    press("Return");
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_EQ(dialog->header(), "6C10F1") << "the box with the focus is checked too";
    dialog = edit("6C30F1");
    press("Esc");
    EXPECT_FALSE(dialog->isVisible());
    dialog = edit("6C30F1");
    closeBy("cancelCom");
    EXPECT_EQ(dialog->result(), QDialog::Rejected);
}

} // namespace
} // namespace zint
