#pragma once

#include <chrono>
#include <cstdint>

/// What may be typed for a run, in the window as on the command line, and what stands there at first.
namespace zint::pollLimits {

inline constexpr std::int64_t usualLoops = 1000;
inline constexpr std::int64_t mostLoops = 100000;
inline constexpr std::chrono::seconds longestRun{86400}; ///< a day
inline constexpr std::chrono::seconds usualRefresh{10};
inline constexpr std::chrono::seconds longestRefresh{3600};

} // namespace zint::pollLimits
