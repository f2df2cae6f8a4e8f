#include "codes/codesExchange.h"

#include "codes/troubleCodes.h"
#include "dtcdb/dtcDatabase.h"
#include "shared/module1.h"

#include <memory>

namespace zint {
namespace {

constexpr const char* clearQuestion = "Clearing the OBD will erase all diagnostic data and \r\n"
                                      "   may cause the vehicle to run poorly for a short \r\n"
                                      "   time while the system recalibrates. \r\n\r\n"
                                      " To clear the OBD, press OK";

constexpr std::string_view statusReplyStart = "41 01 ";
constexpr int milOn = 128; // the bit of byte A above the number of codes

} // namespace

CodesExchange::CodesExchange(SerialPort& port, Timer& timer, const ConnectionChoice& choice,
                             const CodeDescriptionSource& descriptions, Prompts& prompts,
                             ProgramValues& values)
    : link_(port, timer, choice, *this), descriptions_(descriptions),
      databaseAvailable_(descriptions.available()), prompts_(prompts), values_(values)
{
    panel_.statusBox = link_.status();
    if (!databaseAvailable_)
        panel_.noDescriptions = "There are no code descriptions yet: File, Set Up Code Descriptions in the "
                                "launcher brings them.";
}

void CodesExchange::pressGetCodes()
{
    if (link_.isOpen()) {
        end();
        panel_.getCodes.caption = "Get Codes";
    } else {
        panel_.codesOutput.clear();
        clearRequested_ = false;
        if (begin())
            panel_.getCodes.caption = "Cancel";
    }
    changed();
}

void CodesExchange::pressClearCodes()
{
    if (link_.isOpen()) {
        end();
        panel_.clearCodes.caption = "Clear Codes";
        clearRequested_ = false;
    } else if (prompts_.confirm(clearQuestion, "Verify OBD Reset")) {
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

bool CodesExchange::begin()
{
    state_ = State::opening;
    finished_ = false;
    succeeded_ = false;
    errorsBefore_ = link_.counters().errors;
    return link_.open();
}

void CodesExchange::end()
{
    succeeded_ = finished_ && link_.counters().errors == errorsBefore_;
    link_.close();
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
    link_.setStatus(" Reading Data");
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
    prompts_.message(std::string(AdapterLink::notRespondingText) + ". See fails-to-respond under Help.");
    values_.lastFailureText = AdapterLink::timeoutText;
    if (link_.isOpen())
        pressStartingButton();
    changed();
}

void CodesExchange::linkEvent(int event)
{
    if (event != commEvent::unknown)
        return; // line errors and modem lines say nothing that a reply does not show
    link_.reportEvent(event);
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
        prompts_.message("Please try again, ignition must be ON.  "
                         "If ignition is ON, see fails-to-connect under Help.");
        values_.lastFailureText = reply;
        finished_ = true;
        link_.countError();
        return;
    }
    const int byteA = readStatusByte(reply);
    const bool lit = byteA >= milOn;
    panel_.stateMIL = std::string("Service Engine Soon Light is \r\n") + (lit ? "ON" : "OFF");
    codeCount_ = lit ? byteA - milOn : byteA;
    act();
    panel_.readiness = readinessReport(reply);
}

int CodesExchange::readStatusByte(std::string_view reply)
{
    constexpr std::size_t position = 7;
    const int byteA = hexToNumber(textAt(reply, position, 2));
    if (byteA >= 0)
        return byteA;
    prompts_.message("Garbled MIL response (" + std::string(textAt(reply, position, 1)) + "), try again");
    finished_ = true;
    link_.countError();
    return 0;
}

void CodesExchange::act()
{
    panel_.diagCodeFrame = CodesPanel::codesFrameCaption;
    if (codeCount_ < 1) {
        panel_.codesOutput = "No codes reported";
        panel_.clearCodes.enabled = false;
        finished_ = true;
        return;
    }
    panel_.diagCodeFrame += ": " + std::to_string(codeCount_) + " code(s) reported";
    if (clearRequested_) {
        link_.send("04");
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
    std::vector<std::string> lines = storedCodes(reply);
    if (databaseAvailable_)
        addDescriptions(lines);
    panel_.codesOutput.clear();
    for (const std::string& line : lines)
        panel_.codesOutput += line + "\r\n";
}

void CodesExchange::addDescriptions(std::vector<std::string>& codes)
{
    try {
        const auto descriptions = descriptions_.open();
        for (std::string& line : codes) {
            if (const auto description = descriptions->describe(line))
                line += " " + *description;
        }
    } catch (const DatabaseError& error) { // the codes themselves are worth showing all the same
        prompts_.message(error.what());
    }
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
    panel_.labelStats = link_.counterLine();
    if (onChanged)
        onChanged();
}

} // namespace zint
