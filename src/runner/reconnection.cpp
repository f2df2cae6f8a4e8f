#include "runner/reconnection.h"

#include <algorithm>

namespace zint {
namespace {

constexpr std::chrono::seconds betweenTries{1};

std::string timesText(std::string_view what, int times)
{
    if (times == 0)
        return {};
    return " - " + std::string(what) + " " + (times == 1 ? "once" : std::to_string(times) + " times");
}

} // namespace

void Reconnection::begin(std::string device)
{
    const Patience patience = patience_;
    *this = {};
    patience_ = patience;
    device_ = std::move(device);
}

void Reconnection::interrupt(Time now)
{
    if (!since_)
        since_ = now;
}

void Reconnection::lose(Time now, std::string failure)
{
    if (!std::exchange(wasLost_, true))
        since_ = now;
    nextTry_ = now + betweenTries; // a device that comes back may not be opened at once
    failure_ = std::move(failure);
}

bool Reconnection::isOver(Time now) const
{
    return !patience_ || (patience_ != withoutEnd && now - since_.value_or(now) >= *patience_);
}

void Reconnection::miss(Time began, Time now) { nextTry_ = now + std::max<Time>(betweenTries, now - began); }

void Reconnection::resume()
{
    if (!since_)
        return;
    ++(wasLost_ ? losses_ : resets_);
    wasLost_ = false;
    since_.reset();
}

std::string Reconnection::summary() const
{
    return timesText("reconnected", losses_) + timesText("set up anew", resets_);
}

} // namespace zint
