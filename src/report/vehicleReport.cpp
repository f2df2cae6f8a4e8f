#include "report/vehicleReport.h"

#include "report/reportComparison.h"
#include "report/reportHeadline.h"
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
            "until the monitors have run again, which takes days of driving. Permanent codes stay.\r\n\r\n"
            "The engine must be off, and the ignition on.\r\n\r\nClear them?",
            "Clear Codes"))
        return;
    before_ = facts();
    begin({.isQuick = before_.isQuick, .clearsFirst = true});
    changed();
}

void VehicleReport::unload()
{
    if (isRunning())
        end("The report was stopped.");
}

void VehicleReport::begin(ReportPlan::Scope scope)
{
    plan_.emplace(scope);
    isClearing_ = scope.clearsFirst;
    clearedLines_.clear();
    plan_->facts().time = around_.clock.wall();
    failure_.clear();
    panel_.headline.clear();
    panel_.ProgressBar1 = {};
    if (link_.open(AdapterLink::Guard::reset, AdapterLink::Opening::gentle)) {
        panel_.readReport.caption = "Stop";
        panel_.clearCodes.enabled = false;
    } else {
        failure_ = link_.lastFailure();
    }
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
    if (isClearing_)
        tellCleared();
    if (why.empty())
        panel_.ProgressBar1.value = 100;
    changed();
    if (around_.keep && !facts().units.empty())
        around_.keep(facts()); // which may fail; all else is done
}

/// What each unit says of the clearing, and what has changed.
void VehicleReport::tellCleared()
{
    const auto refusals = facts().refusals.find("04");
    for (const auto& [name, unit] : facts().units) {
        const bool isRefused = refusals != facts().refusals.end() && refusals->second.contains(name);
        const std::string answer = unit.cleared ? "has cleared its codes"
                                   : isRefused
                                       ? "has refused to clear: " + refusalText(refusals->second.at(name))
                                       : "has not answered to the clearing";
        clearedLines_.push_back(unitText(name, unit) + " " + answer);
    }
    for (std::string& line : comparisonLines(compare(before_, facts())))
        clearedLines_.push_back(std::move(line));
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
