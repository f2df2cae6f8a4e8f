#pragma once

#include "catalogue/design.h"
#include "link/adapterLink.h"
#include "runner/keptRuns.h"
#include "runner/pollPanel.h"
#include "runner/reconnection.h"
#include "runner/runFiles.h"
#include "runner/runPace.h"
#include "runner/runState.h"
#include "samples/sampleStore.h"
#include "shared/clock.h"
#include "shared/programValues.h"
#include "shared/prompts.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zint {

/// The poll runner's work: sends a design's requests loop after loop, keeps what comes back, and writes it to
/// files.
///
/// The panel is refreshed every so many seconds, as the user sets it, and at the end: a repaint for each
/// reply would slow the polling down.
class Poller final : private AdapterLink::Listener {
public:
    /// What the poller asks of its surroundings; all of it outlives the poller.
    struct Surroundings {
        AdapterLine line;
        Timer& ticker; ///< ticks while a run is on: hands samples to the system, shows progress
        const Clock& clock;
        Prompts& prompts;
        ProgramValues& values;
        KeptRuns& kept;
        DateText dateText;
        std::size_t mostRecords = SampleStore::mostRecords; ///< that the store has room for
        /// See RunFiles.
        std::function<void(Design& design, const std::string& path)> define = [](Design&,
                                                                                 const std::string&) {};
        /// What the port stands for now.
        std::function<std::string()> device = [] { return std::string(); };
    };

    /// @param design outlives the poller and stays as it is
    Poller(Surroundings surroundings, const Design& design);

    void load();   ///< the window opens
    void unload(); ///< the window goes away: closes the port; an unsaved run stays kept

    void pressStart(); ///< starts polling, or stops it
    /// The texts of three boxes: what is typed counts at the next reset, and at the next start.
    void setMaxLoops(const std::string& text);
    void setTimeLimit(const std::string& text) { panel_.timeLimit = text; }
    void setRefresh(const std::string& text) { panel_.scnUpdate = text; }
    std::int64_t refreshSeconds() const; ///< as typed, or what stands for it

    /// Lets runs end by time alone, up to the next reset.
    void limitByTime(std::chrono::seconds limit);

    /// Lets runs go on by themselves when the adapter has vanished and comes back, or has lost its settings.
    /// Counts at once. @param patience see Reconnection::allow()
    void letReconnect(Reconnection::Patience patience);

    /// Lets events share requests, where vehicle and adapter take that. Counts at the next start.
    void letCombine(bool isAllowed);

    /// Empties the store. A run that is on goes on; after an opened one the design to poll is shown again.
    void resetValues();
    void loadLog(); ///< says where logs are opened

    /// Whether another run may be opened; the user is told what is against it.
    bool mayOpen();

    std::string chooseLog(FileDialogs& dialogs) const { return files_.chooseLog(dialogs); }

    /// Shows a log in place of the present run, which stays kept when it is not saved. Polling waits for a
    /// reset then. The user is told what can't be opened; all stays as it was then.
    void openLog(const std::string& path);

    void useDecimals(Decimals decimals) { files_.useDecimals(decimals); } ///< in exports that are CSV files

    /// Writing is two steps, so that polling goes on while the user is asked. @return an empty path when the
    /// user cancels
    std::string chooseFile(RunFiles::Kind kind, RunFiles::Name name, FileDialogs& dialogs) const
    {
        return files_.choose(kind, name, dialogs);
    }
    /// @return why it could not be written, to be told; else empty
    std::string save(RunFiles::Kind kind, const std::string& path);

    /// Saves a kept run as a log. @return the run, for showRecovered(); nothing unless it is saved
    std::optional<OpenedRun> recover(FileDialogs& dialogs) { return files_.recover(dialogs); }

    /// Shows it as openLog() does, with its true times; does nothing while another run may not be opened.
    void showRecovered(OpenedRun recovered);

    bool isOpened() const { return opened_.has_value(); } ///< what is shown came from a file

    /// Of what is shown: that of the opened run, or the one to poll.
    const Design& design() const { return opened_ ? opened_->log.design : design_; }

    bool isPolling() const { return state_.isPolling(); }

    /// Whether the run waits for its adapter to come back.
    bool isWaiting() const { return state_.phase == Phase::waiting; }

