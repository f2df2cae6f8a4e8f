#include "shared/askToSave.h"

namespace zint {

std::string askToSave(FileDialogs& dialogs, ProgramValues& values, const FileKinds& kinds,
                      const std::string& proposed)
{
    std::string path = dialogs.chooseToSave(kinds, values.parmInitDir, proposed);
    if (!path.empty())
        values.rememberFolderOf(path);
    return path;
}

} // namespace zint
