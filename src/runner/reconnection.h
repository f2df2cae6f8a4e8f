#pragma once

#include "shared/clock.h"

#include <chrono>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace zint {

/// The interruptions of a run: polling stands still while the adapter is gone or gets its settings anew.
class Reconnection {
public:
    using Time = Clock::Time;
    using Patience = std::optional<std::chrono::seconds>;

    static constexpr std::chrono::seconds withoutEnd{std::numeric_limits<std::int32_t>::max()};
    static constexpr std::string_view waitingText = "adapter gone, waiting for it";

    /// Lets runs survive. @param patience how long to wait for an adapter that has vanished; nothing: runs
    /// end with it
    void allow(Patience patience) { patience_ = patience; }
    bool isAllowed() const { return patience_.has_value(); }

    /// A run starts. @param device what its port stands for: another one that gets the port's number is left
    /// alone
    void begin(std::string device);

    /// Polling stands still, since the first call up to resume().
    void interrupt(Time now);
    bool isInterrupted() const { return since_.has_value(); }

    /// The adapter has vanished, or does not answer any more. @param failure in words for the user
    void lose(Time now, std::string failure);

    /// Why there is no adapter; empty while there is one.
    const std::string& failure() const { return failure_; }

    /// Whether the user wants to wait no longer.
    bool isOver(Time now) const;

    /// Whether it is time for a try. @param device what the port stands for now
    bool isTryDue(Time now, const std::string& device) const { return now >= nextTry_ && device == device_; }

    /// A try was in vain. One that took long, as over a network, lets the window have as long for itself.
    void miss(Time began, Time now);

    /// The port is open again.
    void find() { failure_.clear(); }

    /// Polling goes on.
    void resume();

    /// What became of the run so far: " - reconnected twice"; empty when nothing happened.
    std::string summary() const;

private:
    Patience patience_;
    std::string device_;
    std::optional<Time> since_;
    Time nextTry_{};
    std::string failure_;
    bool wasLost_ = false; ///< in the present interruption
    int losses_ = 0;       ///< that the run survived
    int resets_ = 0;       ///< likewise
};

} // namespace zint
