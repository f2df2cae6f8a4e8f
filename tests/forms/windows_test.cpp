#include "app/failedConnForm.h"
#include "app/portsForm.h"
#include "codes/codesForm.h"
#include "forms/formTest.h"
#include "platform/text.h"
#include "platform/windowPrinter.h"

#include <QComboBox>
#include <QPrinter>
#include <QTreeWidget>

namespace zint {
namespace {

struct StartFormTest : FormTest {
    void open() { (form = makeStartForm().release())->show(); }
};

TEST_F(StartFormTest, TellsWhatThePortStandsFor)
{
    open();
    EXPECT_EQ(form->windowTitle(), u"Zint v1.5.1");
    EXPECT_TRUE(waitUntil([&] { return textOf("portInfo") == u"nothing connected"; }));
    system.ports = {{"/dev/ttyUSB0", "FT232R USB UART", "0403:6001"}};
    EXPECT_TRUE(waitUntil([&] { return textOf("portInfo") == u"/dev/ttyUSB0 - FT232R USB UART"; }));
    control<QComboBox>("comPort")->setCurrentIndex(2);
    control<QComboBox>("comSpeed")->setCurrentIndex(1);
    EXPECT_EQ(textOf("portInfo"), u"nothing connected");
    EXPECT_EQ(launcher->panel().comSpeed, 1);
}

TEST_F(StartFormTest, ButtonsAndMenusDoTheirWork)
{
    open();
    EXPECT_FALSE(control<QPushButton>("debugger")->isEnabled()) << "the tool does not exist here";
    for (const char* name : {"getCodes", "editDTC", "pollDesign2", "obdPoll", "scanner"})
        click(name);
    EXPECT_EQ(opened, (std::vector{Tool::codes, Tool::dtcEditor, Tool::pollDesigner,
                                   Tool::pollDesigner, // the default design has unpolled events
                                   Tool::scanner}));
    trigger("mnuPorts");
    EXPECT_EQ(portsAssigned, 1);
    TemporaryFolder::write(values.parmDTCdb = folder.path("dtc.mdb"), "kept");
    EXPECT_TRUE(messageOf([this] { trigger("mnuSetUpDtc"); }).endsWith(u"dtc.mdb\nIt stays as it is."));
    trigger("mnuClearReg");
    EXPECT_TRUE(messageOf([this] { trigger("mnuShowReg"); }).endsWith(u"Vars:\nparmInitDir \nparmDTCdb \n"));
    EXPECT_TRUE(messageOf([this] { trigger("mnuAbout"); }).startsWith(u"Zint Version 1.5.1\n"));
}

using FailedConnFormTest = FormTest;

TEST_F(FailedConnFormTest, ShowsTheFailureAndTheHints)
{
    EXPECT_EQ(failedConnForm(context).findChild<QLabel*>(QStringLiteral("failedRpt"))->text(), u"");
    values.lastFailureText = "SEARCHING...\r41 01 00 \r\r>";
    form = new failedConnForm(context);
    form->show();
    EXPECT_EQ(textOf("failedRpt"), u"SEARCHING...\n41 01 00 \n\n>") << "the reply's lines are lines here";
    EXPECT_TRUE(textOf("detail1").startsWith(u"We apologize for the inconvenience"));
    click("tooOld");
    EXPECT_TRUE(textOf("detail1").startsWith(u"OBD2 standards were in effect in the U.S. in 1996."));
    click("badHardware");
    EXPECT_TRUE(textOf("detail1").endsWith(u"re-attaching the computer, wait, then vehicle"));
    click("ignitionOn");
    EXPECT_EQ(textOf("detail1"), u"The vehicle ignition must be ON, preferably with engine running");
    form->setAttribute(Qt::WA_DeleteOnClose, false);
    click("applyCom");
    EXPECT_FALSE(form->isVisible());
}

using PortsFormTest = FormTest;

TEST_F(PortsFormTest, AssignsWhatWasChosenOrTypedUnlessCancelled)
{
    system.ports = {{"/dev/ttyUSB0", "FT232R USB UART", "0403:6001"}};
    ports.assign(4, "/dev/old");
    auto* dialog = new portsForm(ports, nullptr);
    form = dialog;
    EXPECT_EQ(control<QTreeWidget>("detectedPorts")->topLevelItem(0)->text(2), u"0403:6001");
    EXPECT_EQ(control<QComboBox>("assigned1")->currentText(), u"Automatic");
    EXPECT_EQ(control<QComboBox>("assigned4")->currentText(), u"/dev/old");
    control<QComboBox>("assigned1")->setCurrentText(u"Simulated vehicle"_qs);
    control<QComboBox>("assigned2")->setCurrentText(u"/dev/ttyUSB0 - FT232R USB UART"_qs);
    control<QComboBox>("assigned3")->setCurrentText(u"  /dev/rfcomm0 "_qs);
    control<QComboBox>("assigned4")->setCurrentText(u""_qs);
    dialog->reject();
    EXPECT_EQ(ports.assignment(1), "");
    dialog->accept();
    EXPECT_TRUE(ports.target(1).isSimulated());
    EXPECT_EQ(ports.assignment(2), "/dev/ttyUSB0");
    EXPECT_EQ(ports.assignment(3), "/dev/rfcomm0");
    EXPECT_EQ(ports.assignment(4), "");
    EXPECT_EQ(settings.get("Ports", "com5", "not saved"), "not saved");
}

struct CodesFormTest : FormTest {
    CodesFormTest() { (form = new codesForm(context))->show(); }
};

TEST_F(CodesFormTest, ClosingEndsTheExchange)
{
    adapter->expect("ATZ\r");
    adapter->expect("ATD\r");
    click("getCodes");
    bool unloaded = false;
    QObject::connect(static_cast<toolForm*>(form), &toolForm::unloaded, form, [&] {
        unloaded = true;
        EXPECT_FALSE(adapter->isOpen());
    });
    form->setAttribute(Qt::WA_DeleteOnClose, false); // the test looks at it once more
    click("backCom");
    EXPECT_TRUE(unloaded);
    EXPECT_FALSE(form->isVisible());
    EXPECT_FALSE(settings.get("Windows", "codesForm").empty()) << "the size is not remembered";
}

TEST_F(CodesFormTest, TellsHowToComeByDescriptionsWhileThereAreNone)
{
    EXPECT_TRUE(control<QLabel>("noDescriptions")->isVisible());
    EXPECT_TRUE(textOf("noDescriptions").contains(u"Set Up Code Descriptions"));
    TemporaryFolder::write(values.parmDTCdb = folder.path("dtc.mdb"), "there is one");
    delete form;
    (form = new codesForm(context))->show();
    EXPECT_FALSE(control<QLabel>("noDescriptions")->isVisible());
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
