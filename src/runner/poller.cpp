#include "runner/poller.h"

#include "runner/pollLimits.h"
#include "runner/pollReply.h"
#include "runner/pollTexts.h"
#include "shared/module1.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <optional>
#include <utility>

namespace zint {
namespace {

constexpr std::int64_t countedRequest = 5; // as "010C" and its end, whatever a request's length
constexpr std::chrono::milliseconds tickInterval{500};
constexpr double whole = 100;                                                 // percent
constexpr std::int64_t withoutEnd = std::numeric_limits<std::int64_t>::max(); // loops

} // namespace

Poller::Poller(Surroundings surroundings, const ConnectionChoice& choice, const Design& design)
    : around_(std::move(surroundings)), design_(design), link_(around_.port, around_.timer, choice, *this),
      samples_(around_.mostRecords), files_({around_.prompts, around_.values, around_.dateText,
                                             [this](const std::string& status) {
                                                 panel_.statusBox = status;
                                                 changed();
                                             }}),
      pace_(design, choice.bitsPerSecond)
{
    around_.ticker.onTick = [this] { tick(); };
    around_.ticker.setInterval(tickInterval);
    link_.watchSilence(around_.silence);
    panel_.titleLab = summaryOf(design_);
    for (const DesignEntry& event : design_.events)
        panel_.obdGrid.push_back({.description = event.description});
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
    if (pollActive_)
        stop(completedStatus());
    around_.kept.leave();
}

void Poller::pressStart()
{
    if (pollActive_)
        stop(completedStatus());
    else
        start();
}

std::string Poller::completedStatus()
{
    link_.close(); // a status tells of no silence then
    link_.setStatus("Polling Completed ");
    return link_.status();
}

/// Whether there is nothing against a start; the user is told what there is.
bool Poller::mayStart()
{
    const std::string& limit = panel_.timeLimit.text;
    if (samplesFull_)
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
    if (!mayStart())
        return;
    if (!link_.open()) {
        panel_.statusBox = link_.status();
        panel_.labelStats = link_.counterLine();
        changed();
        return;
    }
    pollActive_ = true;
    isComplete_ = false;
    state_ = State::commands;
    panel_.comStart = "Stop Polling";
    panel_.labelStats = link_.counterLine();
    setStatus("Opening...");
    takeBoxes();
    pollStart_ = now();
    watch_ = ReplyWatch(pollStart_.ticks);
    eventsDone_ = 0;
    if (samples_.isEmpty())
        firstPollStart_ = pollStart_;
    samplesBefore_.clear();
    for (const EventTotals& event : samples_.events())
        samplesBefore_.push_back(event.sampleCount);
    nextRefresh_ = pollStart_.ticks + std::chrono::seconds(refreshSecs_);
    keepRun();
    showProgress();
    showLength();
    around_.ticker.setEnabled(true);
    changed();
}

/// What was typed counts from now on, and stays until the run is over.
void Poller::takeBoxes()
{
    refreshSecs_ = refreshSeconds();
    panel_.scnUpdate.text = std::to_string(refreshSecs_);
    timeLimit_ = timeLimitIn(panel_.timeLimit.text);
    enableBoxes(false);
}

std::int64_t Poller::refreshSeconds() const
{
    return numberIn(panel_.scnUpdate.text, pollLimits::longestRefresh.count(),
                    pollLimits::usualRefresh.count())
        .value_or(refreshSecs_);
}

void Poller::enableBoxes(bool enabled)
{
    for (PollPanel::TextBox* box : {&panel_.textSampleCnt, &panel_.timeLimit, &panel_.scnUpdate})
        box->enabled = enabled;
}

/// Lets what is sampled from now on be kept, or tells why it can't be.
void Poller::keepRun()
{
    around_.kept.begin(design_, samples_, firstPollStart_.date);
    showKeepFailure();
}

void Poller::showKeepFailure()
{
    const std::string& failure = around_.kept.failure();
    panel_.keepFailure = failure.empty() ? "" : "unsaved samples are not kept: " + failure;
}

void Poller::stop(const std::string& status)
{
    around_.ticker.setEnabled(false);
    pollActive_ = false;
    panel_.comStart = "Start Polling";
    enableBoxes(true);
    link_.close();
    measure();
    refresh();
    showLength();
    showProgress();
    panel_.ProgressBar1.text.clear();
    panel_.statusBox = status;
    panel_.hint.clear();
    flushKept();
    if (isSaved())
        around_.kept.forget();
    changed();
}

/// Whether a log holds all samples.
bool Poller::isSaved() const { return !samples_.isEmpty() && samples_.size() == savedSize_; }

void Poller::tick()
{
    flushKept();
    measure();
    showProgress();
    showLength();
    showHint();
    changed();
    if (isTimeUp())
        complete(completedStatus());
}

void Poller::flushKept()
{
    around_.kept.flush();
    showKeepFailure();
}

bool Poller::isTimeUp() const
{
    return timeLimit_ && around_.clock.monotonic() - pollStart_.ticks >= *timeLimit_;
}

void Poller::measure()
{
    pace_.measure(watch_.heardAt(), eventsDone_);
    if (const auto seconds = pace_.measuredSeconds())
        around_.values.requestSeconds = *seconds; // the designer's estimate tells it, too
}

/// Tells how long the run goes on: up to its last request, or as long as its time limit lets it.
void Poller::showProgress()
{
    std::optional<double> left; // seconds
    if (maxLoops_ != withoutEnd)
        left = pace_.secondsLeft(turn_, maxLoops_);
    panel_.ProgressBar1.value = loopsPercent();
    if (timeLimit_) {
        const auto all = static_cast<double>(timeLimit_->count());
        const std::chrono::duration<double> spent = around_.clock.monotonic() - pollStart_.ticks;
        const double part = std::min(spent.count() / all, 1.0);
        left = std::min(left.value_or(all), all - part * all);
        panel_.ProgressBar1.value = std::max(panel_.ProgressBar1.value, part * whole);
    }
    panel_.ProgressBar1.text = left ? timeLeftText(static_cast<std::int64_t>(std::ceil(*left))) : "";
}

double Poller::loopsPercent() const
{
    return samplesFull_ ? whole : static_cast<double>(loopCount_) * whole / static_cast<double>(maxLoops_);
}

/// Tells beside the boxes how long a run of the loops that are typed takes, or why the last one has ended.
void Poller::showLength()
{
    const std::int64_t loops =
        numberIn(panel_.textSampleCnt.text, pollLimits::mostLoops, pollLimits::usualLoops)
            .value_or(maxLoops_);
    const std::string measured = pace_.measuredText(loops);
    if (samplesFull_ && loops == maxLoops_)
        panel_.lengthHint = "Ended after " + std::to_string(loops) + (loops == 1 ? " loop" : " loops") +
                            ". For longer runs raise Max Poll Loops, then New Poll." +
                            (measured.empty() ? "" : " Measured: " + measured + ".");
    else if (isComplete_ && timeLimit_)
        panel_.lengthHint =
            "Ended after " + durationText(timeLimit_->count()) + ", the time limit. Start Polling goes on.";
    else
        panel_.lengthHint = pace_.lengthText(loops);
}

/// Tells what the replies, or none, mean for the user. It stays the same while nothing new is to be told: a
/// change may be read aloud.
void Poller::showHint()
{
    constexpr std::string_view waiting = " - first values in ";
    const auto time = around_.clock.monotonic();
    if (state_ != State::polling)
        panel_.hint = link_.silence();
    else if (const std::string concern = watch_.text(time); !concern.empty())
        panel_.hint = " - " + concern;
    else if (showsValues_ || time >= nextRefresh_)
        panel_.hint.clear();
    else if (!panel_.hint.starts_with(waiting))
        panel_.hint = std::string(waiting) +
                      std::to_string(std::chrono::ceil<std::chrono::seconds>(nextRefresh_ - time).count()) +
                      " s";
}

void Poller::linkReset()
{
    initQueue_ = design_.extraCommands;
    if (const std::string command = timeoutCommand(design_.sampleSpeed); !command.empty())
        initQueue_ += (initQueue_.empty() ? "" : ";") + command;
    state_ = initQueue_.empty() ? State::firstRequest : State::commands;
    heard();
    setStatus(initQueue_.empty() ? "Init" : initQueue_);
    changed();
}

void Poller::linkSilent()
{
    showHint();
    changed();
}

void Poller::linkReady() { proceed({}); }

void Poller::linkReply(std::string_view reply) { proceed(reply); }

void Poller::proceed(std::string_view reply)
{
    heard();
    switch (state_) {
    case State::commands:
        sendCommand();
        break;
    case State::firstRequest:
        sendFirstRequest();
        break;
    case State::polling:
        takeReply(reply);
        break;
    }
}

/// Something was answered.
void Poller::heard()
{
    if (state_ != State::polling)
        watch_.hear(around_.clock.monotonic());
    if (onReply)
        onReply();
}

void Poller::sendFirstRequest()
{
    state_ = State::polling;
    turn_ = {.loop = loopCount_, .event = 0}; // due or not
    link_.send(design_.events[turn_.event].code);
    pace_.begin(around_.clock.monotonic());
    setStatus("Polling");
    changed();
}

void Poller::sendCommand()
{
    const auto end = initQueue_.find(';');
    link_.send(initQueue_.substr(0, end));
    initQueue_.erase(0, end == std::string::npos ? end : end + 1);
    if (initQueue_.empty())
        state_ = State::firstRequest;
}

/// The next request goes out before the reply is looked at: the adapter is slower than this program.
void Poller::takeReply(std::string_view reply)
{
    const std::size_t answered = turn_.event;
    ++eventsDone_;
    requestNext();
    const auto value = pollValue(reply);
    watch_.take(design_.events[answered].code,
                reply.starts_with(ReplyBuffer::prompt) ? std::string_view(link_.notice()) : reply,
                value.has_value(), around_.clock.monotonic());
    if (!value) {
        link_.countError();
        samples_.addError(answered);
        if (saysNoData(reply))
            ++noDataCount_;
        return;
    }
    const auto time = static_cast<std::int32_t>(secondsSince(firstPollStart_));
    try {
        samples_.add(answered, *value, time);
    } catch (const std::bad_alloc&) {
        stop(completedStatus());
        around_.prompts.message(
            "There is no memory for more samples, so polling was stopped. All samples so far are there "
            "and can be saved.");
        return;
    }
    around_.kept.add(answered, *value, time);
}

void Poller::requestNext()
{
    const Turn next = nextTurn(design_, turn_);
    if (next.loop != turn_.loop)
        reachLoop(next.loop);
    turn_ = next;
    if (samplesFull_)
        return;
    link_.send(design_.events[turn_.event].code, countedRequest);
    const auto time = around_.clock.monotonic();
    if (time > nextRefresh_) {
        nextRefresh_ = time + std::chrono::seconds(refreshSecs_);
        refresh();
        showProgress();
        showHint();
        changed();
    }
}

void Poller::reachLoop(std::int64_t loop)
{
    loopCount_ = loop;
    samplesFull_ = loop >= maxLoops_;
}

void Poller::linkReceived()
{
    if (!pollActive_)
        return;
    if (samplesFull_)
        complete("Completed Polling, all samples filled");
    else if (isTimeUp())
        complete(completedStatus());
}

/// Stops because the run has come to its end.
void Poller::complete(const std::string& status)
{
    isComplete_ = true;
    stop(status);
}

void Poller::linkNotice(PortNotice notice)
{
    panel_.statusBox += AdapterLink::noticeText(notice);
    link_.countError();
    changed();
}

void Poller::linkTimedOut()
{
    around_.prompts.tellOfSilence(std::string(AdapterLink::notRespondingText), link_.timeoutReason());
    if (pollActive_)
        stop(completedStatus());
}

void Poller::linkLost()
{
    stop(link_.status());
}

void Poller::setMaxLoops(const std::string& text)
{
    panel_.textSampleCnt.text = text;
    showLength();
    changed();
}

void Poller::limitByTime(std::chrono::seconds limit)
{
    maxLoops_ = withoutEnd;
    setTimeLimit(std::to_string(limit.count()));
}

void Poller::resetValues()
{
    maxLoops_ = numberIn(panel_.textSampleCnt.text, pollLimits::mostLoops, pollLimits::usualLoops)
                    .value_or(maxLoops_);
    panel_.textSampleCnt.text = std::to_string(maxLoops_);
    panel_.statusBox = "Values reset." + leaveRun();
    samples_.reset(design_);
    samplesBefore_.assign(samples_.events().size(), 0);
    loopCount_ = turn_.loop = 0;
    eventsDone_ = 0;
    savedSize_ = 0;
    samplesFull_ = isComplete_ = showsValues_ = false;
    pollStart_ = now();
    pace_.begin(pollStart_.ticks);
    panel_.ProgressBar1 = {};
    files_.forgetNames();
    if (pollActive_)
        keepRun();
    else
        firstPollStart_ = pollStart_;
    refresh();
    showLength();
    changed();
}

/// Another run takes the place of the present one. @return what to say of one that was not saved
std::string Poller::leaveRun()
{
    flushKept();
    const bool isKept = around_.kept.isKeeping();
    isSaved() ? around_.kept.forget() : around_.kept.leave();
    panel_.keepFailure.clear();
    if (samples_.isEmpty() || isSaved())
        return {};
    return isKept ? " The unsaved run is under Recover Unsaved Run..."
                  : " The unsaved run could not be kept.";
}

void Poller::loadLog()
{
    panel_.statusBox = "Loading is not in this version; zint-obd export turns a log into a table";
    changed();
}

void Poller::refresh()
{
    const std::int64_t seconds = secondsSince(pollStart_);
    for (std::size_t event = 0; event < panel_.obdGrid.size(); ++event) {
        const EventTotals& totals = samples_.events()[event];
        showValues(panel_.obdGrid[event], totals, design_.events[event].conversion);
        panel_.obdGrid[event].toolTip = repliesText(totals, samplesBefore_.at(event), seconds);
    }
    showsValues_ = !samples_.isEmpty();
    writeSummary();
}

void Poller::writeSummary()
{
    const LinkCounters& counters = link_.counters();
    panel_.labelStats = "Bytes In: " + std::to_string(counters.bytesIn) +
                        " Out: " + std::to_string(counters.bytesOut) +
                        " Err: " + std::to_string(counters.errors); // shorter than while starting, on purpose
    panel_.statLab1 = std::to_string(loopCount_) + " Loops, " + std::to_string(eventsDone_) + " Events, ";
    if (const std::int64_t seconds = secondsSince(pollStart_); seconds >= 1)
        panel_.statLab1 += std::to_string(seconds) + " sec, " + rateText(loopCount_, seconds) + " Lp/s, " +
                           rateText(eventsDone_, seconds) + " Ev/s";
}

std::int64_t Poller::secondsSince(const Moment& moment) const
{
    return std::chrono::duration_cast<std::chrono::seconds>(around_.clock.monotonic() - moment.ticks).count();
}

std::string Poller::save(RunFiles::Kind kind, const std::string& path)
{
    if (path.empty())
        return {};
    const RunFiles::Result result = files_.save(run(), kind, path);
    if (result.isWritten && kind == RunFiles::Kind::log) {
        savedSize_ = samples_.size();
        if (!pollActive_) // what a run that is on brings is not saved yet
            around_.kept.forget();
    }
    return result.failure;
}

void Poller::setStatus(std::string_view words)
{
    link_.setStatus(words);
    panel_.statusBox = link_.status();
    panel_.hint.clear();
}

void Poller::changed() const
{
    if (onChanged)
        onChanged();
}

} // namespace zint