    /// Whether a run is on that samples nothing: it waits, or goes on soon.
    bool isInterrupted() const { return isPolling() && reconnection_.isInterrupted(); }

    /// How the port or the adapter's silence ended the last run, see AdapterLink.
    const std::string& lastFailure() const
    {
        return reconnection_.failure().empty() ? link_.lastFailure() : reconnection_.failure();
    }

    /// Whether several replies in a row did not match their requests in the last run, which nothing mends.
    bool sawMismatch() const
    {
        const RunState::SinceStart& run = state_.sinceStart;
        return reconnection_.isAllowed() ? run.renewal.wasVain() : run.watch.sawMismatch();
    }

    std::int64_t loopCount() const { return state_.turn.loop; } ///< since the last reset
    const SampleStore& samples() const { return samples_; }
    const PollPanel& panel() const { return panel_; }

    /// "NO DATA" replies since the window was opened.
    std::int64_t noDataCount() const { return state_.noData; }

    // Of the runs of this window.
    std::chrono::system_clock::time_point firstStart() const { return state_.sinceReset.began.date; }
    std::chrono::system_clock::time_point lastStart() const { return state_.counts.began.date; }

    /// Of what is shown, as date and time.
    std::string firstStartText() const
    {
        return opened_ ? opened_->log.firstStart : around_.dateText(firstStart());
    }

    std::function<void()> onChanged; ///< called when the panel may have changed; not for each reply
    std::function<void()> onReply;   ///< called for each complete reply, those to commands included

    /// Called for each sample that was stored, its event from 0.
    std::function<void(std::size_t event, double value, SampleTime time)> onSample;

    /// Called when design() has become another one, with samples() in place and in front of onChanged.
    std::function<void()> onDesignChanged;
    std::function<void(const std::string& path)> onLog; ///< called for each log that was saved or opened

private:
    using Phase = RunState::Phase;

    void linkReset() override;
    void linkReady() override;
    void linkReply(std::string_view reply) override;
    void linkReceived() override;
    void linkNotice(std::string_view text) override;
    void linkSilent() override;
    void linkTimedOut() override;
    void linkLost() override;

    bool mayStart();
    void start();
    void stop(const std::string& status, Phase phase = Phase::stopped);
    std::string completedStatus();
    std::string reasonToStay() const;
    void show(OpenedRun opened, std::string_view done);
    void showDesign();
    void tick();
    void wait();
    void interrupt();
    void lookForAdapter();
    void prepare(std::string_view status);
    void renewSettings();
    bool resume();
    void sendNext(std::string_view reply);
    void heard();
    void sendFirstRequest();
    void takeCommandReply(std::string_view reply);
    void approach();
    bool mayRepeat(const std::string& command);
    void sendCommand();
    void refuseAddress();
    void takeReply(std::string_view reply);
    void sendRequest();
    bool belongs(ReplyFit fit, std::string_view reply);
    bool tellsSeveral(const PollRequest& request, const ReplyReader::Reading& reading) const;
    std::vector<std::size_t> tryOut(const PollRequest& request, std::string_view reply);
    void tellSharing(std::size_t partedBefore);
    void judge(const PollRequest& request, std::string_view reply);
    void tell(std::size_t event, const EventReading& reading);
    void store(std::size_t event, double value);
    std::string sharingText() const;
    RunState::Counts countsFromNow() const;
    RunState::Time nextRefresh() const;
    void measure();
    void refresh();
    void showPace();
    void showHint();
    void setStatus(std::string_view words);
    void changed();

    bool isRenewalDue() const { return reconnection_.isAllowed() && state_.sinceStart.renewal.isDue(now()); }
    RunState::Time now() const { return around_.clock.monotonic(); }
    RunFiles::Run run() const { return {design(), samples_, firstStartText()}; }

    Surroundings around_;
    const Design& design_;
    AdapterLink link_;
    SampleStore samples_;
    PollPanel panel_;
    RunFiles files_;
    RunPace pace_;
    PollPlan plan_;
    std::optional<ReplyReader> reader_; ///< of the last start
    Reconnection reconnection_;
    RunState state_;
    std::optional<OpenedRun> opened_; ///< its samples are in samples_
};

} // namespace zint
