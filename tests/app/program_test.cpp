#include "app/program.h"
#include "connection/connectionSetup.h"
#include "forms/formTest.h"

#include <QComboBox>

#include <atomic>
#include <thread>

namespace zint {
namespace {

/// The whole program in one process, with the simulated vehicle on com1.
struct ProgramTest : testing::Test {
    Program program{StartOptions{{.portNumber = PortNumber{1}, .portLocation = "simulated"}}};

    ProgramTest() { program.start(); }

    static QWidget* window(const char* name)
    {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (widget->objectName() == QLatin1String(name))
                return widget;
        }
        return nullptr;
    }

    static bool isVisible(const char* name) { return window(name) != nullptr && window(name)->isVisible(); }

    static void click(const char* windowName, const char* name)
    {
        ASSERT_TRUE(isVisible(windowName)) << windowName;
        QTest::mouseClick(window(windowName)->findChild<QPushButton*>(QLatin1String(name)), Qt::LeftButton);
    }

    /// Leaves the program without a visible window.
    static void hide()
    {
        click("startForm", "getCodes");
        window("codesForm")->findChild<QAction*>(QStringLiteral("ftc"))->trigger();
        click("failedConnForm", "cancelCom");
        QTest::qWait(50); // the program finds that it is hidden
    }

    static QString text(const char* windowName, const char* name)
    {
        return textOf(*window(windowName)->findChild<QWidget*>(QLatin1String(name)));
    }

    /// Starts the program once more. @return whether this one was brought back
    static bool startSecond(const StartOptions& options)
    {
        std::atomic<int> result = -1;
        std::thread second([&] { result = RunningInstance::bringBackHidden(toLine(options)) ? 1 : 0; });
        EXPECT_TRUE(waitUntil([&result] { return result >= 0; }));
        second.join();
        return result == 1;
    }

