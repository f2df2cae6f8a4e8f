#pragma once

namespace zint {

/// How long a request takes at most, about, in seconds: the adapter waits for the vehicle as long as its
/// time-out says, but many go on as soon as there is an answer.
/// @param sampleSpeed the adapter's time-out in ms, or Design::automaticSpeed
/// @param bitsPerSecond of the line
double requestSeconds(int sampleSpeed, int bitsPerSecond);

} // namespace zint
