#include "shared/fileLock.h"
#include "shared/module1.h"

#include <chrono>
#include <thread>
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
    constexpr int mostAttempts = 10;
    constexpr int attemptsWhenTaken = 3; // isTaken() has it for a moment, too
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        const HANDLE file =
            ::CreateFileW(utf8Path(lockFileOf(path)).c_str(), GENERIC_WRITE | DELETE, sharedWithNobody,
                          nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
        if (file != INVALID_HANDLE_VALUE) {
            held_ = std::make_unique<HeldFile>(file);
            return true;
        }
        const DWORD error = ::GetLastError();
        if (error == ERROR_SHARING_VIOLATION && attempt >= attemptsWhenTaken)
            return false;
        if (error != ERROR_SHARING_VIOLATION && error != ERROR_ACCESS_DENIED)
            break;
        // The file of a lock that has ended is refused as long as a virus scanner, say, still looks at it.
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    held_.reset();
    return true;
}

} // namespace zint
