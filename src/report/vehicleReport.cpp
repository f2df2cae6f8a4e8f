#include "report/vehicleReport.h"

#include "report/reportComparison.h"
#include "report/reportHeadline.h"
#include "shared/fileError.h"
#include "vehicle/refusalText.h"

#include <utility>

namespace zint {

VehicleReport::VehicleReport(Surroundings surroundings)
    : around_(std::move(surroundings)), link_(around_.line, *this)
{
}

const VehicleFacts& VehicleReport::facts() const
{
    static const VehicleFacts nothing;
    return plan_ ? plan_->facts() : nothing;
}

void VehicleReport::pressReadReport(bool isQuick)
{
    if (isRunning())
        end("The report was stopped; what was read so far is shown.");
    else
        begin({.isQuick = isQuick});
    changed();
}

void VehicleReport::pressClearCodes()
{
    if (isRunning() || facts().units.empty() ||
        !around_.prompts.confirm(
            "All control units will forget their codes, with the freeze frame, the test results, the "
            "readiness of the monitors and what they have learned of this vehicle. An emissions test fails "
            "until the monitors have run again, which takes days of driving. Permanent codes stay.\r\n\r\n" +
                keepFirst() + "\r\n\r\nThe engine must be off, and the ignition on.\r\n\r\nClear them?",
            "Clear Codes"))
        return;
    before_ = facts();
    begin({.isQuick = before_.isQuick, .clearsFirst = true});
    changed();
}

/// Keeps what was read unless it is kept. @return what the user is told of that
std::string VehicleReport::keepFirst()
{
    std::string why = "keeping reports is switched off.";
    try {
        isKept_ = isKept_ || (around_.keep && around_.keep(facts()));
    } catch (const FileError& error) {
        why = error.what();
    }
    return isKept_ ? "A copy of the report that you see is kept."
                   : "NO COPY of the report that you see is kept: " + why;
}

void VehicleReport::unload()
{
    if (isRunning())
        end("The report was stopped.");
}

void VehicleReport::begin(ReportPlan::Scope scope)
{
    if (!link_.open(AdapterLink::Guard::reset, AdapterLink::Opening::gentle)) {
        tellNotBegun(scope);
        return;
    }
    plan_.emplace(scope);
    plan_->facts().time = around_.clock.wall();
    isKept_ = false;
    clearedLines_.clear();
    failure_.clear();
    panel_.headline.clear();
    panel_.ProgressBar1 = {};
    panel_.readReport.caption = "Stop";
    panel_.clearCodes.enabled = false;
}

/// The former report and why that one is not whole stay; so a new failure is told beside them.
void VehicleReport::tellNotBegun(const ReportPlan::Scope& scope)
{
    if (facts().units.empty())
        failure_ = link_.lastFailure();
    else
        around_.prompts.message(
            (scope.clearsFirst ? "Nothing was cleared.\r\n\r\n" : "Nothing was read anew.\r\n\r\n") +
            link_.lastFailure());
}

void VehicleReport::linkReset() { plan_->takeName(link_.openingAnswer()); }

void VehicleReport::linkReady() { sendNext(); }

void VehicleReport::linkReply(std::string_view reply)
{
    plan_->take(link_.announcement() + std::string(reply));
    if (onReply)
        onReply();
    sendNext();
}

void VehicleReport::sendNext()
{
    const auto command = plan_->next();
    if (!command) {
        end(plan_->failure());
        return;
    }
    link_.setStatus(plan_->topic());
    panel_.ProgressBar1.value = plan_->progress();
    link_.send(*command);
}

/// @param why it is not whole; empty when it is
void VehicleReport::end(const std::string& why)
{
    failure_ = why;
    ++reportCount_;
    link_.close();
    panel_.readReport.caption = "Read Report";
    panel_.clearCodes.enabled = !facts().units.empty();
    panel_.headline = headlineOf(facts());
    tellCleared();
    if (why.empty())
        panel_.ProgressBar1.value = 100;
    changed();
    if (around_.keep && !facts().units.empty())
        isKept_ = around_.keep(facts()); // which may fail; all else is done
}

/// What has come of the clearing, and what has changed by it.
void VehicleReport::tellCleared()
{
    switch (plan_->clearing()) {
    case ReportPlan::Clearing::notAsked:
        return;
    case ReportPlan::Clearing::notSent:
        clearedLines_.emplace_back("Nothing was cleared: the request to clear was not sent");
        return;
    case ReportPlan::Clearing::unknown:
        clearedLines_.emplace_back(
            "It is not known whether the codes are cleared: the request was sent, no whole answer has come");
        break;
    case ReportPlan::Clearing::answered:
        tellAnswers();
    }
    if (!facts().isWhole)
        return; // what was not read has not changed
    for (std::string& line : comparisonLines(compare(before_, facts())))
        clearedLines_.push_back(std::move(line));
}

/// What each unit says of the clearing.
void VehicleReport::tellAnswers()
{
    const auto refusals = facts().refusals.find("04");
    const auto shortfalls = facts().shortfalls.find("04");
    for (const auto& [name, unit] : facts().units) {
        std::string answer = " has not answered to the clearing";
        if (unit.cleared)
            answer = " has cleared its codes";
        else if (refusals != facts().refusals.end() && refusals->second.contains(name))
            answer = " has refused to clear: " + refusalText(refusals->second.at(name));
        else if (shortfalls != facts().shortfalls.end() && shortfalls->second.contains(name))
            answer = " has begun to answer, but has not told whether it has cleared its codes";
        clearedLines_.push_back(unitText(name, unit) + answer);
    }
}

void VehicleReport::linkReceived() { changed(); }

void VehicleReport::linkNotice(std::string_view text)
{
    link_.appendStatus(text);
    changed();
}

void VehicleReport::linkTimedOut()
{
    around_.prompts.tellOfSilence(std::string(AdapterLink::notRespondingText), link_.timeoutReason());
    if (isRunning())
        end(link_.lastFailure());
    changed();
}

void VehicleReport::linkLost()
{
    end(link_.lastFailure());
    changed();
}

void VehicleReport::changed()
{
    panel_.statusBox = link_.status();
    panel_.labelStats = link_.counterLine();
    if (onChanged)
        onChanged();
}

} // namespace zint
