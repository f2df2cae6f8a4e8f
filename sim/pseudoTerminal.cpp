#include "sim/pseudoTerminal.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <sys/ioctl.h>
#include <system_error>
#include <termios.h>
#include <thread>
#include <unistd.h>
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

} // namespace

Descriptor::~Descriptor() { ::close(number_); }

PseudoTerminal::PseudoTerminal()
    : master_(checked(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC), "pseudo-terminal"))
{
    checked(grantpt(master_.get()), "pseudo-terminal");
    checked(unlockpt(master_.get()), "pseudo-terminal");
    const char* const name = ptsname(master_.get());
    if (name == nullptr)
        fail("pseudo-terminal");
    path_ = name;
    makeRaw(Descriptor(openOtherSide()).get());
    checked(fcntl(master_.get(), F_SETFL, O_NONBLOCK), "pseudo-terminal");
}

int PseudoTerminal::openOtherSide() const
{
    return checked(open(path_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC), path_.c_str());
}

bool PseudoTerminal::takeOpening()
{
    pollfd look{.fd = master_.get(), .events = 0, .revents = 0};
    checked(poll(&look, 1, 0), "pseudo-terminal");
    const bool wasOpen = std::exchange(open_, (look.revents & POLLHUP) == 0);
    return open_ && !wasOpen;
}

int PseudoTerminal::bitsPerSecond() const
{
    constexpr std::array<std::pair<speed_t, int>, 8> speeds = {{{B9600, 9600},
                                                                {B19200, 19200},
                                                                {B38400, 38400},
                                                                {B57600, 57600},
                                                                {B115200, 115200},
                                                                {B230400, 230400},
                                                                {B460800, 460800},
                                                                {B500000, 500000}}};
    termios settings{};
    checked(tcgetattr(master_.get(), &settings), "terminal settings");
    for (const auto& [code, speed] : speeds) {
        if (code == cfgetospeed(&settings))
            return speed;
    }
    return 1;
}

std::string PseudoTerminal::read()
{
    std::array<char, 4096> buffer;
    const ssize_t count = ::read(master_.get(), buffer.data(), buffer.size());
    if (count < 0 && errno != EAGAIN && errno != EINTR && errno != EIO) // EIO: no program has the port open
        fail(path_);
    return {buffer.data(), static_cast<std::size_t>(count > 0 ? count : 0)};
}

void PseudoTerminal::write(std::string_view text)
{
    while (open_ && !text.empty()) {
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
    const Descriptor otherSide(openOtherSide());
    for (auto waited = step; waited <= atMost; waited += step) {
        std::this_thread::sleep_for(step); // the system, too, takes a moment to hand the text over
        int unread = 0;
        if (ioctl(otherSide.get(), FIONREAD, &unread) < 0 || unread == 0)
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
