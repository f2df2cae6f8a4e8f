#include "scanner/scanner.h"

#include "shared/module1.h"
#include "shared/textFile.h"
#include "shared/utf8.h"

#include <algorithm>
#include <array>
#include <utility>

namespace zint {
namespace {

const std::string newLine(lineEnd);

constexpr const char* settingsSection = "Scanner";

struct BoxRule {
    Scanner::Box box;
    CheckedBox (*check)(std::string_view);
    const char* key; ///< of what its user left in it last; null for a box that always begins the same
};

constexpr std::array<BoxRule, 6> boxRules{{
    {&ScanParameters::cmdHead, checkHeader, nullptr},
    {&ScanParameters::modeStart, checkMode, "modeStart"},
    {&ScanParameters::modeStop, checkMode, "modeStop"},
    {&ScanParameters::pidStart, checkPid, "pidStart"},
    {&ScanParameters::pidStop, checkPid, "pidStop"},
    {&ScanParameters::cmdSuffix, checkSuffix, "cmdSuffix"},
}};

constexpr std::array<std::pair<bool Scanner::Display::*, const char*>, 3> formatKeys{{
    {&Scanner::Display::dspDecimal, "dspDecimal"},
    {&Scanner::Display::dspAscii, "dspAscii"},
    {&Scanner::Display::dspNames, "dspNames"},
}};

/// By filter.
constexpr std::array<const char*, 4> filterKeys{"displayAll", "displayValid", "displayNonz", "displayData"};

CheckedBox checked(Scanner::Box box, const std::string& text)
{
    return std::ranges::find(boxRules, box, &BoxRule::box)->check(text);
}

} // namespace

Scanner::Scanner(Surroundings surroundings) : around_(std::move(surroundings)), link_(around_.line, *this)
{
    clearOutput();
}

void Scanner::unload()
{
    if (isScanning())
        end();
}

void Scanner::restore(const SettingsStore& settings)
{
    for (const BoxRule& rule : boxRules) {
        if (rule.key == nullptr)
            continue;
        const std::string text = settings.get(settingsSection, rule.key, boxes_.*rule.box);
        if (const CheckedBox now = rule.check(text); now.text.size() == text.size()) // also an empty one
            type(rule.box, now.text);
    }
    for (const auto& [format, key] : formatKeys)
        display_.*format = settings.get(settingsSection, key) == "1";
    const std::string filter = settings.get(settingsSection, "filter");
    if (const auto* const found = std::ranges::find(filterKeys, filter); found != filterKeys.end())
        display_.filter = static_cast<ScanFilter>(found - filterKeys.begin());
}

void Scanner::remember(SettingsStore& settings) const
{
    for (const BoxRule& rule : boxRules) {
        if (rule.key != nullptr)
            settings.save(settingsSection, rule.key, boxes_.*rule.box);
    }
    for (const auto& [format, key] : formatKeys)
        settings.save(settingsSection, key, display_.*format ? "1" : "0");
    settings.save(settingsSection, "filter", filterKeys.at(static_cast<std::size_t>(display_.filter)));
}

void Scanner::type(Box box, const std::string& text)
{
    boxes_.*box = text;
    panel_.warning = erasesData(boxes_) ? erasesDataText : "";
    changed();
}

void Scanner::leave(Box box, bool towardsScan)
{
    const CheckedBox now = checked(box, boxes_.*box);
    const bool isReplaced = !now.complaint.empty() && now.text != boxes_.*box;
    isRefused_ = towardsScan && isReplaced;
    if (!now.complaint.empty()) {
        around_.beep();
        panel_.statusBox = now.complaint;
    }
    type(box, now.text);
}

void Scanner::pressScan()
{
    const bool mayBegin = !std::exchange(isRefused_, false);
    if (isScanning())
        end();
    else if (mayBegin && mayErase())
        begin();
    changed();
}

/// Whether the scan erases nothing, or its user wants that.
bool Scanner::mayErase()
{
    return panel_.warning.empty() ||
           around_.prompts.confirm(panel_.warning + newLine + newLine + "Begin it all the same?",
                                   "Begin Scan");
}

void Scanner::begin()
{
    const bool isOpen = link_.open();
    panel_.labelStats = link_.counterLine();
    failure_.clear();
    panel_.ProgressBar1 = {};
    counts_ = {};
    if (!isOpen) {
        fail(link_.status());
        return;
    }
    enter(State::opening);
    setStatus("Opening...");
    sequence_ = ScanSequence(boxes_);
    write("Header: " + boxes_.cmdHead + " Mode:" + boxes_.modeStart + "-" + boxes_.modeStop +
          " Pid:" + boxes_.pidStart + "-" + boxes_.pidStop + " Suffix:" + boxes_.cmdSuffix + newLine);
}

/// Another header could let a scan erase that began without a question.
void Scanner::enter(State state)
{
    state_ = state;
    panel_.comScan.caption = isScanning() ? "Stop Scan" : "Begin Scan";
    panel_.mnuOpenCom = panel_.canChangeHeader = !isScanning();
    panel_.mnuCloseCom = isScanning();
}

void Scanner::fail(const std::string& why) { failure_ = panel_.statusBox = why; }

/// Ends a scan, complete or not, and sums it up.
void Scanner::end()
{
    const bool isHalted = state_ != State::done;
    enter(State::idle);
    panel_.ProgressBar1.text.clear();
    link_.close();
    panel_.labelStats = link_.counterLine();
    setStatus((isHalted ? "Scan Halted after " : "Scan Completed ") + std::to_string(counts_.events) +
              " Events(s)");
    write((isHalted ? "Scan Halted" : "Scan Completed") + newLine + countsText() + newLine + newLine +
          newLine);
}

std::string Scanner::countsText() const
{
    return "  Events(s):" + std::to_string(counts_.events) + newLine +  //
           "    No Data:" + std::to_string(counts_.noData) + newLine +  //
           "    Invalid:" + std::to_string(counts_.invalid) + newLine + //
           "       Zero:" + std::to_string(counts_.zero);
}

void Scanner::showStatistics()
{
    around_.prompts.message(link_.counters().text() + newLine + newLine + countsText(), "Piolum Stats");
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
    enter(State::headerSent);
    link_.send("ATSH" + boxes_.cmdHead);
    setStatus("Changing Header");
}

void Scanner::linkReply(std::string_view reply)
{
    replied();
    if (state_ == State::headerSent)
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
    setStatus("Error on set header");
    fail(link_.status()); // the summary takes its place in the panel
    around_.beep();
    write("Error setting header" + newLine);
    enter(State::done);
}

void Scanner::beginRequests()
{
    setStatus("Scanning");
    requestsBegin_ = around_.clock.monotonic();
    sendNext();
    tellOfNext();
}

void Scanner::takeReply(std::string_view reply)
{
    using Kind = ScanReply::Kind;
    const ScanRequest answered = lastRequest_;
    sendNext(); // the adapter works while the reply is looked at
    ScanReply found = classify(reply, answered.expectedPrefix);
    if (found.kind == ScanReply::Kind::invalid && found.data.empty())
        found.data = link_.announcement(); // all that was said, such as "BUS INIT: ...ERROR"
    counts_.noData += found.kind == Kind::noData ? 1 : 0;
    counts_.invalid += found.kind == Kind::invalid ? 1 : 0;
    counts_.zero += found.kind == Kind::valid && found.value == 0 ? 1 : 0;
    if (isListed(found, display_.filter))
        write(lineOf(answered, found));
    ++counts_.events;
    panel_.statusBox = "Scanning " + answered.text + "    " + std::to_string(counts_.events) + " Event(s)";
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
        if (display_.dspNames && !request.name.empty())
            line += " " + std::string(request.name);
    }
    return line + newLine;
}

