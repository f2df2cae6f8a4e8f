#include "sim/pseudoTerminal.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#ifdef __linux__
#include <sys/inotify.h>
#endif

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <thread>
#include <utility>

namespace zint {
namespace {

[[noreturn]] void fail(const std::string& what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

int checked(int result, const char* what)
{
    if (result < 0)
        fail(what);
    return result;
}

/// Bytes go through as they are, and nothing is echoed.
void makeRaw(int terminal)
{
    termios settings{};
    checked(tcgetattr(terminal, &settings), "terminal settings");
    cfmakeraw(&settings);
    checked(tcsetattr(terminal, TCSANOW, &settings), "terminal settings");
}

/// Tells when a program opens the path; where the system can't, sessions merely are not told apart.
int watchOpening([[maybe_unused]] const std::string& path)
{
#ifdef __linux__
    const int watch = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (watch >= 0)
        inotify_add_watch(watch, path.c_str(), IN_OPEN);
    return watch;
#else
    return -1;
#endif
}

} // namespace

Descriptor::Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept
{
    if (this != &other)
        reset(std::exchange(other.number_, -1));
    return *this;
}

void Descriptor::reset(int number)
{
    if (valid())
        ::close(number_);
    number_ = number;
}

PseudoTerminal::PseudoTerminal()
{
    master_.reset(checked(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC), "pseudo-terminal"));
    checked(grantpt(master_.get()), "pseudo-terminal");
    checked(unlockpt(master_.get()), "pseudo-terminal");
    const char* const name = ptsname(master_.get());
    if (name == nullptr)
        fail("pseudo-terminal");
    path_ = name;
    slave_.reset(checked(open(name, O_RDWR | O_NOCTTY | O_CLOEXEC), name));
    makeRaw(slave_.get());
    checked(fcntl(master_.get(), F_SETFL, O_NONBLOCK), "pseudo-terminal");
    watch_.reset(watchOpening(path_));
}

bool PseudoTerminal::takeOpening()
{
    std::array<char, 4096> events;
    bool opened = false;
    while (watch_.valid() && ::read(watch_.get(), events.data(), events.size()) > 0)
        opened = true;
    if (opened)
        tcflush(slave_.get(), TCIFLUSH);
    return opened;
}

std::string PseudoTerminal::read()
{
    std::array<char, 4096> buffer;
    const ssize_t count = ::read(master_.get(), buffer.data(), buffer.size());
    if (count < 0 && errno != EAGAIN && errno != EINTR)
        fail(path_);
    return {buffer.data(), static_cast<std::size_t>(count > 0 ? count : 0)};
}

void PseudoTerminal::write(std::string_view text)
{
    while (!text.empty()) {
        const ssize_t count = ::write(master_.get(), text.data(), text.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0 && errno != EAGAIN)
            fail(path_);
        if (count <= 0)
            return;
        text.remove_prefix(static_cast<std::size_t>(count));
    }
}

void PseudoTerminal::waitUntilRead(std::chrono::milliseconds atMost) const
{
    constexpr std::chrono::milliseconds step{5};
    for (auto waited = step; waited <= atMost; waited += step) {
        std::this_thread::sleep_for(step); // the system, too, takes a moment to hand the text over
        int unread = 0;
        if (ioctl(slave_.get(), FIONREAD, &unread) < 0 || unread == 0)
            return;
    }
}

TemporaryLink::TemporaryLink(std::string path, std::string target)
    : path_(std::move(path)), target_(std::move(target))
{
    if (std::filesystem::is_symlink(path_))
        std::filesystem::remove(path_);
    std::filesystem::create_symlink(target_, path_);
}

/// Leaves a link alone that has been made anew by another.
TemporaryLink::~TemporaryLink()
{
    std::error_code ignored;
    if (std::filesystem::read_symlink(path_, ignored) == target_)
        std::filesystem::remove(path_, ignored);
}

} // namespace zint
