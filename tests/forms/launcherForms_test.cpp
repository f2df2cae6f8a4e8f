#include "dtcdb/dtcDatabase.h"
#include "forms/formTest.h"
#include "launcher/window/failedConnForm.h"
#include "launcher/window/portsForm.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QTreeWidget>

namespace zint {
namespace {

/// Chooses the entry of a list that is shown already.
void chooseAgain(QComboBox& list)
{
    QTest::keyClick(&list, Qt::Key_F4);
    QTest::keyClick(list.view(), Qt::Key_Return);
}

using StartFormTest = FormTest;

TEST_F(StartFormTest, TellsWhatThePortStandsForAndTakesAChoice)
{
    auto* start = open<startForm>(context);
    EXPECT_EQ(form->windowTitle(), u"Zint v1.5.1");
    EXPECT_TRUE(control("speedHint")->isVisible());
    EXPECT_TRUE(waitUntil([&] { return textOf("portInfo") == u"nothing connected"; }));
    system.ports = {{"/dev/ttyUSB0", "<b>FT232R", "0403:6001"}};
    EXPECT_TRUE(waitUntil([&] { return textOf("portInfo") == u"/dev/ttyUSB0 - <b>FT232R"; }));
    auto* port = control<QComboBox>("comPort");
    EXPECT_EQ(port->itemData(0, Qt::ToolTipRole).toString(), u"<p>/dev/ttyUSB0 - &lt;b&gt;FT232R</p>");

    launcher->choosePortForThisRun(PortNumber{3});
    launcher->chooseSpeedForThisRun(1);
    start->showAgain();
    EXPECT_EQ(shown("comPort comSpeed"), "com3|38400");
    chooseAgain(*port); // for good
    chooseAgain(*control<QComboBox>("comSpeed"));
    launcher->unload();
    EXPECT_EQ(settings.get("Startup", "comPort") + settings.get("Startup", "comSpeed"), "21");
}

TEST_F(StartFormTest, ButtonsAndMenusDoTheirWork)
{
    open<startForm>(context);
    for (const char* name :
         {"getCodes", "editDTC", "pollDesign2", "scanner", "debugger", "obdPoll", "mnuPorts"})
        click(name);
    EXPECT_EQ(opened,
              (std::vector{Tool::codes, Tool::dtcEditor, Tool::pollDesigner, Tool::scanner, Tool::terminal,
                           Tool::pollDesigner})); // the default design has unpolled events
    EXPECT_EQ(portsAssigned, 1);
    DtcDatabase::create(values.parmDTCdb = folder.path("dtc.mdb"));
    EXPECT_TRUE(messageBy("mnuSetUpDtc").ends_with("dtc.mdb\nIt stays as it is."));
    click("mnuClearReg");
    EXPECT_TRUE(messageBy("mnuShowReg").ends_with("Vars:\nparmInitDir \nparmDTCdb \n"));
    EXPECT_TRUE(messageBy("mnuAbout").starts_with("Zint Version 1.5.1\n"));
    EXPECT_TRUE(messageBy("mnuHelp").ends_with("/docstart2.html")) << "no browser";
}

using FailedConnFormTest = FormTest;

TEST_F(FailedConnFormTest, ShowsTheFailureAndTheHints)
{
    values.lastFailureText = "SEARCHING...\r41 01 00 \r\r>";
    open<failedConnForm>(context);
    EXPECT_EQ(shown("failedRpt adviceLab"),
              "SEARCHING...\n41 01 00 \n\n>|" // the reply's lines are lines here
              "Check port (/dev/ttyS0) and speed (9600) in the launcher; most adapters use 38400.");
    EXPECT_TRUE(messageBy("helpCom").ends_with("/docfails2.html"));
    expectAfterEach("tooOld OBD2 standards / badHardware Check all conn / ignitionOn The vehicle ig",
                    [this] { return shown("detail1").substr(0, 14); });
    closeBy("applyCom");
}

using PortsFormTest = FormTest;

TEST_F(PortsFormTest, AssignsWhatWasChosenOrTypedUnlessCancelled)
{
    for (const int port : {4, 7})
        ports.assign(PortNumber{port}, "/dev/old");
    for (const int port : {5, 6})
        ports.assignForThisRun(PortNumber{port}, "/dev/run");
    auto* dialog = open<portsForm>(ports, nullptr);
    const auto typeInto = [this](const char* name, const char* text) {
        QLineEdit* box = control<QComboBox>(name)->lineEdit();
        box->selectAll();
        QTest::keyClicks(box, QLatin1String(text));
    };
    typeInto("assigned8", "x");
    EXPECT_EQ(shown("assigned1"), "Automatic (nothing connected)");
    system.ports = {{"/dev/ttyUSB0", "FT232R USB UART", "0403:6001"}, {"/dev/ttyS0", "", ""}};
    auto* detected = control<QTreeWidget>("detectedPorts");
    EXPECT_TRUE(waitUntil([detected] { return detected->topLevelItem(0)->text(2) == u"0403:6001"; }));
    EXPECT_EQ(shown("assigned1"), "Automatic (/dev/ttyUSB0 - FT232R USB UART)");
    typeInto("assigned1", "SIMULATED vehicle");
    typeInto("assigned2", "/dev/ttyUSB0 - FT232R USB UART");
    typeInto("assigned3", "  /dev/t ");
    typeInto("assigned4", "automatic");
    chooseAgain(*control<QComboBox>("assigned5")); // to keep it
    dialog->reject();
    EXPECT_EQ(ports.assignment(PortNumber{1}), "");
    dialog->accept();
    std::string assigned;
    for (const PortNumber port : allPorts)
        assigned += ports.assignment(port) + "|";
    EXPECT_EQ(assigned, "simulated|/dev/ttyUSB0|/dev/t||/dev/run||/dev/old|x|");
}

TEST_F(PortsFormTest, PutsAnAdapterInTheNetworkIntoTheBoxAndAcceptsOnlyWhatCanBeUsed)
{
    ports.assign(PortNumber{1}, "replay:");
    auto* dialog = open<portsForm>(ports, nullptr);
    EXPECT_FALSE(control("problem")->isVisible()) << "nothing was typed";
    auto* box = control<QComboBox>("assigned2");
    const QPushButton* ok = control<QDialogButtonBox>("buttonBox")->button(QDialogButtonBox::Ok);
    box->setCurrentIndex(box->findText(u"Wi-Fi adapter..."_qs));
    chooseAgain(*box);
    EXPECT_EQ(shown("assigned2"), "tcp:192.168.0.10:35000");
    EXPECT_EQ(box->lineEdit()->selectedText(), u"192.168.0.10") << "to be typed over";
    QTest::keyClicks(box->lineEdit(), u"h"_qs);
    QTest::keyClick(box->lineEdit(), Qt::Key_End);
    QTest::keyClicks(box->lineEdit(), u"0"_qs);
    EXPECT_TRUE(control("problem")->isVisible());
    EXPECT_EQ(textOf("problem"), u"com2: \"tcp:HOST:PORT\" needs a port from 1 to 65535, such as 35000");
    EXPECT_FALSE(ok->isEnabled());
    dialog->accept();
    EXPECT_EQ(ports.assignment(PortNumber{2}), "");
    QTest::keyClick(box->lineEdit(), Qt::Key_Backspace);
    EXPECT_TRUE(ok->isEnabled() && !control("problem")->isVisible());
    dialog->accept();
    EXPECT_EQ(ports.assignment(PortNumber{2}), "tcp:h:35000");
}

TEST_F(PortsFormTest, TestsWhatIsChosenThoughItIsNotAssigned)
{
    struct : PortTester {
        std::string begun;
        Tell tell;

        void begin(PortNumber port, const std::string& location, Tell teller) override
        {
            begun = portName(port) + "=" + location;
            tell = std::move(teller);
        }
        void stop() override { begun = "stopped"; }
    } tester;
    system.ports = {{"/dev/ttyUSB0", "", ""}};
    auto* dialog = open<portsForm>(ports, nullptr, &tester);
    click("test1");
    EXPECT_EQ(tester.begun, "com1=/dev/ttyUSB0") << "what Automatic stands for";
    QTest::keyClicks(control<QComboBox>("assigned2")->lineEdit(), u"x"_qs);
    control<QComboBox>("assigned2")->setEditText(u"tcp:h"_qs);
    click("test2");
    EXPECT_EQ(tester.begun, "com2=tcp:h");
    tester.tell("ELM327 answers.");
    EXPECT_EQ(shown("outcome"), "com2: ELM327 answers.");
    dialog->reject();
    EXPECT_EQ(tester.begun + ports.assignment(PortNumber{2}), "stopped");
}

} // namespace
} // namespace zint
