#include "platform/console.h"

#include <QObject>
#include <qt_windows.h>

#include <atomic>
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
