// What the poller does when its adapter is gone, or has lost its settings.

#include "runner/openingCommands.h"
#include "runner/poller.h"

#include <utility>

namespace zint {

void Poller::letReconnect(Reconnection::Patience patience)
{
    reconnection_.allow(patience);
    panel_.reconnect = patience.has_value();
    if (isWaiting() && !patience)
        stop(completedStatus());
    changed();
}

void Poller::linkLost()
{
    if (reconnection_.isAllowed())
        wait();
    else
        stop(link_.status());
}

void Poller::linkTimedOut()
{
    if (isInterrupted() && reconnection_.isAllowed()) { // nobody may be there to read a message
        link_.close();
        wait();
        return;
    }
    around_.prompts.tellOfSilence(std::string(AdapterLink::notRespondingText), link_.timeoutReason());
    if (isPolling())
        stop(completedStatus());
}

/// Waits for the adapter to come back.
void Poller::wait()
{
    interrupt();
    state_.phase = Phase::waiting;
    reconnection_.lose(now(), link_.lastFailure());
    refresh();
    setStatus(Reconnection::waitingText);
    changed();
}

/// The time that follows is none that requests take.
void Poller::interrupt()
{
    measure();
    pace_.begin(now(), state_.counts.events);
    reconnection_.interrupt(now());
}

void Poller::lookForAdapter()
{
    if (reconnection_.isOver(now())) {
        stop(completedStatus());
        return;
    }
    const auto began = now();
    if (!reconnection_.isTryDue(began, around_.device()))
        return;
    if (!link_.open()) {
        reconnection_.miss(began, now());
        link_.setStatus(Reconnection::waitingText); // in place of why it can't be opened
        return;
    }
    reconnection_.find();
    prepare("Opening...");
    changed();
}

/// The adapter gets all that it gets in front of the first request.
void Poller::prepare(std::string_view status)
{
    state_.phase = Phase::preparing;
    state_.sinceStart.commands = commandsIn(openingCommands(design_));
    for (std::string& question : openingQuestions(design_, panel_.combine))
        state_.sinceStart.commands.push_back(std::move(question));
    state_.sinceStart.command.clear();
    state_.sinceStart.address = {};
    setStatus(status);
}

/// A reset also lifts the block that an adapter puts on its search for a protocol when its supply broke down.
void Poller::renewSettings()
{
    interrupt();
    state_.sinceStart.renewal.begin(now());
    prepare("adapter has lost its settings, sending them anew");
    link_.reset();
    changed();
}

/// Goes on with the request that was not answered, or begins with the first one. @return whether it goes on
bool Poller::resume()
{
    reconnection_.resume();
    samples_.startRun();
    state_.sinceStart.renewal.forget();
    state_.sinceStart.watch.forgive();
    return std::exchange(state_.sinceStart.hasPolled, true);
}

} // namespace zint
