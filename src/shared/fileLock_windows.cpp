#include "shared/fileLock.h"
#include "shared/module1.h"

#include <windows.h>

namespace zint {

struct FileLock::HeldFile final : Held {
    explicit HeldFile(HANDLE file) : file_(file) {}
    HeldFile(const HeldFile&) = delete;
    HeldFile& operator=(const HeldFile&) = delete;
    ~HeldFile() override { ::CloseHandle(file_); }

private:
    HANDLE file_;
};

bool FileLock::take(const std::string& path)
{
    constexpr DWORD sharedWithNobody = 0; // which is the lock; the system removes the file when it is closed
    const HANDLE file =
        ::CreateFileW(utf8Path(lockFileOf(path)).c_str(), GENERIC_WRITE | DELETE, sharedWithNobody, nullptr,
                      OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    if (file != INVALID_HANDLE_VALUE)
        held_ = std::make_unique<HeldFile>(file);
    else if (::GetLastError() == ERROR_SHARING_VIOLATION)
        return false;
    else
        held_.reset();
    return true;
}

} // namespace zint
