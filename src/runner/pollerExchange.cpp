// The poller's exchange with the adapter: what is sent, and what is done with what comes back.

#include "runner/openingCommands.h"
#include "runner/pollReply.h"
#include "runner/poller.h"

#include <new>

namespace zint {

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
    if (state_.phase == Phase::polling)
        takeReply(reply);
    else
        sendNext();
}

/// Something was answered.
void Poller::heard()
{
    if (state_.phase != Phase::polling)
        state_.sinceStart.watch.hear(now());
    if (onReply)
        onReply();
}

/// Sends what comes in front of the second request.
void Poller::sendNext()
{
    std::deque<std::string>& commands = state_.sinceStart.commands;
    if (commands.empty()) {
        sendFirstRequest();
        return;
    }
    link_.send(commands.front());
    commands.pop_front();
}

void Poller::sendFirstRequest()
{
    state_.phase = Phase::polling;
    if (!resume())
        state_.turn.event = 0; // due or not
    link_.send(design_.events[state_.turn.event].code);
    pace_.begin(now(), state_.counts.events);
    setStatus("Polling" + reconnection_.summary());
    changed();
}

/// The next request goes out before the reply is looked at: the adapter is slower than this program.
void Poller::takeReply(std::string_view reply)
{
    const std::size_t answered = state_.turn.event;
    ++state_.counts.events;
    state_.turn = nextTurn(design_, state_.turn);
    const bool renews = reconnection_.isAllowed() && state_.sinceStart.renewal.isDue(now());
    if (!state_.isFull() && !renews)
        sendRequest();
    judge(answered, reply);
    if (renews && !state_.isFull() && isPolling())
        renewSettings();
}

/// Stores what a reply tells, or counts it as bad.
void Poller::judge(std::size_t event, std::string_view reply)
{
    const auto value = pollValue(reply);
    state_.sinceStart.watch.take(design_.events[event].code,
                                 reply.starts_with(ReplyBuffer::prompt) ? link_.announcement() : reply,
                                 value.has_value(), now());
    if (belongs(reply) && value) {
        store(event, *value);
        return;
    }
    link_.countError();
    samples_.addError(event);
    if (saysNoData(reply))
        ++state_.noData;
}

/// Whether a reply may be stored. Where nothing is sent anew, a run goes on with what it gets.
bool Poller::belongs(std::string_view reply)
{
    return !reconnection_.isAllowed() ||
           state_.sinceStart.renewal.take(state_.sinceStart.watch.fit(), reply, now());
}

void Poller::sendRequest()
{
    constexpr std::int64_t countedBytes = 5; // as "010C" and its end, whatever the request's length
    link_.send(design_.events[state_.turn.event].code, countedBytes);
    if (now() <= state_.sinceStart.nextRefresh)
        return;
    state_.sinceStart.nextRefresh = nextRefresh();
    refresh();
    showHint();
    changed();
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
