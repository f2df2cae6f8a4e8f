#include "app/program.h"
#include "forms/formTest.h"

#include <QAction>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <algorithm>
#include <thread>

namespace zint {
namespace {

/// The whole program in one process, with the simulated vehicle on com1.
class ProgramTest : public testing::Test {
protected:
    ProgramTest() { program.start(); }

    static QWidget* window(const char* name)
    {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (widget->objectName() == QLatin1String(name))
                return widget;
        }
        return nullptr;
    }

    static bool isVisible(const char* name)
    {
        const QWidget* found = window(name);
        return found != nullptr && found->isVisible();
    }

    static void click(const char* windowName, const char* name)
    {
        QWidget* found = window(windowName);
        ASSERT_NE(found, nullptr) << windowName;
        QTest::mouseClick(found->findChild<QPushButton*>(QLatin1String(name)), Qt::LeftButton);
    }

    static QString text(const char* windowName, const char* name)
    {
        return window(windowName)->findChild<QLabel*>(QLatin1String(name))->text();
    }

    Program program{ConnectionOptions{.portNumber = 1, .portLocation = "simulated"}};
};

TEST_F(ProgramTest, FromTheLauncherToTheVehicleAndBack)
{
    EXPECT_EQ(text("startForm", "portInfo"), u"simulated vehicle");
    click("startForm", "getCodes");
    EXPECT_FALSE(isVisible("startForm"));
    ASSERT_TRUE(isVisible("codesForm"));

    click("codesForm", "getCodes");
    ASSERT_TRUE(waitUntil([] { return text("codesForm", "statusBox") == u"com1 Closed"; }));
    EXPECT_EQ(text("codesForm", "codesOutput"), u"P0133\nP0301\nU0123\n");

    answerNextBox(QMessageBox::Ok);
    click("codesForm", "clearCodes");
    ASSERT_TRUE(waitUntil([] { return text("codesForm", "statusBox") == u"com1 Closed"; }));
    EXPECT_EQ(text("codesForm", "codesOutput"), u"No codes reported");
    EXPECT_EQ(text("codesForm", "stateMIL"), u"Service Engine Soon Light is \nOFF");

    click("codesForm", "backCom");
    EXPECT_TRUE(isVisible("startForm"));
    ASSERT_TRUE(waitUntil([] { return window("codesForm") == nullptr; }));
    click("startForm", "getCodes"); // the vehicle remembers
    click("codesForm", "getCodes");
    ASSERT_TRUE(waitUntil([] { return text("codesForm", "statusBox") == u"com1 Closed"; }));
    EXPECT_EQ(text("codesForm", "codesOutput"), u"No codes reported");
}

TEST_F(ProgramTest, AProgramWithoutAVisibleWindowLivesOnAndIsBroughtBack)
{
    click("startForm", "getCodes");
    click("codesForm", "getCodes"); // the exchange runs on behind the dialog
    window("codesForm")->findChild<QAction*>(QStringLiteral("ftc"))->trigger();
    EXPECT_FALSE(isVisible("codesForm"));
    ASSERT_TRUE(isVisible("failedConnForm"));
    click("failedConnForm", "cancelCom");
    EXPECT_FALSE(isVisible("codesForm")) << "the dialog shows no other window";
    EXPECT_FALSE(isVisible("startForm"));

    bool broughtBack = false;
    QTest::qWait(50); // the program finds that it is hidden
    std::thread second([&broughtBack] { broughtBack = RunningInstance::bringBackHidden(); });
    EXPECT_TRUE(waitUntil([] { return isVisible("startForm"); }));
    second.join();
    EXPECT_TRUE(broughtBack);
    EXPECT_TRUE(waitUntil([] { return window("codesForm") == nullptr; })) << "the hidden tool is unloaded";
    EXPECT_FALSE(RunningInstance::bringBackHidden()) << "a visible program is not asked";
}

} // namespace
} // namespace zint
