#include "codes/codesExchange.h"

#include "codes/codesReport.h"
#include "codes/replyText.h"
#include "codes/troubleCodes.h"
#include "dtcdb/dtcDatabase.h"
#include "link/replyBuffer.h"
#include "shared/module1.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <memory>

namespace zint {
namespace {

constexpr const char* moreText =
    "The Vehicle Report in the main menu reads the codes of all control units.\r\n";

constexpr const char* clearQuestion = "Clearing the OBD will erase all diagnostic data and \r\n"
                                      "   may cause the vehicle to run poorly for a short \r\n"
                                      "   time while the system recalibrates. \r\n\r\n"
                                      " To clear the OBD, press OK";

constexpr std::string_view statusReplyStart = "41 01 ";

/// What could not be used, in one line; empty when nothing came.
std::string answerText(const std::string& announcement, std::string_view reply)
{
    std::vector<std::string_view> lines = replyLines(reply);
    if (!announcement.empty())
        lines.insert(lines.begin(), announcement);
    std::string text;
    for (const std::string_view line : lines)
        text += (text.empty() ? "The adapter answered: " : " / ") + std::string(line);
    return text;
}

std::string inLines(const std::vector<std::string>& lines)
{
    std::string text;
    for (const std::string& line : lines)
        text += line + "\r\n";
    return text;
}

} // namespace

CodesExchange::CodesExchange(Surroundings surroundings)
    : around_(std::move(surroundings)), link_(around_.line, *this),
      databaseAvailable_(around_.descriptions.available())
{
    panel_.statusBox = link_.status();
    if (!databaseAvailable_)
        panel_.noDescriptions = "There are no code descriptions yet: File, Set Up Code Descriptions in the "
                                "launcher brings them.";
}

void CodesExchange::pressGetCodes()
{
    if (link_.isOpen()) {
        link_.close();
        panel_.getCodes.caption = "Get Codes";
    } else {
        reading_ = {};
        showListing();
        clearRequested_ = false;
        if (begin())
            panel_.getCodes.caption = "Cancel";
    }
    changed();
}

void CodesExchange::pressClearCodes()
{
    if (link_.isOpen()) {
        link_.close();
        panel_.clearCodes.caption = "Clear Codes";
        clearRequested_ = false;
    } else if (around_.prompts.confirm(clearQuestion, "Verify OBD Reset")) {
        clearRequested_ = true;
        if (begin())
            panel_.clearCodes.caption = "Cancel";
    }
    changed();
}

void CodesExchange::unload()
{
    link_.close();
    changed();
}

void CodesExchange::showStatistics() const
{
    const char* const last = succeeded()   ? "complete"
                             : isRunning() ? "is on"
                             : failed_     ? "failed"
                                           : "none so far";
    around_.prompts.message(link_.counterLine() + "\r\n\r\nReading: " + last, "Piolum Stats");
}

void CodesExchange::showStatus(const std::string& text)
{
    panel_.statusBox = text;
    if (onChanged)
        onChanged();
}

bool CodesExchange::begin()
{
    state_ = State::opening;
    finished_ = false;
    failed_ = false;
    hasSentClear_ = false;
    return link_.open();
}

void CodesExchange::pressStartingButton()
{
    if (clearRequested_)
        pressClearCodes();
    else
        pressGetCodes();
}

void CodesExchange::linkReady()
{
    link_.setStatus("Reading Data");
    link_.send("0101");
    state_ = State::statusRequested;
}

void CodesExchange::linkReply(std::string_view reply)
{
    switch (state_) {
    case State::opening:
        break;
    case State::statusRequested:
        evaluateStatus(reply);
        break;
    case State::codesRequested:
        listCodes(reply);
        finished_ = true;
        break;
    case State::clearRequested:
        finishClearing();
        break;
    }
}

void CodesExchange::linkReceived()
{
    if (finished_ && link_.isOpen())
        pressStartingButton();
    changed();
}

void CodesExchange::linkTimedOut()
{
    around_.prompts.tellOfSilence(std::string(AdapterLink::notRespondingText) +
                                      ". See fails-to-respond under Help.",
                                  link_.timeoutReason());
    around_.values.lastFailureText = AdapterLink::timeoutText;
    if (link_.isOpen())
        pressStartingButton();
    changed();
}

void CodesExchange::linkNotice(std::string_view text)
{
    link_.appendStatus(text);
    changed();
}

void CodesExchange::linkLost()
{
    if (clearRequested_)
        panel_.clearCodes.caption = "Clear Codes";
    else
        panel_.getCodes.caption = "Get Codes";
    clearRequested_ = false;
    changed();
}

void CodesExchange::evaluateStatus(std::string_view reply)
{
    if (!reply.starts_with(statusReplyStart)) {
        around_.prompts.message("Please try again, ignition must be ON.  "
                                "If ignition is ON, see fails-to-connect under Help.",
                                {}, answerText(link_.announcement(), reply));
        around_.values.lastFailureText = reply;
        fail();
        return;
    }
    const int byteA = readStatusByte(reply);
    statusReply_ = reply;
    reading_.time = around_.clock.wall();
    reading_.isLit = byteA >= milOn;
    reading_.reportedCodes = byteA % milOn;
    reading_.readiness = readinessReport(reply);
    panel_.stateMIL = lightText(reading_.isLit, "\r\n");
    panel_.diagCodeFrame = codesCaption(reading_.reportedCodes);
    panel_.readiness = reading_.readiness;
    act();
}

void CodesExchange::fail()
{
    finished_ = true;
    failed_ = true;
    link_.countError();
}

int CodesExchange::readStatusByte(std::string_view reply)
{
    constexpr std::size_t position = 7;
    const int byteA = hexToNumber(textAt(reply, position, 2));
    if (byteA >= 0)
        return byteA;
    around_.prompts.message("Garbled MIL response (" + std::string(textAt(reply, position, 1)) +
                            "), try again");
    fail();
    return 0;
}

void CodesExchange::act()
{
    if (reading_.reportedCodes < 1) {
        reading_.listing = {};
        reading_.canWarning = {};
        reading_.notes = otherUnitNotes(statusReply_);
        showListing();
        panel_.codesOutput = noCodesText;
        panel_.clearCodes.enabled = false;
        finished_ = true;
    } else if (clearRequested_) {
        link_.send("04");
        hasSentClear_ = true;
        link_.appendStatus(" RESET");
        state_ = State::clearRequested;
    } else {
        link_.send("03");
        panel_.clearCodes.enabled = true;
        state_ = State::codesRequested;
    }
}

void CodesExchange::listCodes(std::string_view reply)
{
    reading_.listing = storedCodes(reply);
    reading_.notes = otherUnitNotes(statusReply_);
    auto units = canCodes(reply, statusReply_);
    std::vector<std::string*> codes;
    for (std::string& line : reading_.listing)
        codes.push_back(&line);
    if (units) {
        for (CanUnit& unit : *units)
            std::ranges::transform(unit.codes, std::back_inserter(codes), [](auto& code) { return &code; });
    }
    if (databaseAvailable_)
        addDescriptions(codes);
    reading_.canWarning = units ? canWarning(*units) : std::vector<std::string>();
    if (!units)
        noteUnlisted(reading_.notes,
                     std::max(reading_.reportedCodes, storedCodeCount(reply)) - listedCodeCount(reply));
    showListing();
}

void CodesExchange::addDescriptions(const std::vector<std::string*>& codes)
{
    try {
        const auto descriptions = around_.descriptions.open();
        for (std::string* line : codes) {
            if (const auto description = descriptions->describe(*line))
                *line += " " + *description;
        }
    } catch (const DatabaseError& error) { // the codes themselves are worth showing all the same
        around_.prompts.message(error.what());
    }
}

void CodesExchange::showListing()
{
    panel_.canWarning = inLines(reading_.canWarning);
    panel_.codesOutput = inLines(reading_.listing);
    panel_.notes = inLines(reading_.notes);
    if (!reading_.canWarning.empty() || !reading_.notes.empty())
        panel_.notes += moreText;
}

void CodesExchange::finishClearing()
{
    panel_.clearCodes.enabled = false;
    panel_.clearCodes.caption = "Clear Codes";
    clearRequested_ = false;
    link_.send("0101");
    state_ = State::statusRequested;
}

void CodesExchange::changed()
{
    panel_.statusBox = link_.status();
    panel_.canSaveReport = succeeded();
    panel_.labelStats = link_.counterLine();
    if (onChanged)
        onChanged();
}

} // namespace zint