void Scanner::sendNext()
{
    auto request = sequence_.next(boxes_);
    enter(request ? State::requesting : State::done);
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
    const std::int64_t left = state_ == State::requesting ? 1 + sequence_.left(boxes_) : 0;
    const std::int64_t done = counts_.events;
    const std::int64_t all = done + left;
    panel_.ProgressBar1.value = all == 0 ? 100 : 100.0 * static_cast<double>(done) / static_cast<double>(all);
    std::string& text = panel_.ProgressBar1.text;
    text = std::to_string(done) + " of " + std::to_string(all);
    const auto spent =
        std::chrono::duration_cast<std::chrono::seconds>(around_.clock.monotonic() - requestsBegin_);
    if (spent.count() > 0 && done > 0)
        text += ", " + timeLeftText(spent.count() * left / done);
}

void Scanner::linkReceived()
{
    panel_.labelStats = link_.counterLine();
    showSilence();
    if (state_ == State::done)
        end();
    changed();
}

/// A reply would show the others if they mattered.
void Scanner::linkNotice(std::string_view text)
{
    panel_.statusBox += text;
    changed();
}

void Scanner::linkSilent()
{
    showSilence();
    changed();
}

/// Behind the scanner's own words.
void Scanner::showSilence()
{
    if (panel_.statusBox.ends_with(silenceShown_))
        panel_.statusBox.resize(panel_.statusBox.size() - silenceShown_.size());
    silenceShown_ = link_.silence();
    panel_.statusBox += silenceShown_;
}

void Scanner::linkTimedOut()
{
    fail(std::string(AdapterLink::notRespondingText));
    around_.prompts.tellOfSilence(failure_, link_.timeoutReason());
    if (isScanning())
        end();
    changed();
}

/// The summary stands in the output; the status tells why the scan ended.
void Scanner::linkLost()
{
    const std::string why = link_.status();
    end();
    fail(why);
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
