#include "forms/formTest.h"
#include "platform/plainTextBox.h"
#include "platform/text.h"
#include "platform/windowPrinter.h"
#include "terminal/commandHistory.h"
#include "terminal/debuggerForm.h"

#include <QFile>
#include <QLineEdit>
#include <QPrinter>
#include <QRadioButton>

namespace zint {
namespace {

struct DebuggerFormTest : FormTest {
    QLineEdit* inBox = nullptr;
    PlainTextBox* outBox = nullptr;

    DebuggerFormTest() { show(); }

    void show()
    {
        delete form;
        form = new debuggerForm(context);
        form->show();
        inBox = control<QLineEdit>("inBox");
        outBox = control<PlainTextBox>("outBox");
    }

    void open()
    {
        adapter->expectOpening();
        QTest::keyClick(inBox, Qt::Key_Return);
        adapter->play();
    }

    void send(const QString& command)
    {
        inBox->setText(command);
        QTest::keyClick(inBox, Qt::Key_Return);
        adapter->play();
    }

    QString key(Qt::Key key)
    {
        QTest::keyClick(inBox, key);
        return inBox->text();
    }

    void trigger(const char* action) { control<QAction>(action)->trigger(); }
    bool isDefault(const char* name) { return control<QPushButton>(name)->isDefault(); }

