#include "platform/text.h"
#include "process/console.h"

#include <QObject>
#include <QStringDecoder>
#include <qt_windows.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <iostream>
#include <mutex>
#include <optional>
#include <shellapi.h>
#include <streambuf>
#include <thread>
#include <utility>

namespace zint {
namespace {

std::atomic<bool> isAsked{false};
std::atomic<QObject*> receiver{nullptr}; ///< on the thread of the event loop
std::function<void()> whenAsked;

/// The system calls this on a thread of its own.
BOOL WINAPI ask(DWORD event)
{
    if (isAsked.exchange(true))
        return FALSE; // the system's own handler follows, which ends the program
    if (QObject* const object = receiver) {
        QMetaObject::invokeMethod(
            object, [] { whenAsked(); }, Qt::QueuedConnection);
    }
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT)
        ::Sleep(INFINITE); // the console goes: the program ends when this returns, or after some seconds
    return TRUE;
}

bool isUsable(HANDLE handle)
{
    return handle != nullptr && handle != INVALID_HANDLE_VALUE && ::GetFileType(handle) != FILE_TYPE_UNKNOWN;
}

/// Where a standard stream leads. A program file for windows gets its streams only where they are redirected.
/// @return null when there is nothing, not even a console
HANDLE standardHandle(DWORD which)
{
    if (const HANDLE handle = ::GetStdHandle(which); isUsable(handle))
        return handle;
    [[maybe_unused]] static const bool isAttached = ::AttachConsole(ATTACH_PARENT_PROCESS) != 0;
    const HANDLE console =
        ::CreateFileW(which == STD_INPUT_HANDLE ? L"CONIN$" : L"CONOUT$", GENERIC_READ | GENERIC_WRITE,
                      FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
    if (console == INVALID_HANDLE_VALUE)
        return nullptr;
    ::SetStdHandle(which, console);
    return console;
}

bool isConsole(HANDLE handle)
{
    DWORD mode = 0;
    return ::GetConsoleMode(handle, &mode) != 0;
}

/// Of the console at standard output, before this program has changed it.
std::optional<DWORD> modeBefore;

/// Takes the text of a standard stream.
class OutputBuffer final : public std::streambuf {
public:
    OutputBuffer(std::ostream& stream, DWORD which)
        : stream_(stream), before_(stream.rdbuf(this)), which_(which)
    {
    }
    OutputBuffer(const OutputBuffer&) = delete;
    OutputBuffer& operator=(const OutputBuffer&) = delete;
    ~OutputBuffer() override
    {
        stream_.flush();
        stream_.rdbuf(before_);
        if (!unread_.empty() && which_ == STD_ERROR_HANDLE)
            ::MessageBoxW(nullptr, toQt(unread_).toStdWString().c_str(), L"Zint", MB_ICONWARNING);
    }

private:
    static constexpr std::size_t longestText = 65536;
    static constexpr qsizetype longestShown = 8000; ///< older consoles take no more at once

    int_type overflow(int_type character) override
    {
        if (!traits_type::eq_int_type(character, traits_type::eof()))
            text_ += traits_type::to_char_type(character);
        return text_.size() < longestText || sync() == 0 ? traits_type::not_eof(character)
                                                         : traits_type::eof();
    }

    std::streamsize xsputn(const char* text, std::streamsize count) override
    {
        text_.append(text, static_cast<std::size_t>(count));
        return text_.size() < longestText || sync() == 0 ? count : 0;
    }

    int sync() override
    {
        const std::string text = std::exchange(text_, {});
        const HANDLE handle = text.empty() ? nullptr : standardHandle(which_);
        if (handle == nullptr) { // a menu or a file manager has started the program
            unread_ += text;
            return 0;
        }
        return (isConsole(handle) ? show(handle, text) : write(handle, text)) ? 0 : -1;
    }

    /// The console's own character set may lack letters, so that it gets wide ones.
    bool show(HANDLE console, const std::string& text)
    {
        const QString wide = decode_(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
        for (qsizetype at = 0; at < wide.size(); at += longestShown) {
            const auto count = static_cast<DWORD>(std::min(longestShown, wide.size() - at));
            DWORD shown = 0;
            if (::WriteConsoleW(console, wide.utf16() + at, count, &shown, nullptr) == 0)
                return false;
        }
        return true;
    }

    bool write(HANDLE file, const std::string& text)
    {
        std::string lines;
        for (const char c : text) {
            if (c == '\n' && last_ != '\r')
                lines += '\r';
            lines += last_ = c;
        }
        for (std::size_t at = 0; at < lines.size();) {
            DWORD written = 0;
            if (::WriteFile(file, lines.data() + at, static_cast<DWORD>(lines.size() - at), &written,
                            nullptr) == 0)
                return false;
            at += written;
        }
        return true;
    }

    std::ostream& stream_;
    std::streambuf* before_;
    DWORD which_;
    std::string text_;   ///< not gone out yet
    std::string unread_; ///< for want of anybody who could read it
    QStringDecoder decode_{QStringDecoder::Utf8};
    char last_ = 0;
};

} // namespace

std::vector<std::string> programArguments(int /*argc*/, const char* const* /*argv*/)
{
    int count = 0;
    wchar_t** const words = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    std::vector<std::string> arguments;
    for (int i = 1; i < count; ++i)
        arguments.push_back(fromQt(QString::fromWCharArray(words[i])));
    ::LocalFree(words);
    return arguments;
}

struct StandardStreams::Buffers {
    std::unique_ptr<std::streambuf> output = std::make_unique<OutputBuffer>(std::cout, STD_OUTPUT_HANDLE);
    std::unique_ptr<std::streambuf> errors = std::make_unique<OutputBuffer>(std::cerr, STD_ERROR_HANDLE);
};

StandardStreams::StandardStreams() : buffers_(std::make_unique<Buffers>()) {}

StandardStreams::~StandardStreams()
{
    buffers_.reset();
    if (modeBefore)
        ::SetConsoleMode(::GetStdHandle(STD_OUTPUT_HANDLE), *modeBefore);
}

bool isErrorOutputTerminal() { return isConsole(standardHandle(STD_ERROR_HANDLE)); }

bool isOutputTerminal() { return isConsole(standardHandle(STD_OUTPUT_HANDLE)); }

bool isOutputBoldTerminal()
{
    const HANDLE output = standardHandle(STD_OUTPUT_HANDLE);
    DWORD mode = 0;
    if (::GetConsoleMode(output, &mode) == 0)
        return false;
    modeBefore = modeBefore.value_or(mode);
    return ::SetConsoleMode(output, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

bool isInputTerminal() { return isConsole(standardHandle(STD_INPUT_HANDLE)); }

/// Nothing tells when a console or a pipe has a line, so that a thread waits for it. It may still do so when
/// the program ends, and shares with the event loop only what lives as long as both.
struct InputLines::Reader {
    static constexpr const char* dosEnd = "\x1A"; ///< Ctrl-Z, which some programs put behind a text

    struct Shared {
        std::mutex mutex;
        QObject* receiver = nullptr; ///< on the thread of the event loop
        std::function<void(const std::string&)> onLine;
        std::function<void()> onEnd;
    };

    Reader(std::function<void(const std::string&)> onLine, std::function<void()> onEnd)
    {
        shared->receiver = &object;
        shared->onLine = std::move(onLine);
        shared->onEnd = std::move(onEnd);
        std::thread([shared = shared] { read(shared); }).detach();
    }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;
    ~Reader()
    {
        const std::lock_guard lock(shared->mutex);
        shared->receiver = nullptr;
    }

    static void read(const std::shared_ptr<Shared>& shared)
    {
        const HANDLE input = standardHandle(STD_INPUT_HANDLE);
        std::array<char, 4096> bytes{};
        std::string text; // the beginning of a line
        for (DWORD count = 0; readSome(input, bytes, count);) {
            text.append(bytes.data(), count);
            for (auto end = text.find('\n'); end != std::string::npos; end = text.find('\n')) {
                postLine(shared, text.substr(0, end));
                text.erase(0, end + 1);
            }
        }
        if (!text.empty() && text != dosEnd)
            postLine(shared, text);
        post(*shared, [shared] { shared->onEnd(); });
    }

    /// @return false at the end
    static bool readSome(HANDLE input, std::array<char, 4096>& bytes, DWORD& count)
    {
        bool isRead = false;
        do {
            ::SetLastError(ERROR_SUCCESS);
            isRead = ::ReadFile(input, bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr) != 0;
        } while (isRead && count == 0 && ::GetLastError() == ERROR_OPERATION_ABORTED); // a Ctrl-C
        return isRead && count > 0;
    }

    static void postLine(const std::shared_ptr<Shared>& shared, std::string line)
    {
        if (line.ends_with('\r'))
            line.pop_back();
        post(*shared, [shared, line] { shared->onLine(line); });
    }

    static void post(Shared& shared, const std::function<void()>& action)
    {
        const std::lock_guard lock(shared.mutex);
        if (shared.receiver != nullptr)
            QMetaObject::invokeMethod(shared.receiver, action, Qt::QueuedConnection);
    }

    QObject object;
    std::shared_ptr<Shared> shared = std::make_shared<Shared>();
};

InputLines::InputLines(std::function<void(const std::string&)> onLine, std::function<void()> onEnd)
    : reader_(std::make_unique<Reader>(std::move(onLine), std::move(onEnd)))
{
}

InputLines::~InputLines() = default;

struct Interruption::Watch {
    QObject object;
};

Interruption::Interruption(std::function<void()> onAsked) : watch_(std::make_unique<Watch>())
{
    isAsked = false;
    whenAsked = std::move(onAsked);
    receiver = &watch_->object;
    ::SetConsoleCtrlHandler(ask, TRUE);
}

Interruption::~Interruption()
{
    ::SetConsoleCtrlHandler(ask, FALSE);
    receiver = nullptr;
}

} // namespace zint
