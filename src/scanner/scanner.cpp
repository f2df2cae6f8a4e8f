#include "scanner/scanner.h"

#include "shared/module1.h"
#include "shared/textFile.h"

#include <utility>

namespace zint {
namespace {

const std::string newLine(lineEnd);

CheckedBox checked(Scanner::Box box, const std::string& text)
{
    if (box == &ScanParameters::cmdHead)
        return checkHeader(text);
    if (box == &ScanParameters::modeStart || box == &ScanParameters::modeStop)
        return checkMode(text);
    return box == &ScanParameters::cmdSuffix ? checkSuffix(text) : checkPid(text);
}

} // namespace

Scanner::Scanner(Surroundings surroundings, const ConnectionChoice& choice)
    : around_(std::move(surroundings)), link_(around_.port, around_.timer, choice, *this)
{
    clearOutput();
}

void Scanner::unload()
{
    if (scanning_)
        end();
}

void Scanner::type(Box box, const std::string& text)
{
    boxes_.*box = text;
    panel_.warning = erasesData(boxes_) ? erasesDataText : "";
    changed();
}

void Scanner::leave(Box box)
{
    const CheckedBox now = checked(box, boxes_.*box);
    if (!now.complaint.empty()) {
        around_.beep();
        panel_.statusBox = now.complaint;
    }
    type(box, now.text);
}

void Scanner::pressScan()
{
    scanning_ ? end() : begin();
    changed();
}

void Scanner::begin()
{
    const bool isOpen = link_.open();
    panel_.labelStats = link_.counterLine();
    failure_.clear();
    if (!isOpen) {
        failure_ = panel_.statusBox = link_.status();
        return;
    }
    scanning_ = scanPending_ = true;
    panel_.comScan.caption = "Stop Scan";
    panel_.mnuOpenCom = false;
    panel_.mnuCloseCom = true;
    setStatus(" Opening...");
    sequence_ = ScanSequence(boxes_);
    events_ = invalid_ = noData_ = zero_ = 0;
    panel_.ProgressBar1 = {};
    write("Header: " + boxes_.cmdHead + " Mode:" + boxes_.modeStart + "-" + boxes_.modeStop +
          " Pid:" + boxes_.pidStart + "-" + boxes_.pidStop + " Suffix:" + boxes_.cmdSuffix + newLine);
}

/// Ends a scan, complete or not, and sums it up.
void Scanner::end()
{
    scanning_ = false;
    panel_.comScan.caption = "Begin Scan";
    panel_.mnuOpenCom = true;
    panel_.mnuCloseCom = false;
    panel_.ProgressBar1.text.clear();
    link_.close();
    panel_.labelStats = link_.counterLine();
    setStatus((scanPending_ ? " Scan Halted after " : " Scan Completed ") + std::to_string(events_) +
              " Events(s)");
    write((scanPending_ ? "Scan Halted" : "Scan Completed") + newLine + //
          "  Events(s):" + std::to_string(events_) + newLine +          //
          "    No Data:" + std::to_string(noData_) + newLine +          //
          "    Invalid:" + std::to_string(invalid_) + newLine +         //
          "       Zero:" + std::to_string(zero_) + newLine + newLine + newLine);
}

void Scanner::linkReset()
{
    panel_.statusBox = link_.status();
    replied();
}

void Scanner::linkReady()
{
    replied();
    if (boxes_.cmdHead == ScanParameters::functionalHeader) {
        beginRequests();
        return;
    }
    scanState_ = State::headerSent;
    lastRequest_.text = "ATSH" + boxes_.cmdHead;
    link_.send(lastRequest_.text);
    setStatus(" Changing Header");
}

void Scanner::linkReply(std::string_view reply)
{
    replied();
    if (scanState_ == State::headerSent)
        takeHeaderReply(reply);
    else
        takeReply(reply);
}

void Scanner::takeHeaderReply(std::string_view reply)
{
    if (reply.find('?') == std::string_view::npos) {
        beginRequests();
        return;
    }
    setStatus(" Error on set header");
    failure_ = link_.status(); // the summary takes its place in the panel
    around_.beep();
    write("Error setting header" + newLine);
    scanPending_ = false;
}

void Scanner::beginRequests()
{
    scanState_ = State::scanning;
    setStatus(" Scanning");
    requestsBegin_ = around_.clock.monotonic();
    sendNext();
    tellOfNext();
}

void Scanner::takeReply(std::string_view reply)
{
    using Kind = ScanReply::Kind;
    const ScanRequest answered = lastRequest_;
    sendNext(); // the adapter works while the reply is looked at
    const ScanReply found = classify(reply, answered.expectedPrefix);
    noData_ += found.kind == Kind::noData ? 1 : 0;
    invalid_ += found.kind == Kind::invalid ? 1 : 0;
    zero_ += found.kind == Kind::valid && found.value == 0 ? 1 : 0;
    if (isListed(found, display_.filter))
        write(lineOf(answered, found));
    ++events_;
    panel_.statusBox = "Scanning " + answered.text + "    " + std::to_string(events_) + " Event(s)";
    tellOfNext();
}

std::string Scanner::lineOf(const ScanRequest& request, const ScanReply& reply) const
{
    std::string line{static_cast<char>(reply.kind), ' '};
    line += request.text + " " + toUtf8(reply.data);
    if (reply.kind == ScanReply::Kind::valid) {
        if (display_.dspAscii)
            line += "   [" + reply.ascii + "]";
        if (display_.dspDecimal)
            line += " " + decimalText(reply.value);
    }
    return line + newLine;
}

void Scanner::sendNext()
{
    auto request = sequence_.next(boxes_);
    scanPending_ = request.has_value();
    if (request) {
        lastRequest_ = std::move(*request);
        link_.send(lastRequest_.text);
    }
}

/// Shows that the next request has been sent, or that there is none.
void Scanner::tellOfNext()
{
    if (sequence_.hasSkipped())
        write("Skipping mode 4 functional scans...");
    const std::int64_t left = scanPending_ ? 1 + sequence_.left(boxes_) : 0;
    const std::int64_t all = events_ + left;
    panel_.ProgressBar1.value =
        all == 0 ? 100 : 100.0 * static_cast<double>(events_) / static_cast<double>(all);
    std::string& text = panel_.ProgressBar1.text;
    text = std::to_string(events_) + " of " + std::to_string(all);
    const auto spent =
        std::chrono::duration_cast<std::chrono::seconds>(around_.clock.monotonic() - requestsBegin_);
    if (spent.count() > 0 && events_ > 0)
        text += ", " + timeLeftText(spent.count() * left / events_);
}

void Scanner::linkReceived()
{
    panel_.labelStats = link_.counterLine();
    if (scanning_ && !scanPending_)
        end();
    changed();
}

/// A reply would show the others if they mattered.
void Scanner::linkEvent(int event)
{
    if (event != commEvent::unknown)
        return;
    link_.countError();
    panel_.statusBox += AdapterLink::eventText(event);
    changed();
}

void Scanner::linkTimedOut()
{
    failure_ = AdapterLink::notRespondingText;
    around_.prompts.message(failure_);
    if (scanning_)
        end();
    changed();
}

/// The summary stands in the output; the status tells why the scan ended.
void Scanner::linkLost()
{
    failure_ = link_.status();
    end();
    panel_.statusBox = failure_;
    changed();
}

void Scanner::clearOutput() { around_.outBox.replace(around_.dateText(around_.clock.wall()) + newLine); }

void Scanner::showStatus(const std::string& text)
{
    panel_.statusBox = text;
    changed();
}

void Scanner::setStatus(std::string_view words)
{
    link_.setStatus(words);
    panel_.statusBox = link_.status();
}

void Scanner::replied() const
{
    if (onReply)
        onReply();
}

void Scanner::changed() const
{
    if (onChanged)
        onChanged();
}

} // namespace zint
