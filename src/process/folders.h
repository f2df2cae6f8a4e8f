#pragma once

#include <QString>

/// Where the program finds its own files and keeps the user's.
namespace zint {

/// The help pages and samples that come with the program: beside it on Windows, in the shared data
/// elsewhere.
QString programDataFolder();

/// Where file dialogs start, and where the database of code descriptions is made, as long as the user has
/// chosen nothing: the folder in which the program was started. Windows starts programs of its menu in a
/// folder that is nobody's; there it is the user's documents.
QString workingFolder();

/// What the program keeps for this user beside the settings; made by whoever writes there first.
QString userDataFolder();

} // namespace zint
