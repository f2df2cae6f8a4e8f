#include "forms/formTest.h"
#include "terminal/commandHistory.h"
#include "terminal/window/debuggerForm.h"
#include "widgets/plainTextBox.h"

namespace zint {
namespace {

struct DebuggerFormTest : FormTest {
    PlainTextBox* outBox = nullptr;

    DebuggerFormTest()
    {
        open<debuggerForm>(context);
        outBox = control<PlainTextBox>("outBox");
        adapter->expectOpening();
        press("Return");
        adapter->play();
        outBox->replace({});
    }

    void send(const std::string& command)
    {
        adapter->expect(command + "\r").pieces = {"0A \r", "\r>"};
        control<QLineEdit>("inBox")->setText(toQt(command));
        press("Return");
        adapter->play();
    }

    /// What can be done with the port, and the default button.
    std::string portControls()
    {
        return enabled("mnuOpenCom mnuCloseCom") +
               (control<QPushButton>("openCom")->isDefault() ? " openCom" : "") +
               (control<QPushButton>("sendCom")->isDefault() ? " sendCom" : "");
    }
};

TEST_F(DebuggerFormTest, OpensSendsRepeatsAndCloses)
{
    EXPECT_EQ(shown("openCom statusBox"), "Close OBD (com1)|com1 Ready");
    EXPECT_EQ(portControls(), "mnuCloseCom sendCom");
    const std::string row = ">\xC3\xA9  ";
    expectAfterEach("outputAppend " + row + "A  \r\n / displayOct " + row + "A  \r\n" + row +
                        "12  \r\n / outputOverwrite " + row + "12  \r\n / displayDec " + row +
                        "10  \r\n / displayHex " + row + "A  \r\n",
                    [this] {
                        send("\xC3\xA9");
                        return outBox->text();
                    });
    EXPECT_EQ(control<QLineEdit>("inBox")->selectedText(), u"\u00E9") << "the next command takes its place";
    adapter->expect("\xC3\xA9\r").pieces = {"0A \r", "\r>"};
    adapter->expect("\r");
    click("outputScroll");
    click("repeatCom");
    control("inBox")->setFocus();
    press("Return"); // sends nothing: the default button is disabled
    adapter->play();
    click("repeatCom");
    EXPECT_EQ(shown("repeatCom statusBox"), "Send Repeatedly|1 In 0 second(s) (0)");
    EXPECT_TRUE(outBox->text().starts_with("ATZ "));
    adapter->expect("ATD\r");
    click("mnuCloseCom");
    EXPECT_EQ(portControls(), "mnuOpenCom openCom");
}

TEST_F(DebuggerFormTest, TheArrowsBringBackTypedCommandsAlsoOfEarlierRuns)
{
    for (const char* command : {"ATI", "ATI", "", "010C"})
        send(command);
    expectAfterEach("Up ATI / Up ATI / inBox:010 010 / Down 010C / Down 010",
                    "inBox"); // the newest was there
    adapter->expect("ATD\r");
    click("openCom");
    click("sendCom"); // does not send what is in the box
    CommandHistory history(settings);
    EXPECT_EQ(history.older({}), "010C");
    for (std::size_t command = 1; command <= CommandHistory::most; ++command)
        history.add(std::to_string(command));
    std::string oldest;
    for (std::size_t step = 0; step <= CommandHistory::most; ++step)
        oldest = history.older(oldest);
    EXPECT_EQ(oldest, "1");
}

TEST_F(DebuggerFormTest, SavesAndTellsWhyNotAndShowsTheCounters)
{
    outBox->replace("41 C\r\nNO DATA");
    EXPECT_TRUE(waitUntil([&] { return outBox->blockCount() == 2; })) << "it is shown after a while";
    values.parmOutput = folder.path("out.txt");
    values.parmOutputFile = "out.txt";
    values.parmInitDir = folder.path();
    click("mnuSaveOutput");
    EXPECT_EQ(shown("statusBox"), "out.txt saved");
    inNextDialog([](QDialog& dialog) { // asks for the name alone, else this ends in a time-out
        EXPECT_EQ(dialog.windowTitle(), u"Append To");
        dialog.accept();
    });
    click("mnuAppendOutputAs");
    EXPECT_EQ(contents(folder.path("out.txt")), "41 C\r\nNO DATA\r\n41 C\r\nNO DATA\r\n");
    values.parmOutput = folder.path("none/out.txt");
    EXPECT_NE(messageBy("mnuSaveOutput").find("none/out.txt\" can't be written: "), std::string::npos);
    EXPECT_EQ(shown("statusBox"), "The output was not saved");
    click("mnuSelect");
    EXPECT_EQ(outBox->textCursor().selectedText(), u"41 C\u2029NO DATA");

    EXPECT_TRUE(waitUntil([&] { return textOf("labelStats") == u"Bytes In: 30 Out: 9 Errors: 0"; }));
    EXPECT_TRUE(messageBy("labelStats").starts_with("Bytes In: 30\n   Messages Recvd:2\n\n"));
    click("mnuClearCount");
    EXPECT_TRUE(waitUntil([&] { return textOf("labelStats") == u"Bytes In: 0 Out: 0 Errors: 0"; }));
    click("mnuClrOutput");
    EXPECT_EQ(outBox->text(), "");
    adapter->expect("ATD\r");
    closeBy("backCom");
}

} // namespace
} // namespace zint
