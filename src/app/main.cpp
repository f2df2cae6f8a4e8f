#include "app/program.h"
#include "commands/commandLine.h"
#include "commands/commandSession.h"
#include "commands/usageError.h"
#include "connection/connectionSetup.h"
#include "platform/text.h"
#include "process/console.h"
#include "process/runningInstance.h"
#include "shared/programInfo.h"
#include "widgets/icons.h"
#include "widgets/outlinedBoxes.h"

#include <QApplication>
#include <QLoggingCategory>

#include <string>
#include <vector>

namespace {

bool hasDisplay()
{
#if defined(Q_OS_WIN) || defined(Q_OS_MACOS)
    return true;
#else
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        if (!qEnvironmentVariableIsEmpty(name))
            return true;
    }
    return false;
#endif
}

/// Lets an application object for windows exist where there is no screen.
void doWithoutDisplay()
{
#if !defined(Q_OS_WIN) && !defined(Q_OS_MACOS)
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QLoggingCategory::setFilterRules(
        QStringLiteral("default.warning=false")); // that a desktop's folders lack
#endif
}

std::vector<std::string> arguments()
{
    std::vector<std::string> texts;
    for (const QString& text : QCoreApplication::arguments().mid(1))
        texts.push_back(zint::fromQt(text));
    return texts;
}

int runWindows(const zint::StartOptions& options)
{
    if (zint::RunningInstance::bringBackHidden(zint::toLine(options)))
        return 0;
    QGuiApplication::setDesktopFileName(QStringLiteral("org.zint_obd.Zint"));
    QApplication::setQuitOnLastWindowClosed(
        false); // a program without a visible window goes on, see RunningInstance
    zint::useOwnIcons();
    zint::useOutlinedBoxes();
    zint::Program program(options);
    program.start();
    const zint::Interruption interruption([&program] { program.end(); });
    return QApplication::exec();
}

/// Needs an application object; for the windows it is one with a display.
int run(zint::CommandLine& line, bool hasDisplay)
{
    try {
        line.parse(arguments()); // without the toolkit's own, which the application object has taken
    } catch (const zint::UsageError& error) {
        zint::complain(error.what() + ("\n" + line.help) + " tells the options.");
        return zint::exitStatus::wrongUsage;
    }
    if (line.run)
        return line.run();
    if (hasDisplay)
        return runWindows(line.start);
    zint::complain("there is no display for the windows. The commands, see zint-obd --help, need none.");
    return zint::exitStatus::failure;
}

} // namespace

int main(int argc, char* argv[])
{
    const zint::StandardStreams streams;
    QCoreApplication::setApplicationVersion(zint::toQt(zint::programInfo().version()));
    zint::CommandLine line;
    const std::vector<std::string> words = zint::programArguments(argc, argv);
    const bool showsWindows = line.mayWantWindows(words) && hasDisplay();
    if (showsWindows || line.draws(words)) {
        if (!showsWindows)
            doWithoutDisplay();
        const QApplication application(argc, argv);
        return run(line, showsWindows);
    }
    const QCoreApplication application(argc, argv);
    return run(line, false);
}
