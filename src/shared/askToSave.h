#pragma once

#include "shared/fileDialogs.h"
#include "shared/programValues.h"

#include <string>

namespace zint {

/// Asks for the name of a file to write, and lets the next dialog start in its folder.
/// @param proposed a file name, may be empty. @return the path; empty when the user cancelled
std::string askToSave(FileDialogs& dialogs, ProgramValues& values, const FileKinds& kinds,
                      const std::string& proposed = {});

} // namespace zint
