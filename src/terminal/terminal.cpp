#include "terminal/terminal.h"

#include "link/adapterLink.h"
#include "link/commError.h"
#include "link/replyBuffer.h"
#include "shared/module1.h"
#include "shared/textFile.h"
#include "terminal/textReply.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace zint {
namespace {

/// One line of what was received, with blanks for whatever would not be seen.
std::string blanked(std::string_view received)
{
    std::string text(received);
    std::ranges::replace_if(
        text, [](char c) { return c < ' ' || c > '~'; }, ' ');
    return text;
}

/// Drops empty lines in front of a line, and the prompt of before: some adapters send line ends behind the
/// prompt or before a reply.
void dropLeadingLineEnds(std::string& received)
{
    const auto begin = received.find_first_not_of("\r\n >");
    if (begin != std::string::npos) // npos + 1 is 0, where there is none
        received.erase(0, received.find_last_of("\r\n>", begin) + 1);
}

} // namespace

Terminal::Terminal(Surroundings surroundings, const ConnectionChoice& choice)
    : around_(surroundings), choice_(choice),
      binary_({.show = [this](const std::string& text) { output_ += text; },
               .store = [this](const std::string& reply) { history_.add(cmdEcho_ + reply); },
               .prompted = [this] { prompted(); }})
{
    AdapterLink::setUp(around_.port, choice);
    around_.port.onNotice = [this](PortNotice notice) { takeNotice(notice); };
    around_.timer.onTick = [this] { timedOut(); };
    panel_.statusBox = choice_.portName + " Closed";
    updateControls();
}

void Terminal::unload()
{
    if (!isOpen())
        return;
    write("ATD");
    around_.timer.setEnabled(false);
    around_.port.close();
}

void Terminal::pressOpenCom()
{
    isOpen() ? close() : open();
    changed();
}

void Terminal::open()
{
    linkState_ = State::resetSent;
    rxBuf_.clear();
    try {
        around_.port.open();
        around_.port.output(std::string(AdapterLink::resetCommand) + '\r');
    } catch (const CommError& error) {
        panel_.statusBox = choice_.portName + " " + AdapterLink::initErrorText(error);
        around_.port.close();
        return;
    }
    around_.outBox.replace("Initializing...");
    counters_.bytesOut += static_cast<std::int64_t>(AdapterLink::resetCommand.size()) + 1;
    ++counters_.commandsSent;
    refreshCounters();
    panel_.statusBox = choice_.portName + " Open";
    cmdEcho_.clear();
    binary_.clear();
    lastLineHadPrompt_ = false;
    around_.timer.setInterval(AdapterLink::resetTimeout);
    around_.timer.setEnabled(true);
}

void Terminal::close()
{
    write("ATD");
    ++counters_.commandsSent;
    endConnection(" Closed");
}

/// The port is closed from here on.
void Terminal::endConnection(std::string_view status)
{
    around_.timer.setEnabled(false);
    repeating_ = false;
    around_.port.close();
    panel_.statusBox = choice_.portName + std::string(status);
}

void Terminal::pressSendCom()
{
    if (isOpen())
        send();
    else
        askToOpen();
    changed();
}

void Terminal::askToOpen() { panel_.statusBox = choice_.portName + " Closed - press Open OBD first"; }

void Terminal::send()
{
    if (!isOpen())
        return;
    ++counters_.commandsSent;
    if (inBox_.starts_with('A'))
        binary_.expectLiteral();
    if (repeating_) {
        write({}); // lets the adapter do its last command again
        ++repeatCount_;
        ++counters_.commandsSent; // a repeated send counts as two commands
        return;
    }
    if (isReady())
        panel_.statusBox = choice_.portName + " Ready"; // what stands there is about the commands before
    write(inBox_);
    refreshCounters();
    cmdEcho_ = ">" + inBox_ + "  ";
    around_.outBox.append(cmdEcho_);
}

void Terminal::write(std::string_view command)
{
    try {
        around_.port.output(std::string(command) + '\r');
        counters_.bytesOut += static_cast<std::int64_t>(command.size()) + 1;
    } catch (const CommError&) { // NOLINT(bugprone-empty-catch): the port's own event tells it
    }
}

void Terminal::pressRepeatCom()
{
    if (repeating_) {
        repeating_ = false;
        const auto elapsed =
            std::chrono::duration_cast<std::chrono::seconds>(around_.clock.monotonic() - repeatStart_)
                .count();
        panel_.statusBox = std::to_string(repeatCount_) + " In " + std::to_string(elapsed) + " second(s) (" +
                           rateText(repeatCount_, elapsed) + ")";
    } else if (isOpen()) {
        send();
        repeating_ = true;
        repeatCount_ = 0;
        repeatStart_ = around_.clock.monotonic();
    } else {
        askToOpen();
    }
    changed();
}

/// Of what else the port reports, a reply would show what matters.
void Terminal::takeNotice(PortNotice notice)
{
    switch (notice) {
    case PortNotice::received:
        receive();
        break;
    case PortNotice::unexplained:
        panel_.statusBox += AdapterLink::noticeText(notice);
        ++counters_.totalErrors;
        break;
    case PortNotice::deviceGone:
        ++counters_.totalErrors;
        refreshCounters();
        endConnection(" " + std::string(AdapterLink::disconnectedText));
        break;
    default:
        return;
    }
    changed();
}

