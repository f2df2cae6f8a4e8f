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
    state_.turn.event = 0; // due or not
    link_.send(design_.events.front().code);
    pace_.begin(now());
    setStatus("Polling");
    changed();
}

/// The next request goes out before the reply is looked at: the adapter is slower than this program.
void Poller::takeReply(std::string_view reply)
{
    const std::size_t answered = state_.turn.event;
    ++state_.counts.events;
    state_.turn = nextTurn(design_, state_.turn);
    if (!state_.isFull())
        sendRequest();
    const auto value = pollValue(reply);
    state_.sinceStart.watch.take(design_.events[answered].code,
                                 reply.starts_with(ReplyBuffer::prompt) ? link_.announcement() : reply,
                                 value.has_value(), now());
    if (value) {
        store(answered, *value);
        return;
    }
    link_.countError();
    samples_.addError(answered);
    if (saysNoData(reply))
        ++state_.noData;
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

void Poller::store(std::size_t event, std::int32_t value)
{
    const auto seconds = static_cast<std::int32_t>(wholeSeconds(now() - state_.sinceReset.began.time));
    try {
        samples_.add(event, value, seconds);
    } catch (const std::bad_alloc&) {
        stop(completedStatus());
        around_.prompts.message(
            "There is no memory for more samples, so polling was stopped. All samples so far are there "
            "and can be saved.");
        return;
    }
    around_.kept.add(event, value, seconds);
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

void Poller::linkTimedOut()
{
    around_.prompts.tellOfSilence(std::string(AdapterLink::notRespondingText), link_.timeoutReason());
    if (isPolling())
        stop(completedStatus());
}

void Poller::linkLost() { stop(link_.status()); }

} // namespace zint
