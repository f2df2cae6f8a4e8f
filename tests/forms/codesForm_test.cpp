#include "codes/codesForm.h"
#include "forms/formTest.h"
#include "platform/windowPrinter.h"
#include "support/scriptedPrompts.h"

#include <QFile>
#include <QPrinter>
#include <QTemporaryDir>
#include <QTest>

namespace zint {
namespace {

class CodesFormTest : public FormTest {
protected:
    CodesFormTest()
    {
        form = new codesForm(context);
        form->show();
    }

    void click(const char* name) { QTest::mouseClick(control<QPushButton>(name), Qt::LeftButton); }
};

TEST_F(CodesFormTest, ShowsWhatItsPanelSays)
{
    EXPECT_EQ(textOf("statusBox"), u"com1 Closed");
    EXPECT_EQ(textOf("labelStats"), u"Bytes In: 0  Out: 0     Errors: 0");
    EXPECT_EQ(textOf("clearCodes"), u"         Clear MIL          Reset data");
    EXPECT_FALSE(control<QPushButton>("clearCodes")->isEnabled());
    EXPECT_EQ(textOf("componentLab"), u"Components");

    adapter->expectOpening();
    adapter->expect("0101\r").answer("41 01 82 07 65 04 \r\r>").inChunksOf(3);
    adapter->expect("03\r").answer("43 01 33 C1 23 00 00 \r\r>");
    adapter->expect("ATD\r");
    click("getCodes");
    EXPECT_EQ(textOf("getCodes"), u"Cancel");
    EXPECT_EQ(textOf("statusBox"), u"com1 Open");
    adapter->play();

    EXPECT_EQ(textOf("getCodes"), u"Get Codes");
    EXPECT_EQ(textOf("statusBox"), u"com1 Closed");
    EXPECT_EQ(textOf("stateMIL"), u"Service Engine Soon Light is \nON");
    EXPECT_EQ(textOf("diagCodeFrame"), u"Diagnostic (MIL) Codes: 2 code(s) reported");
    EXPECT_EQ(textOf("codesOutput"), u"P0133\nU0123\n");
    EXPECT_EQ(textOf("componentLab"), u"Component Test OK");
    EXPECT_EQ(textOf("catalystLab"), u"Catalyst Test OK");
    EXPECT_EQ(textOf("evapLab"), u"Evaporative System Test Incomplete");
    EXPECT_EQ(textOf("egrLab"), u"EGR System Test Unsupported");
    EXPECT_TRUE(control<QPushButton>("clearCodes")->isEnabled());
}

TEST_F(CodesFormTest, ReceivesNothingWhileAMessageIsOpen)
{
    adapter->expectOpening();
    adapter->expect("0101\r").answer("NO DATA\r\r>");
    adapter->expect("ATD\r");
    QString shown;
    QString statsWhileOpen;
    withNextDialog([&](QWidget& dialog) {
        shown = static_cast<QMessageBox&>(dialog).text();
        adapter->receive("41 01 00 00 00 00 \r\r>"); // would be taken for a status
        statsWhileOpen = textOf("labelStats");
        dialog.close();
    });
    click("getCodes");
    adapter->play();

    EXPECT_TRUE(shown.startsWith(u"Please try again, ignition must be ON.  If ignition is ON"));
    EXPECT_EQ(values.lastFailureText, "NO DATA\r\r>");
    EXPECT_EQ(textOf("stateMIL"), u"") << "the late reply was handled although the exchange had ended";
    EXPECT_TRUE(textOf("labelStats").endsWith(u"Errors: 1"));
    EXPECT_TRUE(statsWhileOpen.endsWith(u"Errors: 0"));
    EXPECT_EQ(textOf("statusBox"), u"com1 Closed");
}

TEST_F(CodesFormTest, AsksBeforeItClears)
{
    control<QPushButton>("clearCodes")->setEnabled(true);
    QString question;
    answerNextBox(QMessageBox::Cancel, &question);
    click("clearCodes");
    EXPECT_TRUE(question.endsWith(u"time while the system recalibrates. \n\n To clear the OBD, press OK"));
    EXPECT_TRUE(adapter->history().empty());
}

TEST_F(CodesFormTest, ClosingEndsTheExchange)
{
    adapter->expect("ATZ\r");
    adapter->expect("ATD\r");
    click("getCodes");
    bool unloaded = false;
    QObject::connect(static_cast<toolForm*>(form), &toolForm::unloaded, form, [&] {
        unloaded = true;
        EXPECT_FALSE(adapter->isOpen());
        adapter->verifyAllUsed();
    });
    form->setAttribute(Qt::WA_DeleteOnClose, false); // the test looks at it once more
    click("backCom");
    EXPECT_TRUE(unloaded);
    EXPECT_FALSE(form->isVisible());
    EXPECT_FALSE(settings.get("Windows", "codesForm").empty()) << "the size is not remembered";
}

TEST_F(CodesFormTest, OpensTheConnectionTroubleDialog)
{
    control<QAction>("ftc")->trigger();
    EXPECT_EQ(failedConnOpened, 1);
}

TEST_F(CodesFormTest, PrintsItsImage)
{
    const QTemporaryDir folder;
    ScriptedPrompts prompts;
    const WindowPrinter windowPrinter(*form, prompts);
    QPrinter printer;
    printer.setOutputFormat(QPrinter::PdfFormat);

    printer.setOutputFileName(folder.filePath(QStringLiteral("codes.pdf")));
    ASSERT_TRUE(windowPrinter.printOn(printer));
    QFile file(printer.outputFileName());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray pdf = file.readAll();
    EXPECT_TRUE(pdf.startsWith("%PDF"));
    EXPECT_TRUE(pdf.contains("/Image"));

    printer.setOutputFileName(folder.filePath(QStringLiteral("no such folder/codes.pdf")));
    EXPECT_FALSE(windowPrinter.printOn(printer));
}

} // namespace
} // namespace zint
