#pragma once

#include <cstddef>
#include <stdexcept>

namespace zint {

/// Thrown out of work that its user has stopped.
class WorkStopped final : public std::runtime_error {
public:
    WorkStopped() : std::runtime_error("The work was stopped.") {}
};

/// How long work tells how far it is, and learns that it is no longer wanted.
class Progress {
public:
    virtual ~Progress() = default;

    /// To be called many times a second. @param done the part that is done, 0 to 1
    /// @throws WorkStopped when the user has stopped it
    virtual void advance(double done) = 0;
};

/// For work that nobody watches.
class NoProgress final : public Progress {
public:
    void advance(double /*done*/) override {}
};

inline NoProgress unwatched;

/// Tells the progress of work that consists of many short steps.
class ProgressSteps {
public:
    /// @param progress outlives this
    ProgressSteps(Progress& progress, std::size_t all) : progress_(progress), all_(all) {}

    /// One step is done. @throws WorkStopped
    void step()
    {
        constexpr std::size_t stepsBetweenReports = 16384;
        if (++done_ % stepsBetweenReports == 0)
            progress_.advance(static_cast<double>(done_) / static_cast<double>(all_));
    }

private:
    Progress& progress_;
    std::size_t all_;
    std::size_t done_ = 0;
};

} // namespace zint
