#include "forms/formTest.h"
#include "scanner/window/calcHdrForm.h"
#include "scanner/window/scanForm.h"
#include "widgets/plainTextBox.h"

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
    const std::string valid = "V 010B1  00 \r\nV 010C1  30 39 \r\n";
    expectAfterEach("displayAll " + valid + "X 010D1 ?\r\nN 010E1 NO DATA\r\n / displayValid " + valid +
                        " / displayData " + valid +
                        "X 010D1 ?\r\n / displayNonz V 010C1  30 39 \r\n / "
                        "dspAscii V 010C1  30 39    [09]\r\n / dspDecimal V 010C1  30 39    [09] 12345\r\n / "
                        "dspNames V 010C1  30 39    [09] 12345 Engine RPM\r\n",
                    [this] {
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
                        const std::size_t start = text.find('\n') + 1; // behind what was asked for
                        return text.substr(start, text.find("Scan Completed") - start);
                    });
    expectStatus("com1 Scan Completed 4 Events(s)");
    EXPECT_EQ(shown("labelStats ProgressBar1"), "Bytes In: 497 Out: 259 Errors: 0|100%");
    EXPECT_TRUE(messageBy("labelStats").ends_with("\n    Invalid:1\n       Zero:1"));
    click("mnuClear");
    EXPECT_TRUE(outBox->text().ends_with("M\r\n")) << "the time: " << outBox->text();
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

TEST_F(ScanFormTest, ChecksABoxOnceWhenItIsLeft)
{
    expectAfterEach("modeStart:3g 3g / Tab 01", "modeStart");
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

using CalcHdrFormTest = FormTest;

TEST_F(CalcHdrFormTest, ControlsMakeTheHeader)
{
    open<calcHdrForm>("6C30F1", settings, nullptr);
    EXPECT_EQ(shown("targetFrame hdrTarget optBit7"), "Target (physical)|30|Inframe             Response");

    auto* dialog = open<calcHdrForm>("686AF1", settings, nullptr);
    EXPECT_EQ(enabled("hdrTarget prioVal"), "prioVal");
    const char* const fields = "prioVal hdrOpt hdrTarget hdrSource";
    expectAfterEach("optBit0 3|78|6A|F1 / optBit1 2|58|6A|F1 / optBit2 0|18|6A|F1 / optBit3 4|98|6A|F1 / "
                    "optBit4 4|99|6A|F1 / optBit5 4|9B|6A|F1 / optBit7 4|93|6A|F1 / optBit6 4|97|10|F1",
                    fields);
    EXPECT_EQ(enabled("hdrTarget") + focused(), "hdrTargethdrTarget");
    EXPECT_EQ(control<QLineEdit>("hdrTarget")->selectedText(), u"10");
    expectAfterEach("hdrTarget:5 4|97|5|F1 / hdrSource:9 4|97|05|9 / prioVal:9 9|97|05|09 / "
                    "optBit0 7|E7|05|09",
                    fields); // takes the focus: the box that was left is checked first
    EXPECT_EQ(dialog->header(), "E70509");
}

TEST_F(CalcHdrFormTest, ReturnAppliesWhatWasTypedAndEscapeCancels)
{
    auto* dialog = open<calcHdrForm>("6C30F1", settings, nullptr);
    type("hdrTarget", "0");
    press("Return");
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_EQ(dialog->header(), "6C10F1") << "the box with the focus is checked too";
    for (const std::string step : {"Esc", "cancelCom"}) {
        dialog = open<calcHdrForm>("6C30F1", settings, nullptr);
        expectAfterEach(step + " 30", "hdrTarget");
        EXPECT_FALSE(dialog->isVisible() || dialog->result() == QDialog::Accepted);
    }
}

} // namespace
} // namespace zint
