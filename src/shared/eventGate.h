#pragma once

#include <deque>
#include <functional>
#include <string>

namespace zint {

/// Lets the events of one window in, one at a time.
///
/// A message box runs the toolkit's event loop while the handler that opened it still stands on the stack.
/// Whatever arrives meanwhile (received characters, a timer's tick, a button) waits here until that handler
/// has returned, in the order of its arrival. The gate is also where a failed action ends: what a handler
/// throws goes to `onError`.
class EventGate {
public:
    using Handler = std::function<void()>;

    /// Runs the handler at once, or after the one that is running and those that came before.
    void run(Handler handler);

    /// Whether a handler is running.
    bool isBusy() const { return busy_; }

    /// Called with the text of an exception that left a handler, and with the reason of a RunTimeError.
    /// Events go on waiting until it returns.
    std::function<void(const std::string& text, const std::string& reason)> onError;

private:
    void runOne(const Handler& handler) const;

    bool busy_ = false;
    std::deque<Handler> waiting_;
};

} // namespace zint
