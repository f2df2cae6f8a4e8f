#include "app/connectionSetup.h"
#include "app/program.h"
#include "commands/codesCommand.h"
#include "commands/commandLine.h"
#include "commands/commandSession.h"
#include "commands/dtcCommand.h"
#include "commands/pollCommand.h"
#include "commands/scanCommand.h"
#include "commands/terminalCommand.h"
#include "platform/text.h"
#include "process/console.h"
#include "process/runningInstance.h"
#include "shared/programInfo.h"
#include "widgets/icons.h"
#include "widgets/outlinedBoxes.h"

#include <QApplication>

#include <optional>

namespace {

QStringList rawArguments(int argc, char* argv[])
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments += QString::fromLocal8Bit(argv[i]);
    return arguments;
}

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

/// The exit status of what needs no window; nothing when windows are asked for.
std::optional<int> runInTerminal(const zint::CommandLine& line)
{
    switch (line.action) {
    case zint::CommandLine::Action::showHelp:
        return zint::printOut(zint::CommandLine::helpText());
    case zint::CommandLine::Action::showVersion:
        return zint::printOut(zint::programInfo().productName + " " + zint::programInfo().version() + "\n");
    case zint::CommandLine::Action::refuse:
        zint::complain(line.complaint + "\nzint-obd --help tells the options.");
        return zint::exitStatus::wrongUsage;
    case zint::CommandLine::Action::reportCodes:
        return zint::runCodesCommand(line);
    case zint::CommandLine::Action::poll:
        return zint::runPollCommand(line);
    case zint::CommandLine::Action::exportLog:
        return zint::runExportCommand(line);
    case zint::CommandLine::Action::terminal:
        return zint::runTerminalCommand(line);
    case zint::CommandLine::Action::scan:
        return zint::runScanCommand(line);
    case zint::CommandLine::Action::setUpDescriptions:
    case zint::CommandLine::Action::lookUpCodes:
    case zint::CommandLine::Action::importDescriptions:
    case zint::CommandLine::Action::exportDescriptions:
        return zint::runDtcCommand(line);
    case zint::CommandLine::Action::showWindows:
        break;
    }
    return std::nullopt;
}

int runWindows(const zint::CommandLine& line)
{
    if (zint::RunningInstance::bringBackHidden(zint::toLine(line.connection)))
        return 0;
    QGuiApplication::setDesktopFileName(QStringLiteral("zint-obd"));
    QApplication::setQuitOnLastWindowClosed(
        false); // a program without a visible window goes on, see RunningInstance
    zint::useOwnIcons();
    zint::useOutlinedBoxes();
    zint::Program program(line.connection);
    program.start();
    const zint::Interruption interruption([&program] { program.end(); });
    return QApplication::exec();
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication::setApplicationVersion(zint::toQt(zint::programInfo().version()));
    using Action = zint::CommandLine::Action;
    const Action wanted = zint::CommandLine::parse(rawArguments(argc, argv)).action;
    const bool display = hasDisplay();
    // With a display, what is refused may be one of the toolkit's own options, which the application object
    // knows.
    if (wanted != Action::showWindows && (wanted != Action::refuse || !display)) {
        const QCoreApplication application(argc, argv);
        return runInTerminal(zint::CommandLine::parse(QCoreApplication::arguments()))
            .value_or(zint::exitStatus::failure);
    }
    if (!display) {
        zint::complain("there is no display for the windows. The commands, see zint-obd --help, need none.");
        return zint::exitStatus::failure;
    }
    const QApplication application(argc, argv);
    const zint::CommandLine line = zint::CommandLine::parse(QCoreApplication::arguments());
    const auto status = runInTerminal(line);
    return status ? *status : runWindows(line);
}
