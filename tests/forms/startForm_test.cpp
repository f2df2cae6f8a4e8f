#include "forms/formTest.h"
#include "forms/launcherParts.h"

#include <QComboBox>
#include <QTest>

namespace zint {
namespace {

class StartFormTest : public FormTest {
protected:
    void open()
    {
        form = launcher.makeForm(context).release();
        form->show();
    }

    LauncherParts launcher{settings};
};

TEST_F(StartFormTest, OffersPortsAndSpeedsAndKeepsTheChoice)
{
    launcher.system.ports = {{"/dev/ttyUSB0", "FT232R USB UART", "0403:6001"}};
    open();
    EXPECT_EQ(form->windowTitle(), u"Zint v1.5.1");
    EXPECT_EQ(control<QComboBox>("comPort")->count(), 8);
    EXPECT_EQ(control<QComboBox>("comPort")->currentText(), u"com1");
    EXPECT_EQ(control<QComboBox>("comSpeed")->currentText(), u"9600");
    EXPECT_EQ(textOf("portInfo"), u"/dev/ttyUSB0 - FT232R USB UART");

    control<QComboBox>("comPort")->setCurrentIndex(2);
    control<QComboBox>("comSpeed")->setCurrentIndex(1);
    EXPECT_EQ(textOf("portInfo"), u"nothing connected");
    EXPECT_EQ(launcher.launcher->connection().lineSettings(), "38400,N,8,1");
    form->setAttribute(Qt::WA_DeleteOnClose, false);
    form->close();
    EXPECT_EQ(settings.get("Startup", "comPort"), "2");
    EXPECT_EQ(settings.get("Startup", "comSpeed"), "1");
}

TEST_F(StartFormTest, SeesAnAdapterComeAndGo)
{
    open();
    EXPECT_EQ(textOf("portInfo"), u"nothing connected");
    launcher.system.ports = {{"/dev/ttyACM0", "", ""}};
    EXPECT_TRUE(waitUntil([&] { return textOf("portInfo") == u"/dev/ttyACM0"; }));
    launcher.system.ports.clear();
    EXPECT_TRUE(waitUntil([&] { return textOf("portInfo") == u"nothing connected"; }));
}

TEST_F(StartFormTest, ReportsASavedChoiceThatCantBeUsed)
{
    settings.save("Startup", "comPort", "eleven");
    QString text;
    answerNextBox(QMessageBox::Ok, &text);
    open();
    EXPECT_TRUE(text.contains(u"\"comPort\" is \"eleven\"")) << text.toStdString();
    EXPECT_EQ(control<QComboBox>("comPort")->currentIndex(), 0);
}

TEST_F(StartFormTest, ButtonsOpenTheirTools)
{
    open();
    EXPECT_FALSE(control<QPushButton>("debugger")->isEnabled()) << "the tool does not exist here";
    for (const char* name : {"getCodes", "editDTC", "pollDesign2", "obdPoll", "scanner"})
        QTest::mouseClick(control<QPushButton>(name), Qt::LeftButton);
    const std::vector<Tool> expected{Tool::codes, Tool::dtcEditor, Tool::pollDesigner,
                                     Tool::pollDesigner, // the default design has unpolled events
                                     Tool::scanner};
    EXPECT_EQ(launcher.opened, expected);
    control<QAction>("mnuPorts")->trigger();
    EXPECT_EQ(launcher.portsAssigned, 1);
}

TEST_F(StartFormTest, ShowsAndClearsTheDefaults)
{
    open();
    QString text;
    control<QAction>("mnuClearReg")->trigger();
    answerNextBox(QMessageBox::Ok, &text);
    control<QAction>("mnuShowReg")->trigger();
    EXPECT_TRUE(text.endsWith(u"Vars:\nparmInitDir \nparmDTCdb \n")) << text.toStdString();
}

TEST_F(StartFormTest, TellsAboutItself)
{
    open();
    QString text;
    answerNextBox(QMessageBox::Ok, &text);
    control<QAction>("mnuAbout")->trigger();
    EXPECT_TRUE(text.startsWith(u"Zint Version 1.5.1\n")) << text.toStdString();
}

} // namespace
} // namespace zint
