#include "shared/askToSave.h"

#include "shared/module1.h"

namespace zint {

std::string askToSave(FileDialogs& dialogs, ProgramValues& values, const FileKinds& kinds,
                      const std::string& proposed)
{
    std::string path = dialogs.chooseToSave(kinds, values.parmInitDir, proposed);
    if (!path.empty())
        values.rememberFolderOf(path);
    return path;
}

bool askToSave(FileDialogs& dialogs, ProgramValues& values, const FileKinds& kinds, RememberedFile file)
{
    const std::string path = askToSave(dialogs, values, kinds, values.*file.name);
    if (path.empty())
        return false;
    values.*file.path = path;
    values.*file.name = fileNamePart(path);
    return true;
}

} // namespace zint
