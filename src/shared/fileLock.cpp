#include "shared/fileLock.h"

#include "shared/module1.h"

namespace zint {

bool FileLock::isTaken(const std::string& path)
{
    return fileExists(lockFileOf(path)) && !FileLock().take(path);
}

} // namespace zint
