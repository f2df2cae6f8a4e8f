#include "codes/window/codesForm.h"
#include "forms/formTest.h"
#include "launcher/window/failedConnForm.h"
#include "launcher/window/portsForm.h"
#include "platform/text.h"
#include "widgets/windowPrinter.h"

#include <QAbstractItemView>
#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QPrinter>
#include <QTreeWidget>

namespace zint {
namespace {

struct StartFormTest : FormTest {
    void open() { (form = new startForm(context))->show(); }
};

TEST_F(StartFormTest, TellsWhatThePortStandsFor)
{
    open();
    EXPECT_EQ(form->windowTitle(), u"Zint v1.5.1");
    EXPECT_TRUE(control<QLabel>("speedHint")->isVisible());
    EXPECT_TRUE(waitUntil([&] { return textOf("portInfo") == u"nothing connected"; }));
    system.ports = {{"/dev/ttyUSB0", "<b>FT232R", "0403:6001"}};
    EXPECT_TRUE(waitUntil([&] { return textOf("portInfo") == u"/dev/ttyUSB0 - <b>FT232R"; }));
    EXPECT_EQ(control<QComboBox>("comPort")->itemData(0, Qt::ToolTipRole).toString(),
              u"<p>/dev/ttyUSB0 - &lt;b&gt;FT232R</p>");

    launcher->choosePortForThisRun(PortNumber{3});
    launcher->chooseSpeedForThisRun(1);
    static_cast<startForm*>(form)->showAgain();
    EXPECT_EQ(control<QComboBox>("comSpeed")->currentText(), u"38400");
    auto* port = control<QComboBox>("comPort");
    EXPECT_EQ(port->currentText(), u"com3");
    QTest::keyClick(port, Qt::Key_F4);
    QTest::keyClick(port->view(), Qt::Key_Return); // the entry that is shown already
    launcher->unload();
    EXPECT_EQ(settings.get("Startup", "comPort") + settings.get("Startup", "comSpeed"), "20");
}

TEST_F(StartFormTest, ButtonsAndMenusDoTheirWork)
{
    open();
    for (const char* name : {"getCodes", "editDTC", "pollDesign2", "scanner", "debugger", "obdPoll"})
        click(name);
    EXPECT_EQ(opened,
              (std::vector{Tool::codes, Tool::dtcEditor, Tool::pollDesigner, Tool::scanner, Tool::terminal,
                           Tool::pollDesigner})); // the default design has unpolled events
    EXPECT_TRUE(values.isPollingWanted);
    trigger("mnuPorts");
    EXPECT_EQ(portsAssigned, 1);
    DtcDatabase::create(values.parmDTCdb = folder.path("dtc.mdb"));
    EXPECT_TRUE(messageOf([this] { trigger("mnuSetUpDtc"); }).endsWith(u"dtc.mdb\nIt stays as it is."));
    trigger("mnuClearReg");
    EXPECT_TRUE(messageOf([this] { trigger("mnuShowReg"); }).endsWith(u"Vars:\nparmInitDir \nparmDTCdb \n"));
    EXPECT_TRUE(messageOf([this] { trigger("mnuAbout"); }).startsWith(u"Zint Version 1.5.1\n"));
    EXPECT_TRUE(messageOf([this] { trigger("mnuHelp"); }).endsWith(u"/docstart2.html"))
        << "without a browser";
}

using FailedConnFormTest = FormTest;

TEST_F(FailedConnFormTest, ShowsTheFailureAndTheHints)
{
    values.lastFailureText = "SEARCHING...\r41 01 00 \r\r>";
    form = new failedConnForm(context);
    form->show();
    EXPECT_EQ(textOf("failedRpt"), u"SEARCHING...\n41 01 00 \n\n>") << "the reply's lines are lines here";
    EXPECT_TRUE(textOf("detail1").startsWith(u"We apologize for the inconvenience"));
    EXPECT_EQ(textOf("adviceLab"),
              u"Check port (/dev/ttyS0) and speed (9600) in the launcher; most adapters use 38400.");
    EXPECT_TRUE(messageOf([this] { click("helpCom"); }).endsWith(u"/docfails2.html"));
    const std::pair<const char*, const char*> hints[] = {{"tooOld", "OBD2 standards were in effect"},
                                                         {"badHardware", "Check all connections."},
                                                         {"ignitionOn", "The vehicle ignition must be ON"}};
    for (const auto& [button, hint] : hints) {
        click(button);
        EXPECT_TRUE(textOf("detail1").startsWith(QLatin1String(hint)));
    }
    form->setAttribute(Qt::WA_DeleteOnClose, false);
    click("applyCom");
    EXPECT_FALSE(form->isVisible());
}

using PortsFormTest = FormTest;

TEST_F(PortsFormTest, AssignsWhatWasChosenOrTypedUnlessCancelled)
{
    for (const PortNumber port : {PortNumber{4}, PortNumber{7}})
        ports.assign(port, "/dev/old");
    for (const PortNumber port : {PortNumber{5}, PortNumber{6}})
        ports.assignForThisRun(port, "/dev/run");
    auto* dialog = new portsForm(ports, nullptr);
    (form = dialog)->show();
    EXPECT_EQ(control<QComboBox>("assigned1")->currentText(), u"Automatic (nothing connected)");
    QTest::keyClicks(control<QComboBox>("assigned8")->lineEdit(), u"x"_qs);
    system.ports = {{"/dev/ttyUSB0", "FT232R USB UART", "0403:6001"}, {"/dev/ttyS0", "", ""}};
    auto* detected = control<QTreeWidget>("detectedPorts");
    EXPECT_TRUE(waitUntil([detected] { return detected->topLevelItem(0)->text(2) == u"0403:6001"; }));
    EXPECT_EQ(control<QComboBox>("assigned1")->currentText(), u"Automatic (/dev/ttyUSB0 - FT232R USB UART)");

    const std::pair<const char*, const char*> typed[] = {{"assigned1", "SIMULATED vehicle"},
                                                         {"assigned2", "/dev/ttyUSB0 - FT232R USB UART"},
                                                         {"assigned3", "  /dev/t "},
                                                         {"assigned4", "automatic"}};
    for (const auto& [name, text] : typed) {
        control<QComboBox>(name)->lineEdit()->selectAll();
        QTest::keyClicks(control<QComboBox>(name)->lineEdit(), QLatin1String(text));
    }
    QTest::keyClick(control<QComboBox>("assigned5"), Qt::Key_F4);
    QTest::keyClick(control<QComboBox>("assigned5")->view(), Qt::Key_Return); // as it is, to keep it
    dialog->reject();
    EXPECT_EQ(ports.assignment(PortNumber{1}), "");
    dialog->accept();
    const std::array expected = {"simulated", "/dev/ttyUSB0", "/dev/t", "", "/dev/run", "", "/dev/old"};
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_EQ(ports.assignment(allPorts.at(i)), expected[i]) << i + 1;
    EXPECT_EQ(ports.assignment(PortNumber{8}), "Automatic (nothing connected)x")
        << "what is typed stays when a port comes";
}

struct CodesFormTest : FormTest {
    CodesFormTest() { (form = new codesForm(context))->show(); }
};

TEST_F(CodesFormTest, ClosingEndsTheExchange)
{
    adapter->expect("ATZ\r");
    adapter->expect("ATD\r");
    EXPECT_TRUE(textOf("noDescriptions").contains(u"Set Up Code Descriptions"));
    click("getCodes");
    form->setAttribute(Qt::WA_DeleteOnClose, false); // the test looks at it once more
    click("backCom");
    EXPECT_FALSE(form->isVisible() || adapter->isOpen());
    EXPECT_FALSE(settings.get("Windows", "codesForm").empty()) << "the size is not remembered";
}

TEST_F(CodesFormTest, ShowsTheCodesOfCanFirstAndCopiesTheList)
{
    adapter->expectOpening();
    adapter->expect("0101\r").answer("41 01 81 07 65 04 \r\r>");
    adapter->expect("03\r").answer("43 01 04 20 \r\r>");
    adapter->expect("ATD\r");
    EXPECT_TRUE(QTest::qWaitForWindowActive(form) && !control<QAction>("mnuSaveReport")->isEnabled());
    QTest::keyClick(form, Qt::Key_G, Qt::AltModifier);
    adapter->play();
    EXPECT_TRUE(control<QAction>("mnuSaveReport")->isEnabled());
    const auto* warning = control<QLabel>("canWarning");
    QCoreApplication::processEvents(); // lays them out
    EXPECT_TRUE(warning->font().bold() && warning->y() < control<QLabel>("codesOutput")->y());
    control<QWidget>("codesScroll")->actions().constFirst()->trigger();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), warning->text() + u"\nP0104\nP20\n\n\n"_qs);
}

TEST_F(CodesFormTest, PrintsItsImage)
{
    QPrinter printer;
    printer.setOutputFileName(toQt(folder.path("codes.pdf")));
    ASSERT_TRUE(printImage(*form, printer));
    EXPECT_NE(contents(folder.path("codes.pdf")).find("/Image"), std::string::npos);
    printer.setOutputFileName(toQt(folder.path("no such folder/codes.pdf")));
    EXPECT_FALSE(printImage(*form, printer));
    EXPECT_FALSE(printDocument("text", printer));
}

} // namespace
} // namespace zint
