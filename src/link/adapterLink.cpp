#include "link/adapterLink.h"

#include <utility>

namespace zint {
namespace {

constexpr std::chrono::seconds resetTimeout{45};
constexpr std::chrono::seconds longSilence{10};

/// Of a command with its carriage return.
std::int64_t lengthOf(std::string_view command) { return static_cast<std::int64_t>(command.size()) + 1; }

std::string otherSpeed(const ConnectionChoice& choice)
{
    constexpr int usual = 38400;
    if (!choice.hasSpeed())
        return {};
    return std::string(": try ") + (choice.bitsPerSecond == usual ? "9600" : "38400");
}

} // namespace

AdapterLink::AdapterLink(AdapterLine line, Listener& listener, Delivery delivery)
    : line_(std::move(line)), listener_(listener), delivery_(delivery), buffer_(delivery == Delivery::replies)
{
    line_.port.onNotice = [this](PortNotice notice) { takeNotice(notice); };
    line_.timer.onTick = [this] { timedOut(); };
    if (line_.silence != nullptr) {
        line_.silence->onTick = [this] { tellOfSilence(); };
        line_.silence->setInterval(longSilence);
    }
    setStatus("Closed");
}

void AdapterLink::waitForAnswer(bool waits)
{
    if (line_.silence == nullptr)
        return;
    silenceText_.clear();
    line_.silence->setEnabled(waits);
}

void AdapterLink::tellOfSilence()
{
    const std::string time = std::to_string(longSilence.count()) + " s";
    line_.silence->setEnabled(false);
    if (state_ != State::resetSent)
        silenceText_ = " - no reply for " + time;
    else if (heard() == Heard::nothing)
        silenceText_ = " - nothing received for " + time;
    else if (heard() == Heard::noise)
        silenceText_ = " - received, but not readable" + otherSpeed(line_.choice);
    else
        silenceText_ = " - no complete answer for " + time;
    listener_.linkSilent();
}

Heard AdapterLink::heard() const
{
    if (!hasReceived_)
        return Heard::nothing;
    return buffer_.isReadable() ? Heard::text : Heard::noise;
}

bool AdapterLink::open(Guard guard, Opening opening)
{
    const std::string_view first = opening == Opening::reset ? resetCommand : nameCommand;
    state_ = State::resetSent;
    guard_ = guard;
    buffer_.clear();
    hasReceived_ = false;
    dropsNulBytes_ = true;
    failure_.clear();
    try {
        line_.port.open(line_.choice.port, line_.choice.bitsPerSecond);
        write(first, lengthOf(first));
    } catch (const CommError& error) {
        setStatus("- Comm init error: " + std::to_string(error.number()) + ": " + error.what());
        failure_ = status_;
        waitForAnswer(false);
        line_.port.close();
        refreshCounterLine();
        return false;
    }
    setStatus("Open");
    line_.timer.setInterval(resetTimeout);
    line_.timer.setEnabled(true);
    refreshCounterLine();
    return true;
}

void AdapterLink::reset()
{
    state_ = State::resetSent;
    buffer_.clear();
    hasReceived_ = false;
    line_.timer.setEnabled(true);
    send(resetCommand);
}

std::string AdapterLink::timeoutReason() const { return line_.choice.silenceReason(heard()); }

void AdapterLink::close()
{
    if (!line_.port.isOpen())
        return;
    line_.timer.setEnabled(false);
    send("ATD");
    waitForAnswer(false);
    setStatus("Closed");
    line_.port.close();
    refreshCounterLine();
}

void AdapterLink::send(std::string_view command) { send(command, lengthOf(command)); }

void AdapterLink::send(std::string_view command, std::int64_t countedBytes)
{
    try {
        write(command, countedBytes);
    } catch (const CommError&) { // NOLINT(bugprone-empty-catch): the port's own notice ends the exchange
    }
}

void AdapterLink::write(std::string_view command, std::int64_t countedBytes)
{
    line_.port.output(std::string(command) + '\r');
    counters_.bytesOut += countedBytes;
    waitForAnswer(true);
}

void AdapterLink::takeNotice(PortNotice notice)
{
    switch (notice) {
    case PortNotice::received:
        receive();
        break;
    case PortNotice::deviceGone:
        lost();
        break;
    case PortNotice::unexplained:
    default:
        countError();
        listener_.linkNotice(" - unhandled comm Event: " + std::to_string(static_cast<int>(notice)));
        break;
    }
}

void AdapterLink::receive()
{
    std::string received = line_.port.input();
    hasReceived_ = true;
    counters_.bytesIn += std::ssize(received);
    if (dropsNulBytes_) // some adapters mix them in
        std::erase(received, '\0');
    const auto reply = completed(received);
    waitForAnswer(!reply);
    if (reply)
        handleReply(*reply);
    refreshCounterLine();
    listener_.linkReceived();
}

std::optional<std::string> AdapterLink::completed(const std::string& received)
{
    if (delivery_ == Delivery::groups && state_ == State::ready)
        return received;
    buffer_.append(received);
    return buffer_.takeReply();
}

void AdapterLink::handleReply(std::string_view reply)
{
    switch (state_) {
    case State::resetSent:
        openingAnswer_ = reply;
        line_.timer.setEnabled(guard_ == Guard::exchange);
        send("ATE0");
        setStatus("Init");
        state_ = State::echoOffSent;
        listener_.linkReset();
        break;
    case State::echoOffSent:
        openingAnswer_ = reply;
        state_ = State::ready;
        listener_.linkReady();
        break;
    case State::ready:
        listener_.linkReply(reply);
        break;
    }
}

void AdapterLink::lost()
{
    line_.timer.setEnabled(false);
    waitForAnswer(false);
    countError();
    line_.port.close();
    setStatus("- adapter disconnected");
    failure_ = status_;
    refreshCounterLine();
    listener_.linkLost();
}

void AdapterLink::timedOut()
{
    line_.timer.setEnabled(false);
    countError();
    failure_ = notRespondingText;
    listener_.linkTimedOut();
}

void AdapterLink::setStatus(std::string_view words)
{
    status_ = portName(line_.choice.port);
    if (!words.empty())
        status_ += " " + std::string(words);
}

} // namespace zint
