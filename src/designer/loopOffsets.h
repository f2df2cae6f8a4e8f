#pragma once

#include "catalogue/design.h"

#include <string>

/// In which loops the events are requested.
namespace zint {

/// Spreads the events of each frequency over its loops: the first of a frequency falls into loop 0, the next
/// into loop 1 and so on, beginning again after as many loops as the frequency has.
void spreadOffsets(Design& design);

/// The descriptions of each loop's events, lines ended by CR LF, for as many loops as the largest frequency
/// has, at least 10, and on to the next loop with an event. The line before the first loop stays empty.
/// @throws RunTimeError 11 for a design without events or with one of frequency 0, std::length_error for a
/// text that would be too long to show (several 100,000 loops)
std::string timelineText(const Design& design);

} // namespace zint
