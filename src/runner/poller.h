#pragma once

#include "catalogue/design.h"
#include "link/adapterLink.h"
#include "runner/keptRuns.h"
#include "runner/pollPanel.h"
#include "runner/runFiles.h"
#include "runner/runPace.h"
#include "runner/runState.h"
#include "runner/sampleStore.h"
#include "shared/clock.h"
#include "shared/programValues.h"
#include "shared/prompts.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

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

    void resetValues(); ///< empties the store; a run that is on goes on
    void loadLog();     ///< says that there is no way back from a log yet

    /// Writing is two steps, so that polling goes on while the user is asked. @return an empty path when the
    /// user cancels
    std::string chooseFile(RunFiles::Kind kind, RunFiles::Name name, FileDialogs& dialogs) const
    {
        return files_.choose(kind, name, dialogs);
    }
    /// @return why it could not be written, to be told; else empty
    std::string save(RunFiles::Kind kind, const std::string& path);
    void recover(FileDialogs& dialogs) { files_.recover(dialogs); }

    bool isPolling() const { return state_.isPolling(); }

    /// Whether the last run has come to its end: all loops or all of its time.
    bool isComplete() const { return state_.phase == Phase::complete; }

    /// How the port or the adapter's silence ended the last run, see AdapterLink.
    const std::string& lastFailure() const { return link_.lastFailure(); }

    /// Whether several replies in a row did not match their requests in the last run.
    bool sawMismatch() const { return state_.sinceStart.watch.sawMismatch(); }

    std::int64_t loopCount() const { return state_.turn.loop; } ///< since the last reset
    const SampleStore& samples() const { return samples_; }
    const PollPanel& panel() const { return panel_; }

    /// "NO DATA" replies since the window was opened.
    std::int64_t noDataCount() const { return state_.noData; }

    std::chrono::system_clock::time_point firstStart() const { return state_.sinceReset.began.date; }
    std::chrono::system_clock::time_point lastStart() const { return state_.counts.began.date; }

    std::function<void()> onChanged; ///< called when the panel may have changed; not for each reply
    std::function<void()> onReply;   ///< called for each complete reply, those to commands included

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
    void tick();
    void sendNext();
    void heard();
    void sendFirstRequest();
    void takeReply(std::string_view reply);
    void sendRequest();
    void store(std::size_t event, std::int32_t value);
    RunState::Counts countsFromNow() const;
    RunState::Time nextRefresh() const;
    void measure();
    void refresh();
    void showPace();
    void showHint();
    void setStatus(std::string_view words);
    void changed();

    RunState::Time now() const { return around_.clock.monotonic(); }
    RunFiles::Run run() const { return {design_, samples_, firstStart()}; }

    Surroundings around_;
    const Design& design_;
    AdapterLink link_;
    SampleStore samples_;
    PollPanel panel_;
    RunFiles files_;
    RunPace pace_;
    RunState state_;
};

} // namespace zint