    QByteArray saved() const
    {
        QFile file(toQt(values.parmOutput));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
};

TEST_F(DebuggerFormTest, OpensSendsRepeatsAndCloses)
{
    EXPECT_EQ(textOf("openCom"), u"Open OBD (com1)");
    EXPECT_TRUE(isDefault("openCom") && !isDefault("sendCom") &&
                !control<QAction>("mnuCloseCom")->isEnabled());
    open();
    EXPECT_EQ(textOf("openCom"), u"Close OBD (com1)");
    EXPECT_EQ(textOf("statusBox"), u"com1 Ready");
    EXPECT_TRUE(isDefault("sendCom") && !isDefault("openCom") &&
                !control<QAction>("mnuOpenCom")->isEnabled());

    adapter->expect("010C\r").pieces = {"41 0C 1A F8 \r", "\r>"};
    send(u"010C"_qs);
    EXPECT_EQ(outBox->text(), "ATZ   ELM327 v1.5  \r\nATE0 OK  \r\n>010C  41  C  1A  F8  \r\n");
    control<QRadioButton>("outputOverwrite")->click();
    control<QRadioButton>("displayOct")->click();
    EXPECT_TRUE(outBox->text().starts_with("ATZ")) << "the reply that is shown stays as it is";
    adapter->expect("010C\r").pieces = {"41 0C 1A F8 \r", "\r>"};
    adapter->expect("\r").pieces = {"41 0C 1A F9 \r", "\r>"};
    adapter->expect("\r");
    click("repeatCom");
    EXPECT_EQ(textOf("repeatCom"), u"Stop Sending");
    QTest::keyClick(inBox, Qt::Key_Return); // the default button is disabled
    adapter->play();
    EXPECT_EQ(outBox->text(), ">010C  101  14  32  371  \r\n");
    click("repeatCom");
    EXPECT_EQ(textOf("repeatCom"), u"Send Repeatedly");
    EXPECT_EQ(textOf("statusBox"), u"2 In 0 second(s) (0)");

    control<QRadioButton>("outputAppend")->click();
    control<QRadioButton>("displayDec")->click();
    adapter->expect("0\xC3\xA9\r").pieces = {"?\r", "\r>"}; // sent as it is
    send(u"0\u00E9"_qs);
    EXPECT_EQ(outBox->text(), ">010C  101  14  32  371  \r\n>0\xC3\xA9  ?\r\n");
    trigger("mnuOpenCom"); // it is open
    adapter->expect("ATD\r");
    trigger("mnuCloseCom");
    EXPECT_EQ(textOf("statusBox"), u"com1 Closed");
    EXPECT_TRUE(isDefault("openCom"));
    trigger("mnuClrOutput");
    EXPECT_EQ(outBox->text(), "");
}

TEST_F(DebuggerFormTest, TheArrowsBringBackTypedCommandsAlsoOfEarlierRuns)
{
    inBox->setText(u"never sent"_qs);
    click("sendCom"); // the port is closed
    open();
    for (const char* command : {"ATI", "ATI", "", "010C"}) {
        adapter->expect(command + std::string("\r"));
        send(QString::fromLatin1(command));
    }
    EXPECT_EQ(key(Qt::Key_Up), u"ATI") << "the newest is in the box already";
    EXPECT_EQ(key(Qt::Key_Up), u"ATI");
    EXPECT_EQ(key(Qt::Key_Down), u"010C");
    adapter->expect("ATD\r");
    form->close();
    form = nullptr;
    show();
    inBox->setText(u"ATD"_qs);
    EXPECT_EQ(key(Qt::Key_Down), u"ATD");
    EXPECT_EQ(key(Qt::Key_Up), u"010C");
    inBox->setText(u"010"_qs);
    EXPECT_EQ(key(Qt::Key_Up), u"ATI");
    key(Qt::Key_Down);
    EXPECT_EQ(key(Qt::Key_Down), u"010") << "a line that was begun";

    CommandHistory history(settings);
    for (std::size_t i = 0; i <= CommandHistory::most; ++i)
        history.add(std::to_string(i));
    settings.save("Terminal", "commands", "\n\nx\n" + settings.get("Terminal", "commands"));
    CommandHistory next(settings);
    std::string shown;
    for (std::size_t i = 0; i <= CommandHistory::most; ++i)
        shown = next.older(shown);
    EXPECT_EQ(shown, "1");
}

TEST_F(DebuggerFormTest, SavesAppendsAndTellsWhyNot)
{
    outBox->replace("41 C\r\nNO DATA");
    values.parmOutput = folder.path("out.txt");
    values.parmOutputFile = "out.txt";
    trigger("mnuSaveOutput");
    trigger("mnuAppendOutput");
    EXPECT_EQ(saved(), "41 C\r\nNO DATA\r\n41 C\r\nNO DATA\r\n");
    EXPECT_EQ(textOf("statusBox"), u"out.txt saved");
    values.parmOutput = folder.path("no such folder/out.txt");
    for (const char* action : {"mnuSaveOutput", "mnuAppendOutput"}) {
        QString told;
        answerNextBox(QMessageBox::Ok, &told);
        trigger(action);
        EXPECT_TRUE(told.contains(u"no such folder/out.txt\" can't be written: No such file"))
            << told.toStdString();
    }
    EXPECT_EQ(outBox->text(), "41 C\r\nNO DATA");
    trigger("mnuSelect");
    EXPECT_EQ(form->focusWidget(), outBox);
    EXPECT_EQ(outBox->textCursor().selectedText(), u"41 C\u2029NO DATA");
}

TEST_F(DebuggerFormTest, ShowsTheCounters)
{
    open();
    EXPECT_EQ(textOf("labelStats"), u"Bytes In: 30 Out: 9 Errors: 0");
    QString told;
    answerNextBox(QMessageBox::Ok, &told);
    QTest::keyClick(control<QPushButton>("labelStats"), Qt::Key_Return);
    EXPECT_TRUE(
        told.startsWith(u"Bytes In: 30\n   Messages Recvd:2\n\nBytes Out: 9\n   Commands Sent:1\n\n"));
    trigger("mnuClearCount");
    EXPECT_EQ(textOf("labelStats"), u"Bytes In: 0 Out: 0 Errors: 0");
    adapter->expect("ATD\r");
    form->setAttribute(Qt::WA_DeleteOnClose, false);
    click("backCom");
    EXPECT_FALSE(form->isVisible() || adapter->isOpen());
}

TEST_F(DebuggerFormTest, TheOutputBoxTakesAnyTextAndShowsItsEnd)
{
    const std::string odd = std::string("a\0b\x1B[1m\x7F\t", 9) + "\xC2\xA0\xE2\x80\xA8\xF0\x9F\x9A\x97";
    outBox->append("41 ");
    outBox->append("0C\r\n\r\n>");
    outBox->append("");
    outBox->append(odd + "\r\n");
    EXPECT_EQ(outBox->text(), "41 0C\r\n\r\n>" + odd + "\r\n");
    QTest::keyClicks(outBox, u"typed"_qs);
    QTest::keyClick(outBox, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(outBox->text(), "41 0C\r\n\r\n>" + odd + "\r\n");
    for (int i = 0; i < 200; ++i)
        outBox->append("41 0C " + std::to_string(i) + "\r\n");
    EXPECT_TRUE(outBox->viewport()->rect().contains(outBox->cursorRect()));
    EXPECT_TRUE(outBox->textCursor().atEnd());

    QPrinter printer;
    printer.setOutputFileName(toQt(folder.path("out.pdf")));
    ASSERT_TRUE(printText(outBox->text(), printer));
    QFile file(printer.outputFileName());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const auto pages = file.readAll().count("/Type /Page\n");
    EXPECT_TRUE(pages >= 3 && pages <= 8) << pages;
}

} // namespace
} // namespace zint
