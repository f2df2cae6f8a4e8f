#include "runner/poller.h"

#include "catalogue/conversion.h"
#include "runner/pollReply.h"
#include "shared/fileError.h"
#include "shared/module1.h"
#include "shared/runTimeError.h"

#include <array>
#include <charconv>
#include <cmath>
#include <new>
#include <optional>
#include <utility>

namespace zint {
namespace {

constexpr std::int64_t usualLoops = 1000;
constexpr double mostLoops = 100000;
constexpr std::int64_t usualRefresh = 10;
constexpr double longestRefresh = 3600;
constexpr std::int64_t countedRequest = 5; // as "010C" and its end, whatever a request's length
constexpr std::chrono::milliseconds tickInterval{500};
constexpr double whole = 100; // percent

/// The number in a text box as a whole one, or its usual value when it is out of range; nothing when it holds
/// no number.
std::optional<std::int64_t> numberIn(const std::string& text, double largest, std::int64_t usual)
{
    const auto start = text.find_first_not_of(" +");
    if (start == std::string::npos)
        return std::nullopt;
    const std::string digits = text.substr(start, text.find_last_not_of(' ') + 1 - start);
    double number = 0;
    const char* const end = digits.data() + digits.size();
    const auto [read, error] = std::from_chars(digits.data(), end, number);
    if (read != end || error == std::errc::invalid_argument)
        return std::nullopt;
    const double rounded = std::nearbyint(number);
    return error == std::errc() && rounded >= 1 && rounded <= largest ? static_cast<std::int64_t>(rounded)
                                                                      : usual;
}

/// The adapter's time-out command for a sample speed in ms; empty for those that it has by itself.
std::string timeoutCommand(int sampleSpeed)
{
    if (sampleSpeed == Design::defaultSpeed || sampleSpeed == Design::automaticSpeed)
        return {};
    constexpr double unit = 4; // ms
    const double units = sampleSpeed / unit;
    std::array<char, 8> digits{};
    const char* const end =
        std::to_chars(digits.data(), digits.data() + digits.size(), std::lrint(units), 16).ptr;
    return (units < 16 ? "ATST 0" : "ATST ") + upperCase(std::string_view(digits.data(), end));
}

/// A value that a conversion can't take is told as such: one odd reply is no reason to show nothing.
std::string shown(std::int32_t conversion, std::int32_t raw)
{
    try {
        return displayText(conversion, raw);
    } catch (const RunTimeError& error) {
        return error.what();
    }
}

std::string keepFailureText(const FileError& error)
{
    return std::string(" - unsaved samples are not kept: ") + error.what();
}

} // namespace

Poller::Poller(Surroundings surroundings, const ConnectionChoice& choice, const Design& design)
    : around_(std::move(surroundings)), design_(design), link_(around_.port, around_.timer, choice, *this),
      files_({around_.prompts, around_.dialogs, around_.values, around_.dateText,
              [this](const std::string& status) {
                  panel_.statusBox = status;
                  changed();
              }})
{
    around_.ticker.onTick = [this] { tick(); };
    around_.ticker.setInterval(tickInterval);
    panel_.titleLab = design_.title() + " (" + std::to_string(design_.eventCount()) + " events)";
    for (const DesignEntry& event : design_.events())
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
    link_.setStatus(" Polling Completed ");
    return link_.status();
}

void Poller::start()
{
    if (samplesFull_) {
        around_.prompts.message("All samples filled, reset values before polling again");
        return;
    }
    if (!isEverDue(design_)) {
        around_.prompts.message(
            "The design has no event to poll. Open the Polling Designer and give events a "
            "poll frequency, or open a design there.");
        return;
    }
    if (!link_.open()) {
        panel_.statusBox = link_.status();
        panel_.labelStats = link_.counterLine();
        changed();
        return;
    }
    pollActive_ = true;
    panel_.comStart = "Stop Polling";
    panel_.labelStats = link_.counterLine();
    setStatus(" Opening...");
    refreshSecs_ = numberIn(panel_.scnUpdate.text, longestRefresh, usualRefresh).value_or(refreshSecs_);
    panel_.scnUpdate = {.text = std::to_string(refreshSecs_), .enabled = false};
    panel_.textSampleCnt.enabled = false;
    pollStart_ = around_.clock.monotonic();
    pollDate_ = around_.clock.wall();
    eventsDone_ = 0;
    if (samples_.isEmpty()) {
        firstPollStart_ = pollStart_;
        firstPollDate_ = pollDate_;
    }
    loopsBefore_ = loopCount_;
    samplesBefore_.clear();
    for (const EventTotals& event : samples_.events())
        samplesBefore_.push_back(event.sampleCount);
    nextRefresh_ = pollStart_ + std::chrono::seconds(refreshSecs_);
    keepRun();
    around_.ticker.setEnabled(true);
    changed();
}

/// Lets what is sampled from now on be kept, or remembers why it can't be.
void Poller::keepRun()
{
    keepFailure_.clear();
    try {
        around_.kept.begin(design_, samples_, firstPollDate_);
    } catch (const FileError& error) {
        keepFailure_ = keepFailureText(error);
    }
}

void Poller::stop(const std::string& status)
{
    around_.ticker.setEnabled(false);
    pollActive_ = false;
    panel_.comStart = "Start Polling";
    panel_.scnUpdate.enabled = true;
    panel_.textSampleCnt.enabled = true;
    link_.close();
    refresh();
    panel_.ProgressBar1.text.clear();
    panel_.statusBox = status;
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
    estimateTimeLeft();
    changed();
}

void Poller::flushKept()
{
    try {
        around_.kept.flush();
    } catch (const FileError& error) { // the run is worth more than its copy
        panel_.statusBox += keepFailureText(error);
    }
}

void Poller::estimateTimeLeft()
{
    const std::int64_t loops = loopCount_ - loopsBefore_;
    const std::int64_t seconds = secondsSince(pollStart_);
    panel_.ProgressBar1.text =
        loops < 1 || seconds < 1 ? "" : timeLeftText((maxLoops_ - loopCount_) * seconds / loops);
}

void Poller::linkReset()
{
    initQueue_ = design_.extraCommands;
    if (const std::string command = timeoutCommand(design_.sampleSpeed); !command.empty())
        initQueue_ += (initQueue_.empty() ? "" : ";") + command;
    state_ = initQueue_.empty() ? State::firstRequest : State::commands;
    setStatus(initQueue_.empty() ? " Init" : " " + initQueue_);
    changed();
}

void Poller::linkReady() { proceed({}); }

void Poller::linkReply(std::string_view reply) { proceed(reply); }

void Poller::proceed(std::string_view reply)
{
    switch (state_) {
    case State::commands:
        sendCommand();
        break;
    case State::firstRequest:
        state_ = State::polling;
        turn_ = {.loop = loopCount_, .event = 0}; // due or not
        link_.send(design_.events()[turn_.event].code);
        setStatus(" Polling" + keepFailure_);
        changed();
        break;
    case State::polling:
        takeReply(reply);
        break;
    }
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
    link_.send(design_.events()[turn_.event].code, countedRequest);
    const auto now = around_.clock.monotonic();
    if (now > nextRefresh_) {
        refresh();
        changed();
        nextRefresh_ = now + std::chrono::seconds(refreshSecs_);
    }
}

void Poller::reachLoop(std::int64_t loop)
{
    loopCount_ = loop;
    samplesFull_ = loop >= maxLoops_;
    panel_.ProgressBar1.value =
        samplesFull_ ? whole : static_cast<double>(loop) * whole / static_cast<double>(maxLoops_);
}

void Poller::linkReceived()
{
    if (samplesFull_ && pollActive_)
        stop("Completed Polling, all samples filled");
}

void Poller::linkEvent(int event)
{
    panel_.statusBox += AdapterLink::eventText(event);
    link_.countError();
    changed();
}

void Poller::linkTimedOut()
{
    around_.prompts.message(std::string(AdapterLink::notRespondingText));
    around_.values.lastFailureText = AdapterLink::timeoutText;
    if (pollActive_)
        stop(completedStatus());
}

void Poller::linkLost() { stop(link_.status()); }

void Poller::resetValues()
{
    maxLoops_ = numberIn(panel_.textSampleCnt.text, mostLoops, usualLoops).value_or(maxLoops_);
    panel_.textSampleCnt.text = std::to_string(maxLoops_);
    around_.kept.leave();
    samples_.reset(design_);
    samplesBefore_.assign(samples_.events().size(), 0);
    loopCount_ = loopsBefore_ = turn_.loop = 0;
    eventsDone_ = 0;
    savedSize_ = 0;
    samplesFull_ = false;
    pollStart_ = around_.clock.monotonic();
    pollDate_ = around_.clock.wall();
    panel_.ProgressBar1 = {};
    files_.forgetNames();
    if (pollActive_) {
        keepRun();
        panel_.statusBox += keepFailure_;
    } else {
        firstPollStart_ = pollStart_;
        firstPollDate_ = pollDate_;
    }
    refresh();
    changed();
}

void Poller::refresh()
{
    for (std::size_t event = 0; event < panel_.obdGrid.size(); ++event)
        refreshRow(event);
    writeSummary();
}

void Poller::refreshRow(std::size_t event)
{
    const EventTotals& totals = samples_.events()[event];
    const std::int32_t conversion = design_.events()[event].conversion;
    PollPanel::Row& row = panel_.obdGrid[event];
    const auto showExtreme = [conversion](std::string& cell, bool& isNew, std::int32_t raw) {
        std::string text = shown(conversion, raw);
        isNew = text != cell;
        cell = std::move(text);
    };
    using Shade = PollPanel::Shade;
    if (totals.errorFlag)
        row.shade = Shade::error;
    else if (totals.current == totals.maximum && totals.current == totals.minimum)
        row.shade = Shade::constant;
    else
        row.shade = Shade::usual;
    row.value = shown(conversion, totals.current);
    row.samples = std::to_string(totals.sampleCount);
    showExtreme(row.minimum, row.minimumIsNew, totals.minimum);
    showExtreme(row.maximum, row.maximumIsNew, totals.maximum);
    const std::int64_t seconds = secondsSince(pollStart_);
    const std::int32_t sampled = totals.sampleCount - samplesBefore_.at(event);
    row.toolTip = sampled > 0 && seconds > 0 ? rateText(sampled, seconds) + " samples/s" : "";
    if (totals.errorCount > 0)
        row.toolTip += (row.toolTip.empty() ? "" : ", ") + std::to_string(totals.errorCount) +
                       (totals.errorCount == 1 ? " bad reply" : " bad replies");
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

double Poller::now() const
{
    return std::chrono::duration<double>(around_.clock.monotonic() - firstPollStart_).count();
}

std::int64_t Poller::secondsSince(std::chrono::microseconds moment) const
{
    return std::chrono::duration_cast<std::chrono::seconds>(around_.clock.monotonic() - moment).count();
}

void Poller::saveLog(RunFiles::Name name)
{
    if (!files_.saveLog(run(), name))
        return;
    savedSize_ = samples_.size();
    if (!pollActive_) // what a run that is on brings is not saved yet
        around_.kept.forget();
}

void Poller::setStatus(std::string_view words)
{
    link_.setStatus(words);
    panel_.statusBox = link_.status();
}

void Poller::changed() const
{
    if (onChanged)
        onChanged();
}

} // namespace zint