    /// @return the codes listed at the end of an exchange
    static QString exchange(const char* button)
    {
        click("codesForm", button);
        EXPECT_TRUE(waitUntil([] { return text("codesForm", "statusBox") == u"com1 Closed"; }));
        return text("codesForm", "codesOutput");
    }
};

TEST_F(ProgramTest, FromTheLauncherToTheVehicleAndBack)
{
    EXPECT_TRUE(waitUntil([] { return text("startForm", "portInfo") == u"simulated vehicle"; }));
    click("startForm", "getCodes");
    EXPECT_FALSE(isVisible("startForm"));
    EXPECT_TRUE(exchange("getCodes").contains(u"\nP0301 Cylinder 1 misfire detected\nU0123"_qs));
    QString monitors;
    for (const char* name : {"misfireLab", "fuelLab", "componentLab", "catalystLab", "heatedCatalystLab",
                             "evapLab", "secAirLab", "acLab", "oxySensorLab", "oxyHeaterLab", "egrLab"})
        monitors += text("codesForm", name) + u'|';
    EXPECT_EQ(monitors,
              u"Misfire Test OK|Fuel System Test OK|Component Test OK|Catalyst Test OK|"
              "Heated Catalyst Test Unsupported|Evaporative System Test Incomplete|"
              "Secondary Air Test Unsupported|A/C Refrigerant Test Unsupported|Oxygen Sensor Test OK|"
              "Oxygen Heater Test OK|EGR System Test Unsupported|");
    EXPECT_TRUE(messageOf([] {
                    EXPECT_EQ(exchange("clearCodes"), u"No codes reported");
                }).endsWith(u"time while the system recalibrates. \n\n To clear the OBD, press OK"));
    click("codesForm", "backCom");
    ASSERT_TRUE(waitUntil([] { return window("codesForm") == nullptr; }));
    click("startForm", "getCodes");
    EXPECT_EQ(exchange("getCodes"), u"No codes reported") << "the vehicle remembers";
}

TEST_F(ProgramTest, AProgramWithoutAVisibleWindowLivesOnAndIsBroughtBack)
{
    click("startForm", "getCodes");
    click("codesForm", "getCodes"); // the exchange runs on behind the dialog
    window("codesForm")->findChild<QAction*>(QStringLiteral("ftc"))->trigger();
    EXPECT_FALSE(isVisible("codesForm"));
    click("failedConnForm", "cancelCom");
    EXPECT_FALSE(isVisible("codesForm")) << "the dialog shows no other window";
    EXPECT_FALSE(isVisible("startForm"));

    QTest::qWait(50); // the program finds that it is hidden
    inNextDialog([](QDialog& box) {
        EXPECT_FALSE(startSecond({})) << "a message box over the hidden tool is in sight";
        box.close();
    });
    window("codesForm")->findChild<QAction*>(QStringLiteral("mnuAbout"))->trigger();
    EXPECT_TRUE(
        startSecond({{.portNumber = PortNumber{5}, .portLocation = "build/ttyS9", .speedPosition = 1}}));
    EXPECT_TRUE(isVisible("startForm"));
    EXPECT_TRUE(
        waitUntil([] { return text("startForm", "portInfo").endsWith(u"build/ttyS9 - nothing connected"); }));
    EXPECT_TRUE(text("startForm", "portInfo").startsWith(u'/')) << "of the second start's folder";
    EXPECT_EQ(window("startForm")->findChild<QComboBox*>(QStringLiteral("comSpeed"))->currentText(),
              u"38400");
    EXPECT_TRUE(waitUntil([] { return window("codesForm") == nullptr; })) << "the hidden tool is unloaded";
    EXPECT_FALSE(RunningInstance::bringBackHidden()) << "a visible program is not asked";
}

TEST_F(ProgramTest, OpensTheDesignOfTheFirstAndOfASecondStart)
{
    const TemporaryFolder folder;
    const StartOptions options{.designPath = folder.path("car.obc")};
    folder.write(options.designPath, "Car\n|200\n010C|rpm|5|1|0\n");
    const auto isOpen = [] {
        return isVisible("pollSetup2") && text("pollSetup2", "statusBox") == u"car.obc loaded";
    };
    {
        Program first(options);
        first.start();
        EXPECT_TRUE(waitUntil(isOpen));
    }
    hide();
    EXPECT_TRUE(startSecond(options));
    EXPECT_TRUE(isOpen());
    EXPECT_FALSE(isVisible("startForm"));
}

TEST_F(ProgramTest, TheTroubleDialogLeadsToTheCheckOfTheConnection)
{
    click("startForm", "getCodes");
    click("codesForm", "getCodes"); // the exchange runs on, and ends for the check
    window("codesForm")->findChild<QAction*>(QStringLiteral("ftc"))->trigger();
    click("failedConnForm", "checkCom");
    EXPECT_TRUE(waitUntil([] {
        return isVisible("doctorForm") && text("doctorForm", "headline").startsWith(u"Everything works: ");
    }));
    EXPECT_EQ(window("codesForm"), nullptr);
    click("doctorForm", "backCom");
    EXPECT_TRUE(isVisible("startForm"));
}

TEST_F(ProgramTest, TestsWhatAPortStandsFor)
{
    inNextDialog([](QDialog& dialog) {
        const auto* outcome = dialog.findChild<QLabel*>(QStringLiteral("outcome"));
        dialog.findChild<QPushButton*>(QStringLiteral("test1"))->click();
        EXPECT_TRUE(waitUntil([outcome] { return outcome->text().endsWith(u" answers."); }))
            << fromQt(outcome->text());
        dialog.reject();
    });
    window("startForm")->findChild<QAction*>(QStringLiteral("mnuPorts"))->trigger();
}

TEST_F(ProgramTest, ShowsTheLauncherWhereNobodyCouldBringItBack)
{
    const QByteArray folder = qgetenv("XDG_RUNTIME_DIR");
    qputenv("XDG_RUNTIME_DIR", "/dev/null"); // nothing can listen there
    hide();
    EXPECT_TRUE(waitUntil([] { return isVisible("startForm") && window("codesForm") == nullptr; }));
    qputenv("XDG_RUNTIME_DIR", folder);
}

TEST_F(ProgramTest, EndsOverALauncherThatShowsOneBoxAfterAnother)
{
    auto* about = window("startForm")->findChild<QAction*>(QStringLiteral("mnuAbout"));
    QObject::connect(about, &QAction::triggered, about, [about] {
        static int more = 1;
        if (more-- > 0)
            about->trigger();
    });
    QTimer::singleShot(0, &program, &Program::end);
    about->trigger();
    EXPECT_TRUE(waitUntil([] { return window("startForm") == nullptr; }));
}

} // namespace
} // namespace zint
