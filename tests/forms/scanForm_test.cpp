#include "forms/formTest.h"
#include "platform/text.h"
#include "scanner/window/calcHdrForm.h"
#include "scanner/window/scanForm.h"
#include "widgets/plainTextBox.h"

#include <QLineEdit>
#include <QMenuBar>
#include <QProgressBar>
#include <QRegularExpression>

namespace zint {
namespace {

struct ScanFormTest : FormTest {
    PlainTextBox* outBox = nullptr;

    ScanFormTest() { open(); }

    void open()
    {
        delete form;
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

    void expectText(const char* name, const QString& text)
    {
        EXPECT_TRUE(waitUntil([&] { return textOf(name) == text; })) << fromQt(textOf(name));
    }
};

TEST_F(ScanFormTest, ShowsRepliesByItsFiltersAndFormatsAndRemembersThem)
{
    const QRegularExpression date(u"^[A-Z][a-z]+, [A-Z][a-z]+ \\d\\d, \\d{4} \\d\\d:\\d\\d [AP]M\\r\\n$"_qs);
    EXPECT_TRUE(date.match(toQt(outBox->text())).hasMatch()) << outBox->text();
    const std::pair<const char*, const char*> boxes[] = {
        {"modeStart", "1"}, {"pidStart", "b"}, {"pidStop", "e"}, {"cmdSuffix", "1"}};
    for (const auto& [name, text] : boxes)
        type(name, QLatin1String(text));
    const std::pair<const char*, const char*> rows[] = {
        {"displayAll", "V 010B1  00 \nV 010C1  30 39 \nX 010D1 ?\nN 010E1 NO DATA\n"},
        {"displayValid", "V 010B1  00 \nV 010C1  30 39 \n"},
        {"displayData", "V 010B1  00 \nV 010C1  30 39 \nX 010D1 ?\n"},
        {"displayNonz", "V 010C1  30 39 \n"},
        {"dspAscii", "V 010C1  30 39    [09]\n"},
        {"dspDecimal", "V 010C1  30 39    [09] 12345\n"},
        {"dspNames", "V 010C1  30 39    [09] 12345 Engine RPM\n"}};
    for (const auto& [choice, expected] : rows) {
        SCOPED_TRACE(choice);
        control<QAbstractButton>(choice)->click();
        adapter->expectOpening();
        const char* const replies[] = {"41 0B 00 ", "41 0C 30 39 ", "?", "NO DATA"};
        for (int pid = 0xB; pid <= 0xE; ++pid)
            adapter->expect("010" + std::string(1, "BCDE"[pid - 0xB]) + "1\r")
                .answer(replies[pid - 0xB] + std::string("\r\r>"));
        adapter->expect("ATD\r");
        outBox->replace({});
        click("comScan");
        adapter->play();
        const QString shown = toQt(outBox->text()).remove(u'\r');
        EXPECT_EQ(shown.section(u'\n', 1).section(u"Scan Completed"_qs, 0, 0), QLatin1String(expected));
    }
    expectText("statusBox", u"com1 Scan Completed 4 Events(s)"_qs);
    EXPECT_TRUE(outBox->text().starts_with("Header: 686AF1 Mode:1-01 Pid:B-E Suffix:1\r\n"));
    EXPECT_EQ(textOf("labelStats"), u"Bytes In: 497 Out: 259 Errors: 0");
    EXPECT_EQ(control<QProgressBar>("ProgressBar1")->text(), u"100%");
    EXPECT_TRUE(messageOf([&] { click("labelStats"); }).endsWith(u"\n    Invalid:1\n       Zero:1"_qs));
    trigger("mnuClear");
    EXPECT_TRUE(date.match(toQt(outBox->text())).hasMatch()) << outBox->text();

    form->setAttribute(Qt::WA_DeleteOnClose, false);
    click("backCom");
    open();
    EXPECT_EQ(box("pidStart")->text() + box("pidStop")->text() + box("cmdSuffix")->text(), u"BE1");
    for (const char* choice : {"displayNonz", "dspAscii", "dspDecimal", "dspNames"})
        EXPECT_TRUE(control<QAbstractButton>(choice)->isChecked()) << choice;
}

TEST_F(ScanFormTest, EnterBeginsAScanFromTheSixBoxesAlone)
{
    const auto press = [this](const char* name) {
        control<QWidget>(name)->setFocus();
        QTest::keyClick(control<QWidget>(name), Qt::Key_Return);
    };
    for (const char* other : {"outBox", "displayAll", "dspAscii"})
        press(other);
    for (const char* name : {"cmdHead", "modeStart", "modeStop", "pidStart", "pidStop", "cmdSuffix"}) {
        adapter->expect("ATZ\r");
        press(name);
        EXPECT_EQ(textOf("comScan"), u"Stop Scan") << name;
        EXPECT_FALSE(control<QAction>("mnuOpenCom")->isEnabled() || control<QWidget>("calcHdr")->isEnabled());
        EXPECT_EQ(box(name)->isReadOnly(), name == std::string_view("cmdHead")) << name;
        press(name); // ends none
        adapter->expect("ATD\r");
        trigger("mnuCloseCom");
        expectText("statusBox", u"com1 Scan Halted after 0 Events(s)"_qs);
    }
    adapter->expect("ATZ\r");
    trigger("mnuOpenCom");
    adapter->expect("ATD\r");
    form->setAttribute(Qt::WA_DeleteOnClose, false);
    click("backCom");
    EXPECT_FALSE(form->isVisible() || adapter->isOpen());
}

TEST_F(ScanFormTest, AScanGoesOnWhileAFileIsChosen)
{
    adapter->expectOpening();
    click("comScan");
    QTimer::singleShot(0, form, [this] {
        adapter->expect("0100\r");
        adapter->play();
        expectText("statusBox", u"com1 Scanning"_qs);
        QApplication::activeModalWidget()->close();
    });
    trigger("mnuSaveOutputAs");
    adapter->expect("ATD\r");
    click("comScan");
}

TEST_F(ScanFormTest, ChecksABoxOnceWhenItIsLeft)
{
    type("modeStart", u"3g"_qs);
    QTest::keyClick(box("modeStart"), Qt::Key_Tab);
    EXPECT_EQ(box("modeStart")->text(), u"01");
    expectText("statusBox", u"Mode must be 1 or 2 hex digits"_qs);
    type("pidStop", u"12345"_qs);
    QFocusEvent toMenu(QEvent::FocusOut, Qt::MenuBarFocusReason);
    QCoreApplication::sendEvent(box("pidStop"), &toMenu);
    EXPECT_EQ(box("pidStop")->text(), u"12345");
    control<QMenuBar>("menubar")->setFocus(Qt::MenuBarFocusReason);
    box("pidStart")->setFocus(); // by the mouse, out of the menu
    EXPECT_EQ(box("pidStop")->text(), u"");
    for (const bool byMouse : {false, true}) {
        type("pidStop", u"12345"_qs);
        byMouse ? click("comScan") : trigger("mnuOpenCom"); // the focus is still in the box
        expectText("statusBox", u"Pid must be 0 to 4 hex digits"_qs);
        EXPECT_EQ(box("pidStop")->text() + textOf("comScan"), u"Begin Scan");
    }
}

TEST_F(ScanFormTest, TheCalculatorMakesAHeaderThatMayErase)
{
    type("modeStop", u"4"_qs);
    type("cmdHead", u"7e8"_qs);
    control<QPushButton>("calcHdr")->click(); // as a key does, which leaves the focus in the box
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
