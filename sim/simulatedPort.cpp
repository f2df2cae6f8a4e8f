#include "sim/simulatedPort.h"

#include "link/commError.h"
#include "link/lineSettings.h"

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

void SimulatedPort::open()
{
    if (open_)
        throw CommError(deviceBusy, "The port is already open");
    LineSettings::parse(settings());
    received_.clear();
    gone_ = false;
    open_ = true;
    adapter_.portOpened(clock_.monotonic());
    schedule();
}

void SimulatedPort::close()
{
    timer_.setEnabled(false);
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

/// Sets the timer to the adapter's next move.
void SimulatedPort::schedule()
{
    using std::chrono::milliseconds;
    const auto due = adapter_.nextDue();
    const bool vanished = adapter_.disconnected() && !gone_;
    if (!open_ || (!due && !vanished)) {
        timer_.setEnabled(false);
        return;
    }
    const auto now = clock_.monotonic();
    const auto wait = vanished ? milliseconds(0) : std::chrono::ceil<milliseconds>(*due - now);
    timer_.setInterval(std::max(wait, milliseconds(0)));
    timer_.setEnabled(true);
}

void SimulatedPort::deliver()
{
    if (!open_)
        return;
    if (adapter_.disconnected() && !gone_) {
        gone_ = true;
        schedule();
        notify(commEvent::deviceGone);
        return;
    }
    receive();
}

/// What the owner does in the notification (write, close, run an event loop) finds the port in order.
void SimulatedPort::receive()
{
    const std::string arrived = adapter_.take(clock_.monotonic());
    received_ += arrived;
    schedule();
    if (!arrived.empty() && receiveThreshold() > 0 && inBufferCount() >= receiveThreshold())
        notify(commEvent::receive);
}

void SimulatedPort::notify(int event)
{
    lastCommEvent_ = event;
    if (onComm)
        onComm();
}

} // namespace zint
