#pragma once

#include "shared/clock.h"

#include <optional>
#include <string>
#include <string_view>

namespace zint {

/// How a reply fits its request.
enum class ReplyFit {
    unknown, ///< words of the adapter, or the request asks for no data: nothing is contradicted
    match,
    refused, ///< the vehicle does not do what was asked
    mismatch
};

/// @param isGood whether the reply reads as a value
ReplyFit fitOf(std::string_view request, std::string_view reply, bool isGood);

/// Looks at what comes back in a run, for what the user should be told while it is on.
///
/// Nothing here changes what is stored: an adapter that has lost its settings answers with lines that read
/// as values all the same.
class ReplyWatch {
public:
    using Time = Clock::Time;

    static constexpr std::string_view mismatchText =
        "Replies do not match the requests: stop and start again";

    static constexpr int manyMismatches = 3; ///< in a row: too many to be by chance

    /// @param now a run starts
    explicit ReplyWatch(Time now = {}) : heardAt_(now) {}

    /// Something was answered that is no reply to a request of the design.
    void hear(Time now) { heardAt_ = now; }

    /// A request was answered. @param isGood whether the reply reads as a value
    void take(ReplyFit fit, std::string_view reply, bool isGood, Time now);

    /// How the last reply fitted its request.
    ReplyFit fit() const { return fit_; }

    /// The adapter gets its settings anew: what did not match in a row so far matters no more.
    void forgive();

    /// When something was answered last.
    Time heardAt() const { return heardAt_; }

    /// What to tell the user now; mostly empty.
    std::string text(Time now) const;

    /// Whether there was a mismatch in the run.
    bool sawMismatch() const { return sawMismatch_; }

private:
    Time heardAt_;
    ReplyFit fit_ = ReplyFit::unknown;
    int mismatches_ = 0; ///< in a row, of replies that are bytes
    int badReplies_ = 0; ///< in a row
    bool sawMismatch_ = false;
    std::string badReply_; ///< the first line of the last one
};

/// The two bytes that a reply to a request begins with, such as "41 0C" for "010C"; one for a request of one
/// byte, nothing for what is no request for data.
std::optional<std::string> echoOf(std::string_view request);

} // namespace zint
