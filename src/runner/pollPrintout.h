#pragma once

#include "runner/poller.h"

#include <chrono>
#include <functional>
#include <string>

namespace zint {

/// The summary of a run as HTML, for printing.
/// @param dateText writes a time as the user reads it
std::string pollPrintout(const Poller& poller,
                         const std::function<std::string(std::chrono::system_clock::time_point)>& dateText);

} // namespace zint
