#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

/// What a command without a window needs of the system.
namespace zint {

/// The words behind the program's name, in UTF-8.
std::vector<std::string> programArguments(int argc, const char* const* argv);

/// As long as it lives, standard output and standard error take UTF-8 with line ends of either kind, wherever
/// they go. One exists in a program.
///
/// On Windows they give it to a console in its own character set, and to files and pipes with CR LF. A
/// program file that was made for windows has no console of its own: what it writes and reads goes to the one
/// from which it was started.
class StandardStreams {
public:
    StandardStreams();
    StandardStreams(const StandardStreams&) = delete;
    StandardStreams& operator=(const StandardStreams&) = delete;
    ~StandardStreams();

private:
    struct Buffers;

    std::unique_ptr<Buffers> buffers_;
};

/// Whether a user reads standard error while it is written: it goes to a terminal, not to a file or a pipe.
bool isErrorOutputTerminal();

/// Whether a user reads standard output while it is written.
bool isOutputTerminal();

/// Whether standard output is a terminal that shows bold letters between ESC [1m and ESC [0m.
bool isOutputBoldTerminal();

/// Whether a user types the lines of standard input.
bool isInputTerminal();

/// The lines of standard input, as they come; the event loop goes on meanwhile. One exists at a time; it
/// needs an application object.
class InputLines {
public:
    /// @param onLine called from the event loop with each line, without its end
    /// @param onEnd called after the last one
    InputLines(std::function<void(const std::string&)> onLine, std::function<void()> onEnd);
    ~InputLines();

private:
    struct Reader;

    std::unique_ptr<Reader> reader_;
};

/// Lets a command end properly when the user or the system asks it to (Ctrl-C, a signal to end), and when
/// nobody reads its output any more: from here on that is a failed write. One exists at a time; it needs an
/// application object.
class Interruption {
public:
    /// @param onAsked called from the event loop, once. Whoever asks again ends the program at once.
    explicit Interruption(std::function<void()> onAsked);
    ~Interruption();

private:
    struct Watch;

    std::unique_ptr<Watch> watch_;
};

} // namespace zint
