#pragma once

#include <QString>

/// Where the program finds its own files and keeps the user's.
namespace zint {

/// The help pages and samples that come with the program: beside it on Windows, in the shared data elsewhere.
QString programDataFolder();

/// What the program keeps for this user beside the settings; made by whoever writes there first.
QString userDataFolder();

} // namespace zint
