#include "runner/chartRange.h"

#include <algorithm>

namespace zint {

double ChartRange::from() const
{
    switch (shown_) {
    case Shown::newest:
        return std::max(to() - span_, 0.0);
    case Shown::part:
        return from_;
    default:
        return 0;
    }
}

double ChartRange::to() const
{
    switch (shown_) {
    case Shown::newest:
        return std::max(end_, std::min(span_, young)); // the window grows with the run
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

void ChartRange::showAll() { shown_ = Shown::all; }

void ChartRange::zoom(double factor, double at)
{
    const double oldSpan = to() - from();
    const auto changed = [&](double span) { return std::clamp(span * factor, shortest, longest()); };
    if (shown_ == Shown::newest)
        span_ = changed(factor < 1 ? oldSpan : span_);
    else
        showPart(at - (at - from()) * changed(oldSpan) / oldSpan, changed(oldSpan));
}

void ChartRange::pan(double seconds)
{
    if (shown_ != Shown::newest || from() > 0) // else all of it is in sight
        showPart(from() + seconds, to() - from());
}

double ChartRange::longest() const { return std::max({end_, isRunning_ ? window_ : 0, shortest}); }

/// A part that reaches the newest moment of a run goes on with it; one that is all of a run is no part.
void ChartRange::showPart(double from, double span)
{
    const double last = std::max(end_, isRunning_ ? span : shortest);
    from_ = std::clamp(from, 0.0, std::max(0.0, last - span));
    span_ = span;
    constexpr double nearly = 0.999;
    if (isRunning_ && from_ + span_ >= end_)
        shown_ = Shown::newest;
    else if (!isRunning_ && span_ >= end_ * nearly)
        shown_ = Shown::all;
    else
        shown_ = Shown::part;
}

} // namespace zint
