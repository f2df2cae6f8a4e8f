// The poller's exchange with the adapter: what is sent, and what is done with what comes back.

#include "runner/addressCommands.h"
#include "runner/openingCommands.h"
#include "runner/pollReply.h"
#include "runner/poller.h"

#include <algorithm>
#include <new>
#include <set>
#include <utility>

namespace zint {
namespace {

/// What a request adds to the counter of sent bytes: 5, as "010C" and its end, whatever its length. What goes
/// beyond single requests to all units counts as it is, and so does the first request.
std::int64_t countedBytes(const RunState::SinceStart& run)
{
    constexpr std::int64_t usual = 5;
    const bool isUsual = run.hasAnswer && !run.request.isCombined() && run.request.address == BusAddress();
    return isUsual ? usual : static_cast<std::int64_t>(run.request.text.size()) + 1;
}

} // namespace

void Poller::linkReset()
{
    heard();
    const std::string commands = openingCommands(design_);
    setStatus(commands.empty() ? "Init" : commands);
    changed();
}

void Poller::linkReady() { linkReply({}); }

void Poller::linkReply(std::string_view reply)
{
    heard();
    if (state_.phase != Phase::polling)
        sendNext(reply);
    else if (state_.sinceStart.command.empty())
        takeReply(reply);
    else
        takeCommandReply(reply);
}

/// Something was answered.
void Poller::heard()
{
    if (state_.phase != Phase::polling)
        state_.sinceStart.watch.hear(now());
    if (onReply)
        onReply();
}

/// Sends what comes in front of the second request. @param reply to what was sent last
void Poller::sendNext(std::string_view reply)
{
    RunState::SinceStart& run = state_.sinceStart;
    if (run.vehicle.learn(run.command, reply) && mayRepeat(run.command))
        link_.send(run.command);
    else if (run.commands.empty())
        sendFirstRequest();
    else
        sendCommand();
}

/// Whether a command whose answer was damaged is sent again: a question, on whose answer the values depend.
bool Poller::mayRepeat(const std::string& command)
{
    constexpr int most = 3; // in all
    return std::ranges::count(openingQuestions(design_, panel_.combine), command) > 0 &&
           ++state_.sinceStart.repeats <= most;
}

void Poller::sendCommand()
{
    RunState::SinceStart& run = state_.sinceStart;
    run.command = std::move(run.commands.front());
    run.commands.pop_front();
    link_.send(run.command);
}

void Poller::sendFirstRequest()
{
    RunState::SinceStart& run = state_.sinceStart;
    state_.phase = Phase::polling;
    plan_.combine(panel_.combine &&
                  (run.vehicle.protocol == BusProtocol::unknown || isCan(run.vehicle.protocol)));
    if (!resume())
        state_.turn.event = 0; // due or not
    run.request = plan_.request(state_.turn);
    approach();
    pace_.begin(now(), state_.counts.events);
    setStatus("Polling" + reconnection_.summary() + sharingText());
    changed();
}

/// Sends the next request, or first what leads the adapter to its address.
void Poller::approach()
{
    RunState::SinceStart& run = state_.sinceStart;
    run.command.clear();
    run.commands.clear();
    if (run.address != run.request.address)
        run.commands = addressCommands(run.address, run.request.address,
                                       usualAddress(design_, run.vehicle.protocol), design_);
    if (run.commands.empty())
        link_.send(run.request.text, countedBytes(run));
    else
        sendCommand();
}

/// The adapter has answered a command on the way to an address.
void Poller::takeCommandReply(std::string_view reply)
{
    RunState::SinceStart& run = state_.sinceStart;
    belongs(ReplyFit::unknown, reply);
    if (isRenewalDue()) { // the address is gone, too
        renewSettings();
        return;
    }
    if (reply.starts_with('?')) {
        const std::string older = olderCommand(run.command);
        if (older.empty()) {
            refuseAddress();
            return;
        }
        run.commands.push_front(older);
    }
    if (!run.commands.empty()) {
        sendCommand();
        return;
    }
    run.address = run.request.address;
    approach();
}

/// A request under a header that the adapter does not take is not sent: another unit would answer it.
void Poller::refuseAddress()
{
    RunState::SinceStart& run = state_.sinceStart;
    const EventReading refused{.words = "the adapter refuses " + std::exchange(run.command, {})};
    const std::vector<std::size_t> events = run.request.events;
    run.address.header = "?"; // as the commands before it have left it; a filter comes behind them
    link_.countError();
    state_.counts.events += static_cast<std::int64_t>(events.size());
    state_.turn = plan_.next(state_.turn);
    if (!state_.isFull())
        sendRequest();
    for (const std::size_t event : events) {
        samples_.addError(event);
        tell(event, refused);
    }
}

/// The next request goes out before the reply is looked at: the adapter is slower than this program. A reply
/// that tells whether requests may be shared is looked at first.
void Poller::takeReply(std::string_view reply)
{
    const PollRequest answered = std::move(state_.sinceStart.request);
    state_.sinceStart.hasAnswer = true;
    const bool isTrial = plan_.isTrial(answered);
    const std::vector<std::size_t> left = isTrial ? tryOut(answered, reply) : std::vector<std::size_t>();
    state_.counts.events += static_cast<std::int64_t>(answered.events.size() - left.size());
    if (!isPolling())
        return; // there was no memory
    if (left.empty() || left.front() != state_.turn.event)
        state_.turn = plan_.next(state_.turn);
    const bool renews = isRenewalDue();
    if (!state_.isFull() && !renews)
        sendRequest();
    else
        state_.sinceStart.request = plan_.request(state_.turn); // to go on with
    if (!isTrial)
        judge(answered, reply);
    if (renews && !state_.isFull() && isPolling())
        renewSettings();
}

/// Whether a reply tells of more than one parameter: some vehicles answer the first one of a request alone.
bool Poller::tellsSeveral(const PollRequest& request, const ReplyReader::Reading& reading) const
{
    std::set<std::string_view> told;
    for (std::size_t i = 0; i < request.events.size(); ++i) {
        if (!reading.events[i].isBad())
            told.insert(design_.events[request.events[i]].code);
    }
    return told.size() > 1;
}

/// Looks at the first reply to a shared request. Events that it leaves out are asked again at once; that is
/// no error. @return those
std::vector<std::size_t> Poller::tryOut(const PollRequest& request, std::string_view reply)
{
    const ReplyReader::Reading reading = reader_->read(request, reply, state_.sinceStart.vehicle);
    const bool isOwn = belongs(reading.fit, reply);
    const std::size_t partedBefore = plan_.partedCount();
    std::vector<std::size_t> left;
    const bool isUnderstood = tellsSeveral(request, reading);
    for (std::size_t i = 0; i < request.events.size() && isPolling(); ++i) {
        if (!isOwn || reading.events[i].isBad()) {
            plan_.leaveOut(request.events[i]);
            left.push_back(request.events[i]);
        } else {
            if (isUnderstood)
                plan_.confirm(request.events[i]);
            tell(request.events[i], reading.events[i]);
        }
    }
    state_.sinceStart.watch.hear(now());
    tellSharing(partedBefore);
    return left;
}

/// Tells how events are asked, when that has changed.
void Poller::tellSharing(std::size_t partedBefore)
{
    if (isPolling() && plan_.partedCount() != partedBefore)
        setStatus("Polling" + reconnection_.summary() + sharingText());
}

/// Stores what a reply tells, or counts it as bad.
void Poller::judge(const PollRequest& request, std::string_view reply)
{
    const ReplyReader::Reading reading = reader_->read(request, reply, state_.sinceStart.vehicle);
    const bool isGood = std::ranges::none_of(reading.events, &EventReading::isBad);
    state_.sinceStart.watch.take(
        reading.fit, reply.starts_with(ReplyBuffer::prompt) ? link_.announcement() : reply, isGood, now());
    const bool isOwn = belongs(reading.fit, reply);
    const std::size_t partedBefore = plan_.partedCount();
    for (std::size_t i = 0; i < request.events.size() && isPolling(); ++i) {
        const std::size_t event = request.events[i];
        const bool isTold = isOwn && !reading.events[i].isBad();
        if (isTold)
            tell(event, reading.events[i]);
        else
            samples_.addError(event);
        if (request.isCombined())
            isTold ? plan_.confirm(event) : plan_.miss(event);
        else if (isTold)
            plan_.answerAlone(event);
    }
    tellSharing(partedBefore);
    if (isOwn && isGood)
        return;
    link_.countError();
    if (saysNoData(reply))
        ++state_.noData;
}

/// Whether a reply may be stored. Where nothing is sent anew, a run goes on with what it gets.
bool Poller::belongs(ReplyFit fit, std::string_view reply)
{
    return !reconnection_.isAllowed() || state_.sinceStart.renewal.take(fit, reply, now());
}

void Poller::sendRequest()
{
    state_.sinceStart.request = plan_.request(state_.turn);
    approach();
    if (now() <= state_.sinceStart.nextRefresh)
        return;
    state_.sinceStart.nextRefresh = nextRefresh();
    refresh();
    showHint();
    changed();
}

/// A reply has told this of an event.
void Poller::tell(std::size_t event, const EventReading& reading)
{
    std::vector<std::string>& words = state_.sinceReset.words;
    words.resize(design_.events.size());
    words[event] = reading.words;
    if (reading.value)
        store(event, *reading.value);
}

/// What became of the wish to share requests; empty where all is as wished.
std::string Poller::sharingText() const
{
    const std::size_t parted = plan_.partedCount();
    if (!panel_.combine || (plan_.combines() && parted == 0))
        return {};
    if (!plan_.combines())
        return " - one parameter a request, for the vehicle is not on CAN";
    return " - " + std::to_string(parted) + (parted == 1 ? " event is" : " events are") + " asked alone";
}

void Poller::store(std::size_t event, double value)
{
    const auto time = sampleTime(now() - state_.sinceReset.began.time);
    try {
        samples_.add(event, value, time);
    } catch (const std::bad_alloc&) {
        stop(completedStatus());
        around_.prompts.message(
            "There is no memory for more samples, so polling was stopped. All samples so far are there "
            "and can be saved.");
        return;
    }
    around_.kept.add(event, value, time);
    if (onSample)
        onSample(event, value, time);
}

void Poller::linkReceived()
{
    if (!isPolling())
        return;
    if (state_.isFull())
        stop("Completed Polling, all samples filled", Phase::complete);
    else if (state_.isTimeUp(now()))
        stop(completedStatus(), Phase::complete);
}

void Poller::linkNotice(std::string_view text)
{
    panel_.statusBox += text;
    changed();
}

void Poller::linkSilent()
{
    showHint();
    changed();
}

} // namespace zint
