#pragma once

#include "catalogue/design.h"

#include <string>

/// In which passes of the polling loop the events are requested.
namespace zint {

/// Spreads the events of each frequency over its passes: the first of a frequency falls into pass 0, the next
/// into pass 1 and so on, beginning again after as many passes as the frequency has.
void spreadOffsets(Design& design);

/// The events of each pass as text, lines ended by CR LF, for as many passes as the largest frequency has, at
/// least 10, and on to the next pass with an event. An event without a description is named by its code. The
/// line before the first pass stays empty.
/// @throws RunTimeError 11 for a design without events or with one of frequency 0, std::length_error for a
/// text that would be too long to show (several 100,000 passes)
std::string timelineText(const Design& design);

} // namespace zint
