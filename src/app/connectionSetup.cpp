#include "app/connectionSetup.h"

#include "platform/browser.h"
#include "platform/folders.h"
#include "platform/text.h"

#include <QDir>

namespace zint {

Launcher::System launcherSystem()
{
    return {.workingFolder = fromQt(QDir::toNativeSeparators(QDir::currentPath())),
            .pathSeparator = static_cast<char>(QDir::separator().unicode()),
            .sampleFolder =
                fromQt(QDir::toNativeSeparators(programDataFolder() + QStringLiteral("/designs"))),
            .descriptionsFile =
                fromQt(QDir::toNativeSeparators(programDataFolder() + QStringLiteral("/dtc.txt"))),
            .findBrowser = findBrowser};
}

void applyForThisRun(const ConnectionOptions& options, PortDirectory& ports)
{
    if (options.portNumber && !options.portLocation.empty())
        ports.assignForThisRun(*options.portNumber, options.portLocation);
}

void applyForThisRun(const ConnectionOptions& options, Launcher& launcher)
{
    if (options.portNumber)
        launcher.choosePortForThisRun(*options.portNumber);
    if (options.speedPosition)
        launcher.chooseSpeedForThisRun(*options.speedPosition);
}

} // namespace zint
