#include "sim/simulatedPort.h"

#include "link/commError.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace zint {
namespace {

// The numbers that systems give.
constexpr int badDescriptor = 9;
constexpr int deviceBusy = 16;

} // namespace

SimulatedPort::SimulatedPort(Timer& timer, const Clock& clock, Vehicle& vehicle, AdapterOptions options)
    : timer_(timer), clock_(clock), adapter_(vehicle, std::move(options))
{
    timer_.onTick = [this] { deliver(); };
}

SimulatedPort::~SimulatedPort()
{
    timer_.setEnabled(false);
    timer_.onTick = nullptr;
}

void SimulatedPort::open(PortNumber /*number*/, int bitsPerSecond)
{
    if (open_)
        throw CommError(deviceBusy, "The port is already open");
    gone_ = false;
    open_ = true;
    adapter_.dropUntil(clock_.monotonic());
    adapter_.setPortSpeed(bitsPerSecond);
    adapter_.portOpened();
    schedule();
}

/// Closing takes no time here, so that what would have come meanwhile is dropped at once.
void SimulatedPort::close()
{
    if (!open_)
        return;
    timer_.setEnabled(false);
    adapter_.dropUntil(clock_.monotonic() + closingPatience);
    groups_.clear();
    group_.reset();
    received_.clear();
    open_ = false;
}

void SimulatedPort::output(std::string_view text)
{
    if (!open_)
        throw CommError(badDescriptor, "The port is not open");
    adapter_.receive(text, clock_.monotonic());
    schedule();
}

/// Whether the device is gone, all that it sent has been delivered, and the owner does not know yet.
bool SimulatedPort::isVanishing() const
{
    return adapter_.disconnected() && !gone_ && !group_ && groups_.isEmpty();
}

/// When something is to be delivered; nothing when nothing is on its way.
std::optional<std::chrono::microseconds> SimulatedPort::nextDue() const
{
    if (group_ || isVanishing())
        return clock_.monotonic();
    const auto due = adapter_.nextDue();
    if (adapter_.disconnected() && !groups_.isEmpty()) // nothing will complete what has come
        return due.value_or(clock_.monotonic());
    if (!groups_.hasLine())
        return due;
    return due ? std::min(*due, pauseEnd_) : pauseEnd_;
}

/// Sets the timer to the next delivery.
void SimulatedPort::schedule()
{
    using std::chrono::milliseconds;
    const auto due = nextDue();
    timer_.setEnabled(false);
    if (!open_ || !due)
        return;
    const auto wait = std::chrono::ceil<milliseconds>(*due - clock_.monotonic());
    timer_.setInterval(std::max(wait, milliseconds(0)));
    timer_.setEnabled(true);
}

void SimulatedPort::deliver()
{
    if (!open_)
        return;
    if (isVanishing()) {
        gone_ = true;
        schedule();
        notify(PortNotice::deviceGone);
        return;
    }
    receive();
}

/// What the owner does in the notification (write, close, run an event loop) finds the port in order.
void SimulatedPort::receive()
{
    const auto now = clock_.monotonic();
    const std::string arrived = adapter_.take(now);
    groups_.append(arrived);
    if (!group_)
        group_ = groups_.take();
    if (!group_ && arrived.empty() && ((groups_.hasLine() && now >= pauseEnd_) || adapter_.disconnected()))
        group_ = groups_.takeRest();
    const bool hasArrived = group_.has_value();
    received_ += std::exchange(group_, groups_.take()).value_or("");
    if (!arrived.empty())
        pauseEnd_ = now + ReceiveGroups::patience;
    schedule();
    if (hasArrived)
        notify(PortNotice::received);
}

void SimulatedPort::notify(PortNotice notice)
{
    if (onNotice)
        onNotice(notice);
}

} // namespace zint
