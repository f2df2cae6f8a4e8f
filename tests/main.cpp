#include <QApplication>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <fstream>

/// What libraries keep until the process ends; the leak checker asks for it by this name.
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libfontconfig\nleak:libQt6Gui\nleak:libdbus-1\nleak:libcups\n";
}

int main(int argc, char* argv[])
{
    // Nothing of the user who runs the tests is read or written.
    const QTemporaryDir home;
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"})
        qputenv(name, home.path().toLocal8Bit());
    qputenv("BROWSER", "/bin/true");
    std::ofstream(home.filePath(QStringLiteral("screen.json")).toStdString())
        << R"({"screens": [{"name": "small", "x": 0, "y": 0, "width": 1000, "height": 560}]})";
    if (!qEnvironmentVariableIsSet("ZINT_TEST_VISIBLY"))
        qputenv("QT_QPA_PLATFORM",
                "offscreen:configfile=" + home.filePath(QStringLiteral("screen.json")).toLocal8Bit());

    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
