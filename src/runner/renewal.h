#pragma once

#include "runner/replyWatch.h"
#include "shared/clock.h"

#include <chrono>
#include <optional>
#include <string_view>

namespace zint {

/// Tells by the replies when the adapter has lost its settings and needs them anew.
///
/// A series of replies that do not match brings one renewal. If that does not help, as with a vehicle that
/// always answers so, the next ones come after pauses that double; replies that match for a while end that.
class Renewal {
public:
    using Time = Clock::Time;

    /// A request was answered. @return whether the reply belongs to its request
    bool take(ReplyFit fit, std::string_view reply, Time now);

    /// Whether the settings are to be sent.
    bool isDue(Time now) const { return isNeeded() && now >= allowedFrom_; }

    /// Whether replies went on not to match after they had been sent.
    bool wasVain() const { return wasVain_; }

    /// They are being sent, and nothing else for the time being.
    void begin(Time now);

    /// They have been sent, for whatever reason.
    void forget();

private:
    bool isNeeded() const;

    int mismatches_ = 0;        ///< in a row
    bool hasRestarted_ = false; ///< the adapter said so
    bool wasVain_ = false;
    std::optional<Time> neededAt_; ///< last
    std::chrono::seconds pause_{0};
    Time allowedFrom_{};
};

} // namespace zint
