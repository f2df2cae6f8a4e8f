#include "runner/runDisplay.h"

#include "catalogue/eventValue.h"
#include "runner/runBoxes.h"
#include "shared/module1.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string_view>
#include <utility>

namespace zint {
namespace {

PollPanel::Shade shadeOf(const EventTotals& event)
{
    if (event.errorFlag)
        return PollPanel::Shade::error;
    const bool isConstant = event.current == event.maximum && event.current == event.minimum;
    return isConstant ? PollPanel::Shade::constant : PollPanel::Shade::usual;
}

void showValues(PollPanel::Row& row, const EventTotals& totals, const DesignEntry& event)
{
    const auto showExtreme = [&event](std::string& cell, bool& isNew, double value) {
        std::string text = shownText(event, value);
        isNew = !cell.empty() && text != cell; // at first there is nothing to differ from
        cell = std::move(text);
    };
    row.shade = shadeOf(totals);
    row.samples = std::to_string(totals.sampleCount);
    if (totals.sampleCount == 0 && !keepsRawValues(event.conversion)) { // raw ones begin with figures
        row.value.clear();
        row.minimum.clear();
        row.maximum.clear();
        row.minimumIsNew = row.maximumIsNew = false;
        return;
    }
    row.value = shownText(event, totals.current);
    if (hasWords(event))
        return; // which have no order
    showExtreme(row.minimum, row.minimumIsNew, totals.minimum);
    showExtreme(row.maximum, row.maximumIsNew, totals.maximum);
}

/// How an event was answered; empty while there was no answer.
/// @param before samples of earlier starts. @param seconds since the last start
std::string repliesText(const EventTotals& event, std::int32_t before, std::int64_t seconds)
{
    if (event.sampleCount + event.errorCount == 0)
        return {};
    std::string text =
        "Good replies: " + std::to_string(event.sampleCount) + ", bad: " + std::to_string(event.errorCount);
    if (const std::int32_t sampled = event.sampleCount - before; sampled > 0 && seconds > 0)
        text += ", " + rateText(sampled, seconds) + " samples/s";
    return text;
}

std::string summaryText(std::int64_t loops, std::int64_t events, std::int64_t seconds)
{
    std::string text = std::to_string(loops) + " Loops, " + std::to_string(events) + " Events, ";
    if (seconds < 1)
        return text;
    return text + std::to_string(seconds) + " sec, " + rateText(loops, seconds) + " Lp/s, " +
           rateText(events, seconds) + " Ev/s";
}

std::string allLoopsText(std::int64_t loops, const std::string& measured)
{
    return "Ended after " + std::to_string(loops) + (loops == 1 ? " loop" : " loops") +
           ". For longer runs raise Max Poll Loops, then New Poll." +
           (measured.empty() ? "" : " Measured: " + measured + ".");
}

} // namespace

void showEvents(PollPanel& panel, const RunState& run, const Design& design, const SampleStore& samples,
                RunState::Time now)
{
    const std::int64_t seconds = wholeSeconds(now - run.counts.began.time);
    for (std::size_t event = 0; event < panel.obdGrid.size(); ++event) {
        const EventTotals& totals = samples.events()[event];
        PollPanel::Row& row = panel.obdGrid[event];
        showValues(row, totals, design.events[event]);
        row.isWords = event < run.sinceReset.words.size() && !run.sinceReset.words[event].empty();
        if (row.isWords)
            row.value = run.sinceReset.words[event];
        row.toolTip = repliesText(totals, run.counts.samplesBefore.at(event), seconds);
    }
    panel.statLab1 = summaryText(run.turn.loop, run.counts.events, seconds);
}

void showOpened(PollPanel& panel, const Design& design, const SampleStore& samples,
                const std::string& firstStart)
{
    constexpr std::size_t longestShown = 64; // of a start: any text can stand there
    std::int64_t count = 0;
    std::int32_t seconds = 0;
    for (std::size_t event = 0; event < panel.obdGrid.size(); ++event) {
        const EventTotals& totals = samples.events()[event];
        panel.obdGrid[event].samples = std::to_string(totals.sampleCount);
        if (totals.sampleCount == 0)
            continue;
        showValues(panel.obdGrid[event], totals, design.events[event]);
        count += totals.sampleCount;
        seconds = std::max(seconds, samples[totals.lastSample].time);
    }
    panel.statLab1 = samplesText(count, seconds);
    panel.lengthHint = firstStart.size() <= longestShown ? "First start: " + firstStart : "";
    panel.hint.clear();
    panel.ProgressBar1 = {};
}

std::string samplesText(std::int64_t samples, std::int64_t seconds)
{
    return std::to_string(samples) + (samples == 1 ? " sample in " : " samples in ") + durationText(seconds);
}

void showProgress(PollPanel& panel, const RunState& run, const RunPace& pace, RunState::Time now)
{
    const RunLimits& limits = run.limits;
    constexpr double whole = 100; // percent
    double done =
        std::min(static_cast<double>(run.turn.loop) * whole / static_cast<double>(limits.loops), whole);
    std::optional<double> left; // seconds
    if (limits.loops != RunLimits::withoutEnd && run.phase != RunState::Phase::waiting)
        left = pace.secondsLeft(run.turn, limits.loops);
    if (limits.time) {
        const auto all = static_cast<double>(limits.time->count());
        const std::chrono::duration<double> spent = now - run.counts.began.time;
        const double part = std::min(spent.count() / all, 1.0);
        left = std::min(left.value_or(all), all - part * all);
        done = std::max(done, part * whole);
    }
    panel.ProgressBar1 = {.value = done,
                          .text = left ? timeLeftText(static_cast<std::int64_t>(std::ceil(*left))) : ""};
}

void showLength(PollPanel& panel, const RunState& run, const RunPace& pace)
{
    const std::int64_t loops = loopsIn(panel.textSampleCnt, run.limits.loops);
    if (run.isFull() && loops == run.limits.loops)
        panel.lengthHint = allLoopsText(loops, pace.measuredText(loops));
    else if (run.phase == RunState::Phase::complete && run.limits.time && !run.isFull())
        panel.lengthHint = "Ended after " + durationText(run.limits.time->count()) +
                           ", the time limit. Start Polling goes on.";
    else
        panel.lengthHint = pace.lengthText(loops);
}

void showHint(PollPanel& panel, const RunState& run, const std::string& silence, RunState::Time now)
{
    constexpr std::string_view waiting = " - first values in ";
    const RunState::Time left = run.sinceStart.nextRefresh - now;
    if (run.phase != RunState::Phase::polling)
        panel.hint = silence;
    else if (const std::string concern = run.sinceStart.watch.text(now); !concern.empty())
        panel.hint = " - " + concern;
    else if (run.sinceReset.showsValues || left <= RunState::Time::zero())
        panel.hint.clear();
    else if (!panel.hint.starts_with(waiting))
        panel.hint = std::string(waiting) +
                     std::to_string(std::chrono::ceil<std::chrono::seconds>(left).count()) + " s";
}

} // namespace zint
