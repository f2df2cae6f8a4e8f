#include "terminal/terminal.h"

#include "link/replyBuffer.h"
#include "shared/module1.h"
#include "shared/textFile.h"
#include "shared/utf8.h"
#include "terminal/textReply.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace zint {
namespace {

constexpr std::size_t mostReplies = 12; // in the history

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

Terminal::Terminal(Surroundings surroundings)
    : around_(std::move(surroundings)), link_(around_.line, *this, AdapterLink::Delivery::groups),
      portName_(portName(around_.line.choice.port)),
      binary_({.show = [this](const std::string& text) { output_ += text; },
               .store = [this](const std::string& reply) { keep(cmdEcho_ + reply); },
               .prompted =
                   [this] {
                       promptSeen_ = true;
                       if (repeating_)
                           send();
                   }})
{
    panel_.statusBox = link_.status();
    updateControls();
}

void Terminal::unload()
{
    if (isOpen())
        close();
}

void Terminal::pressOpenCom()
{
    isOpen() ? close() : open();
    changed();
}

void Terminal::open()
{
    const bool isOpened = link_.open();
    panel_.statusBox = link_.status();
    if (!isOpened)
        return;
    around_.outBox.replace("Initializing...");
    ++counters_.commandsSent;
    refreshCounters();
    replies_ = Replies::text;
    rxBuf_.clear();
    cmdEcho_.clear();
    binary_.clear();
    lastLineHadPrompt_ = false;
}

void Terminal::close()
{
    repeating_ = false;
    ++counters_.commandsSent;
    link_.close();
    panel_.statusBox = link_.status();
}

void Terminal::pressSendCom()
{
    isOpen() ? send() : askToOpen();
    changed();
}

void Terminal::askToOpen() { setStatus("Closed - press Open OBD first"); }

void Terminal::send()
{
    if (!isOpen())
        return;
    ++counters_.commandsSent;
    if (inBox_.starts_with('A'))
        binary_.expectLiteral();
    if (repeating_) {
        link_.send({}); // lets the adapter do its last command again
        ++repeatCount_;
        ++counters_.commandsSent; // a repeated send counts as two commands
        return;
    }
    if (isReady())
        setStatus("Ready"); // what stands there is about the commands before
    link_.send(inBox_);
    refreshCounters();
    cmdEcho_ = ">" + inBox_ + "  ";
    around_.outBox.append(cmdEcho_);
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

void Terminal::expectBinaryReplies()
{
    replies_ = Replies::binaryStartUp;
    link_.keepNulBytes();
}

void Terminal::linkReset()
{
    const std::string_view banner = link_.openingAnswer();
    const auto start = banner.find(AdapterLink::resetCommand);
    takeAnswer(banner.substr(start == std::string_view::npos ? 0 : start));
    panel_.statusBox = link_.status();
}

void Terminal::linkReady()
{
    takeAnswer(link_.openingAnswer());
    becomeReady();
}

void Terminal::becomeReady()
{
    setStatus("Ready");
    promptSeen_ = true;
}

/// Shows all that has come as one line, without the prompt that ends it.
void Terminal::takeAnswer(std::string_view answer, std::string_view prefix)
{
    answer.remove_suffix(1);
    output_ = std::string(prefix) + blanked(answer) + std::string(lineEnd);
    keep(output_);
    ++counters_.messagesReceived;
}

void Terminal::linkReply(std::string_view group)
{
    rxBuf_ += group;
    switch (replies_) {
    case Replies::text:
        takeTextLine();
        break;
    case Replies::binaryStartUp:
        if (!rxBuf_.ends_with(ReplyBuffer::prompt))
            break;
        takeAnswer(std::exchange(rxBuf_, {}), "ATPD ");
        becomeReady();
        replies_ = Replies::binary;
        binary_.begin();
        break;
    case Replies::binary:
        binary_.take(std::exchange(rxBuf_, {}), cmdEcho_, options_, counters_);
        break;
    }
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
            setStatus("- Overflow: a number is larger than 7FFFFFFF");
            link_.countError();
        }
        if (!reply.text.empty()) {
            ++counters_.messagesReceived;
            output_ = toUtf8(reply.text) + std::string(lineEnd);
            keep(cmdEcho_ + output_);
        }
    }
    if (repeating_ && (lastLineHadPrompt_ || promptSeen_)) // a prompt that comes late is a group of its own
        send();
}

void Terminal::linkReceived()
{
    if (const std::string output = std::exchange(output_, {}); !output.empty()) {
        showOutput(output);
        refreshCounters();
    }
    if (std::exchange(promptSeen_, false) && onPrompt)
        onPrompt();
    changed();
}

void Terminal::keep(const std::string& reply)
{
    replyHistory_.push_back(reply);
    if (replyHistory_.size() > mostReplies)
        replyHistory_.pop_front();
}

void Terminal::showOutput(const std::string& output)
{
    switch (options_.mode) {
    case OutputMode::append:
        around_.outBox.append(output);
        break;
    case OutputMode::overwrite:
        around_.outBox.replace(replyHistory_.back()); // opening has kept the first one
        break;
    case OutputMode::scroll:
        around_.outBox.replace(std::accumulate(replyHistory_.begin(), replyHistory_.end(), std::string()));
        break;
    }
}

/// Of what else the port reports, a reply would show what matters.
void Terminal::linkNotice(std::string_view text)
{
    panel_.statusBox += text;
    changed();
}

void Terminal::linkTimedOut()
{
    around_.prompts.tellOfSilence(std::string(AdapterLink::notRespondingText), link_.timeoutReason());
    if (sendsAfterTimeout_)
        send();
    changed();
}

void Terminal::linkLost()
{
    repeating_ = false;
    refreshCounters();
    panel_.statusBox = link_.status();
    changed();
}

void Terminal::clearOutput()
{
    around_.outBox.replace({});
    replyHistory_ = {""};
}

TerminalCounters Terminal::counters() const
{
    TerminalCounters all = counters_;
    all.bytesIn = link_.counters().bytesIn;
    all.bytesOut = link_.counters().bytesOut;
    all.totalErrors += link_.counters().errors;
    return all;
}

void Terminal::clearCounters()
{
    counters_ = {};
    link_.clearCounters();
    refreshCounters();
    changed();
}

void Terminal::showStatistics() { around_.prompts.message(counters().statistics(), "Piolum Stats"); }

void Terminal::showStatus(const std::string& text)
{
    panel_.statusBox = text;
    changed();
}

void Terminal::refreshCounters() { panel_.labelStats = counters().line(); }

void Terminal::setStatus(std::string_view words)
{
    link_.setStatus(words);
    panel_.statusBox = link_.status();
}

void Terminal::updateControls()
{
    panel_.openCom.caption = (isOpen() ? "Close OBD (" : "Open OBD (") + portName_ + ")";
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
