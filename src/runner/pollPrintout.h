#pragma once

#include "runner/poller.h"
#include "shared/clock.h"

#include <string>

namespace zint {

/// The summary of a run as HTML, for printing.
std::string pollPrintout(const Poller& poller, const DateText& dateText);

} // namespace zint
