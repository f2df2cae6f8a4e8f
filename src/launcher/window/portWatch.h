#pragma once

#include <chrono>

namespace zint {

/// How often a window looks whether ports have come or gone.
inline constexpr std::chrono::milliseconds portWatchInterval{1500};

} // namespace zint
