#include "runner/poller.h"

#include "runner/openingCommands.h"
#include "runner/runBoxes.h"
#include "runner/runDisplay.h"
#include "shared/module1.h"

#include <utility>

namespace zint {
namespace {

constexpr std::chrono::milliseconds tickInterval{500};

} // namespace

Poller::Poller(Surroundings surroundings, const Design& design)
    : around_(std::move(surroundings)), design_(design), link_(around_.line, *this),
      samples_(around_.mostRecords), files_({around_.prompts, around_.values, around_.kept, around_.dateText,
                                             [this](const std::string& status) {
                                                 panel_.statusBox = status;
                                                 changed();
                                             },
                                             around_.define,
                                             [this](const std::string& path) {
                                                 if (onLog)
                                                     onLog(path);
                                             }}),
      pace_(design, around_.line.choice.bitsPerSecond), plan_(design)
{
    around_.ticker.onTick = [this] { tick(); };
    around_.ticker.setInterval(tickInterval);
    showDesign();
}

void Poller::load()
{
    resetValues();
    panel_.statusBox = around_.kept.takeCutOff()
                           ? "An earlier run was cut off. \"Recover Unsaved Run...\" in the File menu has it."
                           : "Ready";
    changed();
}

void Poller::unload()
{
    if (isPolling())
        stop(completedStatus());
    around_.kept.leave();
}

void Poller::pressStart()
{
    if (isPolling())
        stop(completedStatus());
    else if (mayStart())
        start();
}

/// Whether there is nothing against a start; the user is told what there is.
bool Poller::mayStart()
{
    const std::string& limit = panel_.timeLimit;
    if (opened_)
        around_.prompts.message("These values are from " + opened_->file +
                                ". Choose New Poll/Reset Values before polling.");
    else if (state_.isFull())
        around_.prompts.message("All samples filled, reset values before polling again");
    else if (!isEverDue(design_))
        around_.prompts.message(
            "The design has no event to poll. Open the Polling Designer and give events a "
            "poll frequency, or open a design there.");
    else if (limit.find_first_not_of(' ') != std::string::npos && !timeLimitIn(limit))
        around_.prompts.message("\"" + limit +
                                "\" is no time limit. Give 1 to 86400 seconds, or leave the box empty.");
    else
        return true;
    return false;
}

void Poller::start()
{
    reconnection_.begin(around_.device());
    if (!link_.open()) {
        panel_.statusBox = link_.status();
        panel_.labelStats = link_.counterLine();
        changed();
        return;
    }
    panel_.comStart = "Stop Polling";
    panel_.labelStats = link_.counterLine();
    state_.refreshSeconds = refreshSeconds();
    panel_.scnUpdate = std::to_string(state_.refreshSeconds);
    state_.limits.time = timeLimitIn(panel_.timeLimit);
    state_.counts = countsFromNow();
    if (samples_.isEmpty())
        state_.sinceReset.began = state_.counts.began;
    state_.sinceStart = {.watch = ReplyWatch(now()), .nextRefresh = nextRefresh()};
    plan_.read(); // what own parameters mean may have changed
    reader_.emplace(design_);
    prepare("Opening...");
    around_.kept.begin(design_, samples_, firstStart());
    showPace();
    around_.ticker.setEnabled(true);
    changed();
}

std::int64_t Poller::refreshSeconds() const
{
    return refreshSecondsIn(panel_.scnUpdate, state_.refreshSeconds);
}

void Poller::setMaxLoops(const std::string& text)
{
    panel_.textSampleCnt = text;
    if (!isOpened())
        showLength(panel_, state_, pace_);
    changed();
}

void Poller::limitByTime(std::chrono::seconds limit)
{
    state_.limits.loops = RunLimits::withoutEnd;
    setTimeLimit(std::to_string(limit.count()));
}

void Poller::letCombine(bool isAllowed)
{
    panel_.combine = isAllowed;
    changed();
}

std::string Poller::completedStatus()
{
    link_.close(); // a status tells of no silence then
    if (!reconnection_.failure().empty())
        return reconnection_.failure();
    link_.setStatus("Polling Completed ");
    return link_.status();
}

void Poller::stop(const std::string& status, Phase phase)
{
    around_.ticker.setEnabled(false);
    state_.phase = phase;
    panel_.comStart = "Start Polling";
    link_.close();
    measure();
    refresh();
    showLength(panel_, state_, pace_);
    panel_.ProgressBar1.text.clear();
    panel_.statusBox = status;
    panel_.hint.clear();
    around_.kept.pause();
    changed();
}

void Poller::tick()
{
    around_.kept.flush();
    measure();
    showPace();
    showHint();
    changed();
    if (state_.isTimeUp(now()))
        stop(completedStatus(), Phase::complete);
    else if (isWaiting())
        lookForAdapter();
}

void Poller::resetValues()
{
    state_.limits.loops = loopsIn(panel_.textSampleCnt, state_.limits.loops);
    panel_.textSampleCnt = std::to_string(state_.limits.loops);
    panel_.statusBox = "Values reset." + files_.leave(run());
    const bool wasOpened = std::exchange(opened_, std::nullopt).has_value();
    samples_.reset(design_);
    if (wasOpened)
        showDesign();
    state_.turn.loop = 0;
    state_.counts = countsFromNow();
    state_.sinceReset = {.began = isPolling() ? state_.sinceReset.began : state_.counts.began};
    pace_.begin(now());
    if (isPolling())
        around_.kept.begin(design_, samples_, firstStart());
    else
        state_.phase = Phase::stopped;
    refresh();
    panel_.ProgressBar1 = {};
    showLength(panel_, state_, pace_);
    changed();
}

RunState::Counts Poller::countsFromNow() const
{
    RunState::Counts counts{.began = {now(), around_.clock.wall()}};
    for (const EventTotals& event : samples_.events())
        counts.samplesBefore.push_back(event.sampleCount);
    return counts;
}

RunState::Time Poller::nextRefresh() const { return now() + std::chrono::seconds(state_.refreshSeconds); }

std::string Poller::save(RunFiles::Kind kind, const std::string& path)
{
    if (path.empty())
        return {};
    std::string failure = files_.save(run(), kind, path);
    if (!isPolling()) // what a run that is on brings is not saved yet
        around_.kept.pause();
    return failure;
}

void Poller::loadLog()
{
    panel_.statusBox = "Loading is not in this version; \"Open Log...\" in the File menu shows a log";
    changed();
}

void Poller::measure()
{
    pace_.measure(state_.sinceStart.watch.heardAt(), state_.counts.events);
    if (const auto seconds = pace_.measuredSeconds())
        around_.values.requestSeconds = *seconds; // the designer's estimate tells it, too
}

/// Shows the samples, and the counters in a shorter form than while starting, on purpose.
void Poller::refresh()
{
    showEvents(panel_, state_, design_, samples_, now());
    showProgress(panel_, state_, pace_, now());
    state_.sinceReset.showsValues = !samples_.isEmpty();
    const LinkCounters& counters = link_.counters();
    panel_.labelStats = "Bytes In: " + std::to_string(counters.bytesIn) +
                        " Out: " + std::to_string(counters.bytesOut) +
                        " Err: " + std::to_string(counters.errors);
}

void Poller::showPace()
{
    showProgress(panel_, state_, pace_, now());
    showLength(panel_, state_, pace_);
}

void Poller::showHint() { zint::showHint(panel_, state_, link_.silence(), now()); }

void Poller::setStatus(std::string_view words)
{
    link_.setStatus(words);
    panel_.statusBox = link_.status();
    panel_.hint.clear();
}

void Poller::changed()
{
    const std::string& failure = around_.kept.failure();
    panel_.keepFailure = failure.empty() ? "" : "unsaved samples are not kept: " + failure;
    if (onChanged)
        onChanged();
}

} // namespace zint
