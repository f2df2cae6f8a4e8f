#include "forms/formTest.h"
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
        adapter->expectOpening();
        key(Qt::Key_Return);
        outBox->replace({});
    }

    QString key(Qt::Key key)
    {
        inBox->setFocus();
        QTest::keyClick(inBox, key);
        adapter->play();
        return inBox->text();
    }

    void send(const QString& command)
    {
        adapter->expect(command.toStdString() + "\r").pieces = {"0A \r", "\r>"};
        inBox->setText(command);
        key(Qt::Key_Return);
    }

    bool isDefault(const char* button) { return control<QPushButton>(button)->isDefault(); }
    bool isOn(const char* menu) { return control<QAction>(menu)->isEnabled(); }
};

TEST_F(DebuggerFormTest, OpensSendsRepeatsAndCloses)
{
    EXPECT_EQ(textOf("openCom") + textOf("statusBox"), u"Close OBD (com1)com1 Ready");
    EXPECT_TRUE(isDefault("sendCom") && !isDefault("openCom") && isOn("mnuCloseCom") && !isOn("mnuOpenCom"));
    const std::pair<const char*, const char*> rows[] = {
        {"outputAppend", ">\xC3\xA9  A  \r\n"},     {"displayOct", ">\xC3\xA9  A  \r\n>\xC3\xA9  12  \r\n"},
        {"outputOverwrite", ">\xC3\xA9  12  \r\n"}, {"displayDec", ">\xC3\xA9  10  \r\n"},
        {"displayHex", ">\xC3\xA9  A  \r\n"},
    };
    for (const auto& [option, shown] : rows) {
        control<QAbstractButton>(option)->click();
        send(u"\u00E9"_qs);
        EXPECT_EQ(outBox->text(), shown) << option;
        EXPECT_EQ(inBox->selectedText(), u"\u00E9") << "the next command takes its place";
    }
    adapter->expect("\xC3\xA9\r").pieces = {"0A \r", "\r>"};
    adapter->expect("\r");
    control<QAbstractButton>("outputScroll")->click();
    click("repeatCom");
    key(Qt::Key_Return); // sends nothing: the default button is disabled
    EXPECT_TRUE(outBox->text().starts_with("ATZ "));
    click("repeatCom");
    EXPECT_EQ(textOf("repeatCom") + textOf("statusBox"), u"Send Repeatedly1 In 0 second(s) (0)");
    adapter->expect("ATD\r");
    trigger("mnuCloseCom");
    EXPECT_TRUE(isDefault("openCom") && !isDefault("sendCom") && isOn("mnuOpenCom") && !isOn("mnuCloseCom"));
}

TEST_F(DebuggerFormTest, TabEntersTheRadioGroupsAtTheChosenButton)
{
    for (const char* chosen : {"displayHex", "displayDec"}) {
        control<QPushButton>("openCom")->setFocus();
        QTest::keyClick(form->focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(form->focusWidget()->objectName(), QLatin1String(chosen));
        control<QAbstractButton>("displayDec")->setChecked(true);
    }
}

TEST_F(DebuggerFormTest, TheArrowsBringBackTypedCommandsAlsoOfEarlierRuns)
{
    for (const char* command : {"ATI", "ATI", "", "010C"})
        send(QLatin1String(command));
    EXPECT_EQ(key(Qt::Key_Up), u"ATI") << "the newest is in the box already";
    EXPECT_EQ(key(Qt::Key_Up), u"ATI");
    inBox->setText(u"010"_qs);
    EXPECT_EQ(key(Qt::Key_Down), u"010C");
    EXPECT_EQ(key(Qt::Key_Down), u"010") << "a line that was begun";
    adapter->expect("ATD\r");
    click("openCom");
    click("sendCom"); // does not send what is in the box
    for (int i = 0; i < 2; ++i) {
        CommandHistory history(settings); // the second one finds more than it keeps
        EXPECT_EQ(history.older({}), i == 0 ? "010C" : "100");
        for (std::size_t command = 1; command <= CommandHistory::most; ++command)
            history.add(std::to_string(command));
        std::string oldest;
        for (std::size_t step = 0; step <= CommandHistory::most; ++step)
            oldest = history.older(oldest);
        EXPECT_EQ(oldest, "1");
    }
}

TEST_F(DebuggerFormTest, SavesAndTellsWhyNotAndShowsTheCounters)
{
    outBox->replace("41 C\r\nNO DATA");
    values.parmOutput = folder.path("out.txt");
    values.parmOutputFile = "out.txt";
    values.parmInitDir = folder.path();
    trigger("mnuSaveOutput");
    EXPECT_EQ(textOf("statusBox"), u"out.txt saved");
    QTimer::singleShot(5, form, [] { // a dialog that asks for the name alone, else this ends in a time-out
        auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        EXPECT_EQ(dialog->windowTitle(), u"Append To");
        static_cast<QDialog*>(dialog)->accept();
    });
    trigger("mnuAppendOutputAs");
    EXPECT_EQ(contents(folder.path("out.txt")), "41 C\r\nNO DATA\r\n41 C\r\nNO DATA\r\n");
    values.parmOutput = folder.path("none/out.txt");
    EXPECT_TRUE(messageOf([&] { trigger("mnuSaveOutput"); }).contains(u"none/out.txt\" can't be written: "));
    EXPECT_EQ(textOf("statusBox"), u"The output was not saved");
    trigger("mnuSelect");
    EXPECT_EQ(outBox->textCursor().selectedText(), u"41 C\u2029NO DATA");

    EXPECT_TRUE(waitUntil([&] { return textOf("labelStats") == u"Bytes In: 30 Out: 9 Errors: 0"; }));
    EXPECT_TRUE(messageOf([&] { click("labelStats"); }).startsWith(u"Bytes In: 30\n   Messages Recvd:2\n\n"));
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
