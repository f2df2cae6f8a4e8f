#include "chart/chartRange.h"

#include <algorithm>

namespace zint {

double ChartRange::from() const
{
    if (shown_ == Shown::newest)
        return std::max(end_ - span_, 0.0);
    return shown_ == Shown::part ? from_ : 0;
}

double ChartRange::to() const
{
    constexpr double first = 1; // so much at least is shown of a run that has just begun
    if (shown_ == Shown::newest)
        return std::max(end_, std::min(span_, first)); // the window grows with the run
    if (shown_ == Shown::part)
        return from_ + span_;
    return end_ > 0 ? std::max(end_, shortest) : window_;
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
    else if ((isOver && follows()) || isNew)
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

void ChartRange::take(double from, double to)
{
    constexpr double nearly = 1e-6;
    const double window = follows() ? span_ : 0;
    const double longest = std::max({end_, isRunning_ ? window_ : 0, shortest});
    span_ = std::clamp(to - from, shortest, longest);
    from_ = std::clamp(from, 0.0, std::max(end_ - span_, 0.0));
    const bool isAll = span_ >= end_ - nearly;
    if (isRunning_ && from_ + span_ >= end_ - nearly)
        shown_ = Shown::newest;
    else
        shown_ = isAll ? Shown::all : Shown::part;
    if (isAll)
        span_ = std::max(span_, window); // which a young run has not filled yet
}

} // namespace zint
