#include "platform/qtTimer.h"

namespace zint {

QtTimer::QtTimer(EventGate& gate) : gate_(gate)
{
    timer_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { arrived(); });
}

void QtTimer::setInterval(std::chrono::milliseconds interval)
{
    ++setting_;
    timer_.setInterval(interval);
}

void QtTimer::setEnabled(bool enabled)
{
    ++setting_;
    if (enabled)
        timer_.start();
    else
        timer_.stop();
}

void QtTimer::arrived()
{
    // The tick may wait at the gate while a message box is open. By then the timer may have been stopped or
    // set anew, and many more ticks may have come.
    if (waiting_ == setting_)
        return;
    waiting_ = setting_;
    gate_.run([this, setting = setting_] {
        waiting_.reset();
        if (setting == setting_ && timer_.isActive() && onTick)
            onTick();
    });
}

} // namespace zint
