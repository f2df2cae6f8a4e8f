// What the poller does with runs out of files.

#include "runner/poller.h"
#include "runner/runDisplay.h"

#include <utility>

namespace zint {

/// Why no other run may take the place of the present one; empty when one may.
std::string Poller::reasonToStay() const
{
    if (isPolling())
        return "Stop polling before another run is opened.";
    if (files_.wouldLose(samples_))
        return "The present run is not saved and can't be kept. Save it before another one is opened.";
    return {};
}

bool Poller::mayOpen()
{
    const std::string reason = reasonToStay();
    if (!reason.empty())
        around_.prompts.message(reason, {}, isPolling() ? "" : around_.kept.failure());
    return reason.empty();
}

void Poller::openLog(const std::string& path)
{
    if (!mayOpen())
        return;
    if (auto opened = files_.open(path))
        show(std::move(*opened), "opened");
}

void Poller::showRecovered(OpenedRun recovered)
{
    if (reasonToStay().empty())
        show(std::move(recovered), "saved and opened");
}

/// @param done for the status
void Poller::show(OpenedRun opened, std::string_view done)
{
    panel_.statusBox = opened.file + " " + std::string(done) + "." + files_.leave(run());
    files_.enter(opened.file);
    samples_.take(std::exchange(opened.log.samples, {}));
    opened_ = std::move(opened);
    showDesign();
    showOpened(panel_, design(), samples_, firstStartText());
    changed();
}

/// Begins the panel anew for the design.
void Poller::showDesign()
{
    panel_.titleLab = summaryOf(design()) + (opened_ ? ", from " + opened_->file : "");
    panel_.obdGrid.clear();
    for (const DesignEntry& event : design().events)
        panel_.obdGrid.push_back({.description = event.description});
    if (onDesignChanged)
        onDesignChanged();
}

} // namespace zint
