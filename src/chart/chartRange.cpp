#include "chart/chartRange.h"

#include <algorithm>

namespace zint {

double ChartRange::from() const
{
    switch (shown_) {
    case Shown::newest:
        return std::max(end_ - span_, 0.0);
    case Shown::part:
        return from_;
    default:
        return 0;
    }
}

double ChartRange::to() const
{
    constexpr double first = 1; // so much at least is shown of a run that has just begun
    switch (shown_) {
    case Shown::newest:
        return std::max(end_, std::min(span_, first)); // the window grows with the run
    case Shown::part:
        return from_ + span_;
    default:
        return end_ > 0 ? std::max(end_, shortest) : window_;
    }
}

void ChartRange::setEnd(double end, bool isRunning)
{
    const bool hasBegun = isRunning && !isRunning_;
    const bool isOver = !isRunning && isRunning_;
    const bool isNew = end < end_; // the store was emptied
    end_ = end;
    isRunning_ = isRunning;
    if (hasBegun || (isNew && isRunning))
        setWindow(window_);
    else if ((isOver && shown_ == Shown::newest) || isNew)
        showAll();
}

void ChartRange::setWindow(double seconds)
{
    window_ = seconds;
    if (!isRunning_)
        return;
    span_ = seconds;
    shown_ = Shown::newest;
}

void ChartRange::zoom(double factor, double at)
{
    const double oldSpan = to() - from();
    const auto changed = [&](double span) { return std::clamp(span * factor, shortest, longest()); };
    const double begin = at - (at - from()) * changed(oldSpan) / oldSpan;
    if (shown_ == Shown::newest)
        span_ = changed(factor < 1 ? oldSpan : span_);
    else
        take(begin, begin + changed(oldSpan));
}

void ChartRange::pan(double seconds)
{
    if (shown_ != Shown::newest || from() > 0) // else all of it is in sight
        take(from() + seconds, to() + seconds);
}

void ChartRange::take(double from, double to)
{
    constexpr double nearly = 1e-6;
    span_ = std::clamp(to - from, shortest, longest());
    from_ = std::clamp(from, 0.0, std::max(0.0, std::max(end_, isRunning_ ? span_ : shortest) - span_));
    if (isRunning_ && from_ + span_ >= end_ - nearly)
        shown_ = Shown::newest;
    else
        shown_ = span_ >= end_ - nearly ? Shown::all : Shown::part;
}

double ChartRange::longest() const { return std::max({end_, isRunning_ ? window_ : 0, shortest}); }

} // namespace zint
