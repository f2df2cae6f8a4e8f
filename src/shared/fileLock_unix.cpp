#include "shared/fileLock.h"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace zint {
namespace {

/// Whether the name still stands for the file that was opened: the last holder may have removed that one.
bool isStillNamed(int file, const std::string& name)
{
    struct stat opened {};
    struct stat named {};
    return ::fstat(file, &opened) == 0 && ::stat(name.c_str(), &named) == 0 &&
           opened.st_ino == named.st_ino && opened.st_dev == named.st_dev;
}

} // namespace

struct FileLock::HeldFile final : Held {
    HeldFile(std::string name, int file) : name_(std::move(name)), file_(file) {}
    HeldFile(const HeldFile&) = delete;
    HeldFile& operator=(const HeldFile&) = delete;

    ~HeldFile() override
    {
        ::unlink(name_.c_str()); // before the lock goes: behind it the file may be another one's
        ::close(file_);
    }

private:
    std::string name_;
    int file_;
};

bool FileLock::take(const std::string& path)
{
    const std::string name = lockFileOf(path);
    constexpr int mostAttempts = 10;
    constexpr int attemptsWhenTaken = 3; // isTaken() has it for a moment, too
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        const int file = ::open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
        if (file < 0)
            break;
        if (::flock(file, LOCK_EX | LOCK_NB) != 0) {
            const bool isTaken = errno == EWOULDBLOCK;
            ::close(file);
            if (!isTaken)
                break;
            if (attempt >= attemptsWhenTaken)
                return false;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            continue;
        }
        if (isStillNamed(file, name)) {
            held_ = std::make_unique<HeldFile>(name, file);
            return true;
        }
        ::close(file);
    }
    held_.reset();
    return true;
}

} // namespace zint
