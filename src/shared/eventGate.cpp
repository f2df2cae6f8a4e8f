#include "shared/eventGate.h"

#include "shared/runTimeError.h"

#include <exception>
#include <string>
#include <utility>

namespace zint {

void EventGate::run(Handler handler)
{
    waiting_.push_back(std::move(handler));
    if (busy_)
        return;
    busy_ = true;
    while (!waiting_.empty()) {
        const Handler next = std::move(waiting_.front());
        waiting_.pop_front();
        runOne(next);
    }
    busy_ = false;
}

void EventGate::runOne(const Handler& handler) const
{
    std::string failure;
    std::string reason;
    try {
        handler();
        return;
    } catch (const RunTimeError& error) {
        failure = "Run-time error " + std::to_string(static_cast<int>(error.fault())) + ": " + error.what();
        reason = error.reason();
    } catch (const std::exception& error) {
        failure = error.what();
    }
    if (onError)
        onError(failure, reason);
}

} // namespace zint
