#include "dtcdb/dtcDatabase.h"
#include "forms/formTest.h"

#include <QAbstractItemView>
#include <QComboBox>

namespace zint {
namespace {

struct StartFormTest : FormTest {
    StartFormTest() { (form = new startForm(context))->show(); }
};

TEST_F(StartFormTest, TellsWhatThePortStandsForAndTakesAChoice)
{
    EXPECT_EQ(form->windowTitle(), u"Zint v1.5.1");
    EXPECT_TRUE(control<QLabel>("speedHint")->isVisible());
    EXPECT_TRUE(waitUntil([&] { return textOf("portInfo") == u"nothing connected"; }));
    system.ports = {{"/dev/ttyUSB0", "<b>FT232R", "0403:6001"}};
    EXPECT_TRUE(waitUntil([&] { return textOf("portInfo") == u"/dev/ttyUSB0 - <b>FT232R"; }));
    auto* port = control<QComboBox>("comPort");
    EXPECT_EQ(port->itemData(0, Qt::ToolTipRole).toString(), u"<p>/dev/ttyUSB0 - &lt;b&gt;FT232R</p>");

    launcher->choosePortForThisRun(PortNumber{3});
    launcher->chooseSpeedForThisRun(1);
    static_cast<startForm*>(form)->showAgain();
    EXPECT_EQ(port->currentText() + control<QComboBox>("comSpeed")->currentText(), u"com338400");
    QTest::keyClick(port, Qt::Key_F4);
    QTest::keyClick(port->view(), Qt::Key_Return); // the entry that is shown already, for good
    launcher->unload();
    EXPECT_EQ(settings.get("Startup", "comPort") + settings.get("Startup", "comSpeed"), "20");
}

TEST_F(StartFormTest, ButtonsAndMenusDoTheirWork)
{
    for (const char* name : {"getCodes", "editDTC", "pollDesign2", "scanner", "debugger", "obdPoll"})
        click(name);
    EXPECT_EQ(opened,
              (std::vector{Tool::codes, Tool::dtcEditor, Tool::pollDesigner, Tool::scanner, Tool::terminal,
                           Tool::pollDesigner})); // the default design has unpolled events
    trigger("mnuPorts");
    EXPECT_EQ(portsAssigned, 1);
    DtcDatabase::create(values.parmDTCdb = folder.path("dtc.mdb"));
    EXPECT_TRUE(messageOf([this] { trigger("mnuSetUpDtc"); }).endsWith(u"dtc.mdb\nIt stays as it is."));
    trigger("mnuClearReg");
    EXPECT_TRUE(messageOf([this] { trigger("mnuShowReg"); }).endsWith(u"Vars:\nparmInitDir \nparmDTCdb \n"));
    EXPECT_TRUE(messageOf([this] { trigger("mnuAbout"); }).startsWith(u"Zint Version 1.5.1\n"));
    EXPECT_TRUE(messageOf([this] { trigger("mnuHelp"); }).endsWith(u"/docstart2.html")) << "no browser";
}

} // namespace
} // namespace zint
