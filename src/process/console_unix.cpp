#include "process/console.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <fcntl.h>
#include <signal.h> // NOLINT(modernize-deprecated-headers): <csignal> has no sigaction
#include <system_error>
#include <unistd.h>
#include <utility>

namespace zint {
namespace {

constexpr std::array endingSignals{SIGINT, SIGTERM, SIGHUP};

volatile sig_atomic_t isAsked = 0;
volatile sig_atomic_t wakingEnd = -1; ///< of the pipe that wakes the event loop

/// A signal handler may do next to nothing, so that it wakes the event loop only.
void ask(int number)
{
    if (isAsked != 0) {
        ::signal(number, SIG_DFL);
        ::raise(number); // takes effect when this handler returns
        return;
    }
    isAsked = 1;
    const int before = errno;
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = ::write(wakingEnd, &byte, 1);
    errno = before;
}

} // namespace

std::vector<std::string> programArguments(int argc, const char* const* argv)
{
    return {argv + 1, argv + argc};
}

struct StandardStreams::Buffers {};

StandardStreams::StandardStreams() = default;

StandardStreams::~StandardStreams() = default;

bool isErrorOutputTerminal() { return ::isatty(STDERR_FILENO) != 0; }

bool isOutputTerminal() { return ::isatty(STDOUT_FILENO) != 0; }

bool isOutputBoldTerminal()
{
    const char* const terminal = std::getenv("TERM");
    return isOutputTerminal() && terminal != nullptr && terminal != std::string("dumb");
}

bool isInputTerminal() { return ::isatty(STDIN_FILENO) != 0; }

struct InputLines::Reader {
    Reader(std::function<void(const std::string&)> lineRead, std::function<void()> endReached)
        : onLine(std::move(lineRead)), onEnd(std::move(endReached))
    {
        QObject::connect(&notifier, &QSocketNotifier::activated, &notifier, [this] { read(); });
    }

    void read()
    {
        std::array<char, 4096> bytes{};
        const ssize_t count = ::read(STDIN_FILENO, bytes.data(), bytes.size());
        if (count < 0 && (errno == EINTR || errno == EAGAIN))
            return;
        if (count > 0) {
            text.append(bytes.data(), static_cast<std::size_t>(count));
            takeLines();
            return;
        }
        notifier.setEnabled(false);
        if (!text.empty())
            onLine(std::exchange(text, {}));
        onEnd();
    }

    void takeLines()
    {
        std::size_t begin = 0;
        for (auto end = text.find('\n'); end != std::string::npos; end = text.find('\n', begin)) {
            std::string line = text.substr(begin, end - begin);
            if (line.ends_with('\r'))
                line.pop_back();
            onLine(line);
            begin = end + 1;
        }
        text.erase(0, begin);
    }

    QSocketNotifier notifier{STDIN_FILENO, QSocketNotifier::Read};
    std::string text; ///< the beginning of a line
    std::function<void(const std::string&)> onLine;
    std::function<void()> onEnd;
};

InputLines::InputLines(std::function<void(const std::string&)> onLine, std::function<void()> onEnd)
    : reader_(std::make_unique<Reader>(std::move(onLine), std::move(onEnd)))
{
}

InputLines::~InputLines() = default;

struct Interruption::Watch {
    explicit Watch(std::function<void()> onAsked)
        : ends(makePipe()), notifier(ends[0], QSocketNotifier::Read), asked(std::move(onAsked))
    {
        QObject::connect(&notifier, &QSocketNotifier::activated, &notifier, [this] {
            notifier.setEnabled(false);
            asked();
        });
        isAsked = 0;
        wakingEnd = ends[1];
        struct sigaction action = {};
        action.sa_handler = ask;
        action.sa_flags = SA_RESTART;
        for (std::size_t i = 0; i < endingSignals.size(); ++i) {
            ::sigaction(endingSignals[i], nullptr, &before[i]);
            if (before[i].sa_handler != SIG_IGN) // as under nohup, which is to be obeyed
                ::sigaction(endingSignals[i], &action, nullptr);
        }
        // Stays ignored to the end: what is left to be written at the exit would end the program by the
        // signal.
        ::signal(SIGPIPE, SIG_IGN);
    }

    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    ~Watch()
    {
        for (std::size_t i = 0; i < endingSignals.size(); ++i)
            ::sigaction(endingSignals[i], &before[i], nullptr);
        for (const int end : ends)
            ::close(end);
    }

    static std::array<int, 2> makePipe()
    {
        std::array<int, 2> ends{};
        if (::pipe(ends.data()) != 0)
            throw std::system_error(errno, std::generic_category(), "pipe");
        for (const int end : ends)
            ::fcntl(end, F_SETFD, FD_CLOEXEC);
        return ends;
    }

    std::array<int, 2> ends; ///< of a pipe: read, write
    QSocketNotifier notifier;
    std::function<void()> asked;
    std::array<struct sigaction, endingSignals.size()> before{};
};

Interruption::Interruption(std::function<void()> onAsked)
    : watch_(std::make_unique<Watch>(std::move(onAsked)))
{
}

Interruption::~Interruption() = default;

} // namespace zint
