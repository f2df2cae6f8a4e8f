#pragma once

#include "shared/fileDialogs.h"
#include "shared/programValues.h"

#include <string>

namespace zint {

/// Which of the program's values remember a file.
struct RememberedFile {
    std::string ProgramValues::*path;
    std::string ProgramValues::*name; ///< the file name in it
};

/// Asks for the name of a file to write, and lets the next dialog start in its folder.
/// @param proposed a file name, may be empty. @return the path; empty when the user cancelled
std::string askToSave(FileDialogs& dialogs, ProgramValues& values, const FileKinds& kinds,
                      const std::string& proposed = {});

/// Proposes the remembered name and remembers the one that is chosen.
/// @return whether one was; else all is as it was
bool askToSave(FileDialogs& dialogs, ProgramValues& values, const FileKinds& kinds, RememberedFile file);

} // namespace zint
