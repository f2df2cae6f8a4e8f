#pragma once

#include "app/commandLine.h"
#include "app/launcher.h"
#include "link/portDirectory.h"

/// What the windows and the command line set up in the same way.
namespace zint {

/// The launcher's view of this system.
Launcher::System launcherSystem();

/// Lets the ports stand for what the command line says.
void applyForThisRun(const ConnectionOptions& options, PortDirectory& ports);

/// Chooses in the launcher what the command line says.
void applyForThisRun(const ConnectionOptions& options, Launcher& launcher);

} // namespace zint
