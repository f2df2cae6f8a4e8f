#include "forms/formTest.h"
#include "platform/plainTextBox.h"
#include "platform/text.h"
#include "scanner/calcHdrForm.h"
#include "scanner/scanForm.h"

#include <QLineEdit>
#include <QMenuBar>
#include <QRegularExpression>

namespace zint {
namespace {

struct ScanFormTest : FormTest {
    PlainTextBox* outBox = nullptr;

    ScanFormTest()
    {
        (form = new scanForm(context))->show();
        outBox = control<PlainTextBox>("outBox");
        EXPECT_TRUE(QTest::qWaitForWindowActive(form));
    }

    QLineEdit* box(const char* name) { return control<QLineEdit>(name); }

    void type(const char* name, const QString& text)
    {
        box(name)->setFocus();
        box(name)->selectAll();
        QTest::keyClicks(box(name), text.isEmpty() ? u"\b"_qs : text);
    }

    void expectStatus(const QString& text)
    {
        EXPECT_TRUE(waitUntil([&] { return textOf("statusBox") == text; })) << fromQt(textOf("statusBox"));
    }

    /// Begins a scan of a single request, up to that request.
    void beginScan(const std::string& request)
    {
        type("modeStart", u"1"_qs);
        type("pidStart", u"c"_qs);
        type("pidStop", u"c"_qs);
        adapter->expectOpening();
        adapter->expect(request);
        click("comScan");
        adapter->play();
    }
};

TEST_F(ScanFormTest, ScansWithTheChosenFilterAndFormats)
{
    EXPECT_TRUE(QRegularExpression(u"^[A-Z][a-z]+, [A-Z][a-z]+ \\d\\d, \\d{4} \\d\\d:\\d\\d [AP]M\\r\\n$"_qs)
                    .match(toQt(outBox->text()))
                    .hasMatch())
        << outBox->text();
    EXPECT_EQ(textOf("labelStats"), u"Bytes In: 0  Out: 0     Errors: 0");
    for (const char* choice : {"displayNonz", "dspDecimal", "dspAscii"})
        control<QAbstractButton>(choice)->click();
    outBox->replace({});
    beginScan("010C\r");
    EXPECT_EQ(textOf("comScan"), u"Stop Scan");
    EXPECT_EQ(box("pidStop")->text(), u"C") << "the button took the focus from it";
    EXPECT_FALSE(control<QAction>("mnuOpenCom")->isEnabled());
    box("pidStop")->setFocus();
    QTest::keyClick(box("pidStop"), Qt::Key_Return); // begins a scan, but ends none
    adapter->expect("ATD\r");
    adapter->receive("41 0C 30 39 \r\r>");
    EXPECT_EQ(outBox->text(), "Header: 686AF1 Mode:1-01 Pid:C-C Suffix:\r\n"
                              "V 010C  30 39    [09] 12345\r\n"
                              "Scan Completed\r\n"
                              "  Events(s):1\r\n    No Data:0\r\n    Invalid:0\r\n       Zero:0\r\n\r\n\r\n");
    expectStatus(u"com1 Scan Completed 1 Events(s)"_qs);
    trigger("mnuClear");
    EXPECT_EQ(outBox->text().find("Scan"), std::string::npos);

    adapter->expectOpening();
    adapter->expect("010C\r");
    box("modeStop")->setFocus();
    QTest::keyClick(box("modeStop"), Qt::Key_Return);
    adapter->play();
    adapter->expect("ATD\r");
    trigger("mnuCloseCom");
    expectStatus(u"com1 Scan Halted after 0 Events(s)"_qs);

    beginScan("010C\r");
    adapter->expect("ATD\r");
    form->setAttribute(Qt::WA_DeleteOnClose, false);
    click("backCom");
    EXPECT_FALSE(form->isVisible() || adapter->isOpen());
}

TEST_F(ScanFormTest, ChecksABoxOnceWhenItIsLeft)
{
    type("modeStart", u"3g"_qs);
    QTest::keyClick(box("modeStart"), Qt::Key_Tab);
    EXPECT_EQ(box("modeStart")->text(), u"01");
    expectStatus(u"Mode must be 1 or 2 hex digits"_qs);
    type("pidStop", u"12345"_qs);
    QFocusEvent toMenu(QEvent::FocusOut, Qt::MenuBarFocusReason);
    QCoreApplication::sendEvent(box("pidStop"), &toMenu);
    EXPECT_EQ(box("pidStop")->text(), u"12345");
    control<QMenuBar>("menubar")->setFocus(Qt::MenuBarFocusReason);
    box("pidStart")->setFocus(); // by the mouse, out of the menu
    EXPECT_EQ(box("pidStop")->text(), u"");
    type("pidStop", u"12345"_qs);
    adapter->expect("ATZ\r");
    trigger("mnuOpenCom"); // the focus is still in the box
    EXPECT_EQ(box("pidStop")->text(), u"");
    EXPECT_NE(outBox->text().find("Mode:01-01 Pid:00- Suffix:"), std::string::npos);
    adapter->expect("ATD\r");
    trigger("mnuCloseCom");
}

TEST_F(ScanFormTest, TheCalculatorMakesAHeaderThatMayErase)
{
    type("modeStop", u"4"_qs);
    type("cmdHead", u"7e8"_qs);
    click("calcHdr");
    auto* dialog = control<calcHdrForm>("calcHdrForm");
    EXPECT_EQ(dialog->header(), "686AF1");
    dialog->reject();
    EXPECT_EQ(box("cmdHead")->text(), u"686AF1");
    EXPECT_FALSE(control<QWidget>("warning")->isVisible());
    QCoreApplication::sendPostedEvents(dialog, QEvent::DeferredDelete);

    click("calcHdr");
    dialog = control<calcHdrForm>("calcHdrForm");
    dialog->findChild<QAbstractButton*>(u"optBit6"_qs)->click();
    dialog->accept();
    EXPECT_EQ(box("cmdHead")->text(), u"6C10F1");
    EXPECT_TRUE(control<QWidget>("warning")->isVisible());
    EXPECT_TRUE(textOf("warning").contains(u"erases"));
}

} // namespace
} // namespace zint
