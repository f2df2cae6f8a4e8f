#include "forms/formTest.h"
#include "platform/plainTextBox.h"
#include "platform/text.h"
#include "platform/windowPrinter.h"
#include "terminal/commandHistory.h"
#include "terminal/debuggerForm.h"

#include <QLineEdit>
#include <QPrinter>

namespace zint {
namespace {

struct DebuggerFormTest : FormTest {
    QLineEdit* inBox = nullptr;
    PlainTextBox* outBox = nullptr;

    DebuggerFormTest()
    {
        (form = new debuggerForm(context))->show();
        inBox = control<QLineEdit>("inBox");
        outBox = control<PlainTextBox>("outBox");
    }

    QString key(Qt::Key key)
    {
        QTest::keyClick(inBox, key);
        adapter->play();
        return inBox->text();
    }

    void open()
    {
        adapter->expectOpening();
        key(Qt::Key_Return);
    }

    void choose(const char* option) { control<QAbstractButton>(option)->click(); }

    /// Whether openCom is the default button, or sendCom.
    void expectDefault(const char* name)
    {
        for (const char* button : {"openCom", "sendCom"})
            EXPECT_EQ(control<QPushButton>(button)->isDefault(), button == std::string(name));
        EXPECT_EQ(control<QAction>("mnuOpenCom")->isEnabled(), name == std::string("openCom"));
        EXPECT_EQ(control<QAction>("mnuCloseCom")->isEnabled(), name == std::string("sendCom"));
    }
};

TEST_F(DebuggerFormTest, OpensSendsRepeatsAndCloses)
{
    EXPECT_EQ(textOf("openCom"), u"Open OBD (com1)");
    expectDefault("openCom");
    open();
    EXPECT_EQ(textOf("openCom"), u"Close OBD (com1)");
    EXPECT_EQ(textOf("statusBox"), u"com1 Ready");
    expectDefault("sendCom");

    for (int i = 0; i < 2; ++i)
        adapter->expect("010C\r").pieces = {"41 0C 1A F8 \r", "\r>"};
    adapter->expect("\r").pieces = {"41 0C 1A F9 \r", "\r>"};
    adapter->expect("\r");
    inBox->setText(u"010C"_qs);
    key(Qt::Key_Return);
    choose("outputOverwrite");
    choose("displayOct");
    EXPECT_EQ(outBox->text(), "ATZ   ELM327 v1.5  \r\nATE0 OK  \r\n>010C  41  C  1A  F8  \r\n");
    click("repeatCom");
    EXPECT_EQ(textOf("repeatCom"), u"Stop Sending");
    inBox->setFocus();
    key(Qt::Key_Return); // sends nothing: the default button is disabled
    EXPECT_EQ(outBox->text(), ">010C  101  14  32  371  \r\n");
    click("repeatCom");
    EXPECT_EQ(textOf("repeatCom"), u"Send Repeatedly");
    EXPECT_EQ(textOf("statusBox"), u"2 In 0 second(s) (0)");

    choose("outputAppend");
    choose("displayDec");
    adapter->expect("0\xC3\xA9\r").pieces = {"41 0C \r", "\r>"};
    inBox->setText(u"0\u00E9"_qs);
    click("sendCom");
    adapter->play();
    EXPECT_EQ(outBox->text(), ">010C  101  14  32  371  \r\n>0\xC3\xA9  65  12  \r\n");
    trigger("mnuOpenCom"); // it is open
    adapter->expect("ATD\r");
    trigger("mnuCloseCom");
    EXPECT_EQ(textOf("statusBox"), u"com1 Closed");
    expectDefault("openCom");
}

TEST_F(DebuggerFormTest, TheArrowsBringBackTypedCommandsAlsoOfEarlierRuns)
{
    inBox->setText(u"never sent"_qs);
    click("sendCom"); // the port is closed
    inBox->setFocus();
    open();
    for (const char* command : {"ATI", "ATI", "", "010C"}) {
        adapter->expect(command + std::string("\r"));
        inBox->setText(QLatin1String(command));
        key(Qt::Key_Return);
    }
    EXPECT_EQ(key(Qt::Key_Up), u"ATI") << "the newest is in the box already";
    EXPECT_EQ(key(Qt::Key_Up), u"ATI");
    EXPECT_EQ(key(Qt::Key_Down), u"010C");
    inBox->setText(u"010"_qs);
    EXPECT_EQ(key(Qt::Key_Up), u"ATI");
    EXPECT_EQ(key(Qt::Key_Down), u"010C");
    EXPECT_EQ(key(Qt::Key_Down), u"010") << "a line that was begun";

    CommandHistory later(settings);
    EXPECT_EQ(later.older({}), "010C");
    for (std::size_t i = 0; i <= CommandHistory::most; ++i)
        later.add(std::to_string(i));
    settings.save("Terminal", "commands", "\n\nx\n" + settings.get("Terminal", "commands"));
    CommandHistory last(settings);
    std::string shown;
    for (std::size_t i = 0; i <= CommandHistory::most; ++i)
        shown = last.older(shown);
    EXPECT_EQ(shown, "1");
}

TEST_F(DebuggerFormTest, SavesAndTellsWhyNotAndShowsTheCounters)
{
    outBox->replace("41 C\r\nNO DATA");
    values.parmOutput = folder.path("out.txt");
    values.parmOutputFile = "out.txt";
    trigger("mnuSaveOutput");
    trigger("mnuAppendOutput");
    EXPECT_EQ(contents(values.parmOutput), "41 C\r\nNO DATA\r\n41 C\r\nNO DATA\r\n");
    EXPECT_EQ(textOf("statusBox"), u"out.txt saved");
    values.parmOutput = folder.path("none/out.txt");
    for (const char* action : {"mnuSaveOutput", "mnuAppendOutput"})
        EXPECT_TRUE(messageOf([&] { trigger(action); }).contains(u"none/out.txt\" can't be written: "));
    EXPECT_EQ(outBox->text(), "41 C\r\nNO DATA");
    trigger("mnuSelect");
    EXPECT_EQ(form->focusWidget(), outBox);
    EXPECT_EQ(outBox->textCursor().selectedText(), u"41 C\u2029NO DATA");

    open();
    EXPECT_TRUE(waitUntil([&] { return textOf("labelStats") == u"Bytes In: 30 Out: 9 Errors: 0"; }));
    control<QPushButton>("labelStats")->setFocus();
    EXPECT_TRUE(messageOf([&] { key(Qt::Key_Return); }).startsWith(u"Bytes In: 30\n   Messages Recvd:2\n\n"));
    trigger("mnuClearCount");
    EXPECT_TRUE(waitUntil([&] { return textOf("labelStats") == u"Bytes In: 0 Out: 0 Errors: 0"; }));
    trigger("mnuClrOutput");
    EXPECT_EQ(outBox->text(), "");
    adapter->expect("ATD\r");
    form->setAttribute(Qt::WA_DeleteOnClose, false);
    click("backCom");
    EXPECT_FALSE(form->isVisible() || adapter->isOpen());
}

TEST_F(DebuggerFormTest, TheOutputBoxTakesAnyTextAndKeepsItsEndInView)
{
    const std::string odd = std::string("a\0b\x1B[1m\x7F\t", 9) + "\xC2\xA0\xE2\x80\xA8\xF0\x9F\x9A\x97";
    for (const std::string& piece : {std::string("41 "), std::string("0C\r\n\r\n>"), odd + "\r\n"})
        outBox->append(piece);
    QTest::keyClicks(outBox, u"typed"_qs);
    EXPECT_EQ(outBox->text(), "41 0C\r\n\r\n>" + odd + "\r\n");
    for (int i = 0; i < 200; ++i)
        outBox->append("41 0C\r\n");
    EXPECT_TRUE(waitUntil([&] { return outBox->document()->blockCount() == 204; }));
    EXPECT_TRUE(outBox->text().starts_with("41 0C\r\n\r\n>" + odd + "\r\n41 0C\r\n")) << "once it is shown";
    const auto isEndInView = [&] { return outBox->viewport()->rect().contains(outBox->cursorRect()); };
    EXPECT_TRUE(outBox->textCursor().atEnd() && isEndInView());
    form->resize(form->width(), form->height() - 150);
    EXPECT_TRUE(isEndInView());

    QPrinter printer;
    printer.setOutputFileName(toQt(folder.path("out.pdf")));
    ASSERT_TRUE(printText(outBox->text(), printer));
    EXPECT_GE(QByteArray::fromStdString(contents(folder.path("out.pdf"))).count("/Type /Page\n"), 3);
}

} // namespace
} // namespace zint
