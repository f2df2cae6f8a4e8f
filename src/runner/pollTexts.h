#pragma once

#include "runner/pollPanel.h"
#include "runner/sampleStore.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

/// What stands in the poll runner's boxes and cells.
namespace zint {

/// The number in a text box as a whole one, or its usual value when it is out of range; nothing when it holds
/// no number.
std::optional<std::int64_t> numberIn(const std::string& text, std::int64_t largest, std::int64_t usual);

/// The time limit in a text box; nothing when there is none of 1 second to a day.
std::optional<std::chrono::seconds> timeLimitIn(const std::string& text);

/// The adapter's time-out command for a sample speed; empty for those that it has by itself.
std::string timeoutCommand(SampleSpeed sampleSpeed);

/// Shows an event's figures in its unit. A value that the conversion can't take is told as such: one odd
/// reply is no reason to show nothing.
void showValues(PollPanel::Row& row, const EventTotals& event, std::int32_t conversion);

/// How an event was answered; empty while there was no answer.
/// @param before samples of earlier starts. @param seconds since the last start
std::string repliesText(const EventTotals& event, std::int32_t before, std::int64_t seconds);

} // namespace zint