void Terminal::receive()
{
    std::string received = around_.port.input();
    counters_.bytesIn += std::ssize(received);
    if (linkState_ != State::binaryStartUp && linkState_ != State::binary)
        std::erase(received, '\0');
    rxBuf_ += received;
    output_.clear();
    promptSeen_ = false;
    switch (linkState_) {
    case State::resetSent:
        if (rxBuf_.ends_with(ReplyBuffer::prompt))
            takeBanner();
        break;
    case State::echoOffSent:
        if (rxBuf_.ends_with(ReplyBuffer::prompt))
            takeStartUp({}, State::text);
        break;
    case State::binaryStartUp:
        if (rxBuf_.ends_with(ReplyBuffer::prompt))
            takeStartUp("ATPD ", State::binary);
        break;
    case State::binary:
        binary_.take(std::exchange(rxBuf_, {}), cmdEcho_, options_, counters_);
        break;
    case State::text:
        takeTextLine();
        break;
    }
    if (!output_.empty()) {
        showOutput();
        refreshCounters();
    }
    if (promptSeen_ && onPrompt)
        onPrompt();
}

void Terminal::takeBanner()
{
    around_.timer.setEnabled(false);
    const auto start = rxBuf_.find(AdapterLink::resetCommand);
    rxBuf_.erase(0, start == std::string::npos ? 0 : start);
    takeLineToPrompt({});
    write("ATE0");
    panel_.statusBox = choice_.portName + " Init";
    linkState_ = State::echoOffSent;
}

void Terminal::takeStartUp(std::string_view prefix, State next)
{
    takeLineToPrompt(prefix);
    panel_.statusBox = choice_.portName + " Ready";
    linkState_ = next;
    if (next == State::binary)
        binary_.begin();
    promptSeen_ = true;
}

/// Shows all that has come as one line, without the prompt that ends it.
void Terminal::takeLineToPrompt(std::string_view prefix)
{
    rxBuf_.pop_back();
    output_ = std::string(prefix) + blanked(rxBuf_) + std::string(lineEnd);
    rxBuf_.clear();
    history_.add(output_);
    ++counters_.messagesReceived;
}

void Terminal::takeTextLine()
{
    dropLeadingLineEnds(rxBuf_);
    promptSeen_ = rxBuf_.ends_with(ReplyBuffer::prompt);
    if (const auto end = rxBuf_.find('\r'); end != std::string::npos) {
        lastLineHadPrompt_ = promptSeen_;
        const TextReply reply = showTextReply(rxBuf_, options_.base);
        rxBuf_.erase(0, end + 1);
        if (reply.overflowed) {
            panel_.statusBox = choice_.portName + " - Overflow: a number is larger than 7FFFFFFF";
            ++counters_.totalErrors;
        }
        if (!reply.text.empty()) {
            ++counters_.messagesReceived;
            output_ = toUtf8(reply.text) + std::string(lineEnd);
            history_.add(cmdEcho_ + output_);
        }
    }
    if (repeating_ && (lastLineHadPrompt_ || promptSeen_)) // a prompt that comes late is a group of its own
        send();
}

void Terminal::prompted()
{
    promptSeen_ = true;
    if (repeating_)
        send();
}

void Terminal::showOutput()
{
    switch (options_.mode) {
    case OutputMode::append:
        around_.outBox.append(output_);
        break;
    case OutputMode::overwrite:
        if (!history_.isEmpty())
            around_.outBox.replace(history_.newest());
        break;
    case OutputMode::scroll:
        around_.outBox.replace(history_.text());
        break;
    }
}

void Terminal::timedOut()
{
    around_.timer.setEnabled(false);
    ++counters_.totalErrors;
    around_.prompts.tellOfSilence(std::string(AdapterLink::notRespondingText),
                                  choice_.silenceReason(rxBuf_.empty()                ? Heard::nothing
                                                        : ReplyBuffer::isText(rxBuf_) ? Heard::text
                                                                                      : Heard::noise));
    if (sendsAfterTimeout_)
        send();
    changed();
}

void Terminal::clearOutput()
{
    around_.outBox.replace({});
    history_.clear();
}

void Terminal::clearCounters()
{
    counters_ = {};
    refreshCounters();
    changed();
}

void Terminal::showStatistics() { around_.prompts.message(counters_.statistics(), "Piolum Stats"); }

void Terminal::showStatus(const std::string& text)
{
    panel_.statusBox = text;
    changed();
}

void Terminal::refreshCounters() { panel_.labelStats = counters_.line(); }

void Terminal::updateControls()
{
    const bool isNowOpen = isOpen();
    panel_.openCom.caption = (isNowOpen ? "Close OBD (" : "Open OBD (") + choice_.portName + ")";
    panel_.mnuOpenCom = !isNowOpen;
    panel_.mnuCloseCom = panel_.sendIsDefault = isNowOpen;
    panel_.sendCom.enabled = !repeating_;
    panel_.repeatCom.caption = repeating_ ? "Stop Sending" : "Send Repeatedly";
}

void Terminal::changed()
{
    updateControls();
    if (onChanged)
        onChanged();
}

} // namespace zint
