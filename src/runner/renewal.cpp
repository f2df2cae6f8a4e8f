#include "runner/renewal.h"

namespace zint {
namespace {

constexpr std::chrono::seconds firstPause{10};
constexpr std::chrono::minutes calm{10};

/// Whether the adapter has begun anew unasked: its supply broke down for a moment.
bool saysRestart(std::string_view reply)
{
    return reply.find("LV RESET") != std::string_view::npos || reply.find("ELM327") != std::string_view::npos;
}

} // namespace

bool Renewal::take(ReplyFit fit, std::string_view reply, Time now)
{
    const bool restarts = saysRestart(reply);
    hasRestarted_ = hasRestarted_ || restarts;
    if (fit == ReplyFit::match)
        mismatches_ = 0;
    else if (fit == ReplyFit::mismatch)
        ++mismatches_;
    if (isNeeded()) {
        if (neededAt_ && now - *neededAt_ >= calm)
            pause_ = {};
        neededAt_ = now;
    }
    wasVain_ = wasVain_ || (mismatches_ >= ReplyWatch::manyMismatches && now < allowedFrom_);
    return fit != ReplyFit::mismatch && !restarts;
}

bool Renewal::isNeeded() const { return hasRestarted_ || mismatches_ >= ReplyWatch::manyMismatches; }

void Renewal::begin(Time now)
{
    pause_ = pause_.count() == 0 ? firstPause : 2 * pause_;
    allowedFrom_ = now + pause_;
    forget();
}

void Renewal::forget()
{
    mismatches_ = 0;
    hasRestarted_ = false;
}

} // namespace zint
