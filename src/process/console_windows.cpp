#include "process/console.h"

#include <QObject>
#include <qt_windows.h>

#include <atomic>
#include <iostream>
#include <mutex>
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

} // namespace

bool isErrorOutputTerminal()
{
    DWORD mode = 0;
    return ::GetConsoleMode(::GetStdHandle(STD_ERROR_HANDLE), &mode) != 0;
}

bool isOutputTerminal()
{
    DWORD mode = 0;
    return ::GetConsoleMode(::GetStdHandle(STD_OUTPUT_HANDLE), &mode) != 0;
}

bool isOutputBoldTerminal()
{
    const HANDLE output = ::GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode = 0;
    return ::GetConsoleMode(output, &mode) != 0 &&
           ::SetConsoleMode(output, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

bool isInputTerminal()
{
    DWORD mode = 0;
    return ::GetConsoleMode(::GetStdHandle(STD_INPUT_HANDLE), &mode) != 0;
}

/// Nothing tells when a console or a pipe has a line, so that a thread waits for it. It may still do so when
/// the program ends, and shares with the event loop only what lives as long as both.
struct InputLines::Reader {
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
        std::string line;
        while (std::getline(std::cin, line))
            post(*shared, [shared, line] { shared->onLine(line); });
        post(*shared, [shared] { shared->onEnd(); });
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
