#pragma once

#include "catalogue/design.h"
#include "runner/pollPanel.h"
#include "runner/runPace.h"
#include "runner/runState.h"
#include "samples/sampleStore.h"

#include <cstdint>
#include <string>

/// Fills the poll runner's panel with where a run stands.
namespace zint {

/// Shows each event's figures in its unit, and the summary of all. A value that the conversion can't take is
/// told as such: one odd reply is no reason to show nothing.
void showEvents(PollPanel& panel, const RunState& run, const Design& design, const SampleStore& samples,
                RunState::Time now);

/// Shows the figures of a run that was opened; nothing is known of its replies. An event without samples has
/// no values. @param firstStart date and time text
void showOpened(PollPanel& panel, const Design& design, const SampleStore& samples,
                const std::string& firstStart);

/// "12 samples in 1:05". @param seconds at least 0
std::string samplesText(std::int64_t samples, std::int64_t seconds);

/// Shows how far the run is, and how long it goes on.
void showProgress(PollPanel& panel, const RunState& run, const RunPace& pace, RunState::Time now);

/// Tells beside the boxes how long a run of the loops that are typed takes, or why the last one has ended.
void showLength(PollPanel& panel, const RunState& run, const RunPace& pace);

/// Tells what the replies, or none, mean for the user. The hint stays the same while nothing new is to be
/// told: a change may be read aloud. @param silence what the link tells of it
void showHint(PollPanel& panel, const RunState& run, const std::string& silence, RunState::Time now);

} // namespace zint
