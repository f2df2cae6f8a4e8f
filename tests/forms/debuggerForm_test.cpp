#include "forms/formTest.h"
#include "platform/text.h"
#include "terminal/commandHistory.h"
#include "terminal/window/debuggerForm.h"
#include "widgets/plainTextBox.h"

#include <QFileDialog>
#include <QLineEdit>

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
    expectDefault("openCom");
    open();
    EXPECT_EQ(textOf("openCom") + textOf("statusBox"), u"Close OBD (com1)com1 Ready");
    expectDefault("sendCom");

    for (int i = 0; i < 2; ++i)
        adapter->expect("010C\r").pieces = {"41 0C 1A F8 \r", "\r>"};
    adapter->expect("\r").pieces = {"41 0C 1A F9 \r", "\r>"};
    adapter->expect("\r");
    inBox->setText(u"010C"_qs);
    key(Qt::Key_Return);
    EXPECT_EQ(inBox->selectedText(), u"010C") << "the next command takes its place";
    choose("outputOverwrite");
    choose("displayOct");
    EXPECT_EQ(outBox->text(), "ATZ   ELM327 v1.5  \r\nATE0 OK  \r\n>010C  41  C  1A  F8  \r\n");
    click("repeatCom");
    EXPECT_EQ(textOf("repeatCom"), u"Stop Sending");
    inBox->setFocus();
    key(Qt::Key_Return); // sends nothing: the default button is disabled
    EXPECT_EQ(outBox->text(), ">010C  101  14  32  371  \r\n");
    click("repeatCom");
    EXPECT_EQ(textOf("repeatCom") + textOf("statusBox"), u"Send Repeatedly2 In 0 second(s) (0)");

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

TEST_F(DebuggerFormTest, TabEntersTheRadioGroupsAtTheChosenButton)
{
    control<QPushButton>("openCom")->setFocus();
    for (const char* chosen : {"displayHex", "displayDec"}) {
        QTest::keyClick(form->focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(form->focusWidget()->objectName(), QLatin1String(chosen));
        control<QAbstractButton>("displayDec")->setChecked(true);
        control<QPushButton>("openCom")->setFocus();
    }
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
    values.parmInitDir = folder.path();
    trigger("mnuSaveOutput");
    EXPECT_EQ(textOf("statusBox"), u"out.txt saved");
    QTimer answer; // to a dialog that asks for the name alone, else this ends in a time-out
    QObject::connect(&answer, &QTimer::timeout, form, [&] {
        answer.stop();
        auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        EXPECT_EQ(dialog->windowTitle(), u"Append To");
        static_cast<QDialog*>(dialog)->accept();
    });
    answer.start(5);
    trigger("mnuAppendOutputAs");
    EXPECT_EQ(contents(folder.path("out.txt")), "41 C\r\nNO DATA\r\n41 C\r\nNO DATA\r\n");
    values.parmOutput = folder.path("none/out.txt");
    EXPECT_TRUE(messageOf([&] { trigger("mnuSaveOutput"); }).contains(u"none/out.txt\" can't be written: "));
    EXPECT_EQ(textOf("statusBox"), u"The output was not saved");
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

} // namespace
} // namespace zint
