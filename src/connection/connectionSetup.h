#pragma once

#include "connection/connectionOptions.h"
#include "launcher/launcher.h"
#include "link/portDirectory.h"

#include <QByteArray>

/// What the windows and the command line set up in the same way.
namespace zint {

/// The launcher's view of this system.
Launcher::System launcherSystem();

/// Lets the ports stand for what the command line says.
void applyForThisRun(const ConnectionOptions& options, PortDirectory& ports);

/// Chooses in the launcher what the command line says.
void applyForThisRun(const ConnectionOptions& options, Launcher& launcher);

/// The options as a line of text for a program that runs in another folder.
QByteArray toLine(const StartOptions& options);

/// What toLine() made a line from. Any other line has no options.
StartOptions fromLine(const QByteArray& line);

} // namespace zint
