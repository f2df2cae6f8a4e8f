#pragma once

#include "catalogue/design.h"
#include "link/adapterLink.h"
#include "runner/keptRuns.h"
#include "runner/pollLimits.h"
#include "runner/pollPanel.h"
#include "runner/replyWatch.h"
#include "runner/runFiles.h"
#include "runner/runPace.h"
#include "runner/sampleStore.h"
#include "runner/schedule.h"
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
        SerialPort& port;
        Timer& timer;   ///< guards the reset
        Timer& silence; ///< for the hint that nothing arrives
        Timer& ticker;  ///< ticks while a run is on: hands samples to the system, shows progress
        const Clock& clock;
        Prompts& prompts;
        ProgramValues& values;
        KeptRuns& kept;
        std::function<std::string(std::chrono::system_clock::time_point)> dateText;
        std::size_t mostRecords = SampleStore::mostRecords; ///< that the store has room for
    };

    /// @param design outlives the poller and stays as it is
    Poller(Surroundings surroundings, const ConnectionChoice& choice, const Design& design);

    void load();   ///< the window opens
    void unload(); ///< the window goes away: closes the port; an unsaved run stays kept

    void pressStart(); ///< starts polling, or stops it
    /// The texts of three boxes: what is typed counts at the next reset, and at the next start.
    void setMaxLoops(const std::string& text);
    void setTimeLimit(const std::string& text) { panel_.timeLimit.text = text; }
    void setRefresh(const std::string& text) { panel_.scnUpdate.text = text; }
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
    void recover(FileDialogs& dialogs) { files_.recover(around_.kept, dialogs); }

    bool isPolling() const { return pollActive_; }

    /// Whether the last run has come to its end: all loops or all of its time.
    bool isComplete() const { return isComplete_; }

    /// How the port or the adapter's silence ended the last run, see AdapterLink.
    const std::string& lastFailure() const { return link_.lastFailure(); }

    /// Whether several replies running did not match their requests in the last run.
    bool sawMismatch() const { return watch_.sawMismatch(); }

    std::int64_t loopCount() const { return loopCount_; } ///< since the last reset
    const SampleStore& samples() const { return samples_; }
    const PollPanel& panel() const { return panel_; }

    /// "NO DATA" replies since the window was opened.
    std::int64_t noDataCount() const { return noDataCount_; }

    std::chrono::system_clock::time_point firstStart() const { return firstPollStart_.date; }
    std::chrono::system_clock::time_point lastStart() const { return pollStart_.date; }

    std::function<void()> onChanged; ///< called when the panel may have changed; not for each reply
    std::function<void()> onReply;   ///< called for each complete reply, those to commands included

private:
    /// What is sent once the adapter is reset.
    enum class State { commands, firstRequest, polling };

    struct Moment {
        std::chrono::microseconds ticks{}; ///< of the clock that only goes on
        std::chrono::system_clock::time_point date;
    };

    void linkReset() override;
    void linkReady() override;
    void linkReply(std::string_view reply) override;
    void linkReceived() override;
    void linkNotice(PortNotice notice) override;
    void linkSilent() override;
    void linkTimedOut() override;
    void linkLost() override;

    bool mayStart();
    void start();
    void takeBoxes();
    void enableBoxes(bool enabled);
    void stop(const std::string& status);
    void complete(const std::string& status);
    std::string completedStatus();
    void keepRun();
    std::string leaveRun();
    void flushKept();
    void showKeepFailure();
    void tick();
    void proceed(std::string_view reply);
    void heard();
    void sendCommand();
    void sendFirstRequest();
    void takeReply(std::string_view reply);
    void requestNext();
    void reachLoop(std::int64_t loop);
    void refresh();
    void writeSummary();
    void showHint();
    void measure();
    void showProgress();
    double loopsPercent() const;
    void showLength();
    bool isTimeUp() const;
    Moment now() const { return {around_.clock.monotonic(), around_.clock.wall()}; }
    std::int64_t secondsSince(const Moment& moment) const;

    bool isSaved() const;
    RunFiles::Run run() const { return {design_, samples_, firstPollStart_.date}; }

    void setStatus(std::string_view words);
    void changed() const;

    Surroundings around_;
    const Design& design_;
    AdapterLink link_;
    SampleStore samples_;
    PollPanel panel_;
    RunFiles files_;
    ReplyWatch watch_;
    RunPace pace_;

    State state_ = State::commands;
    bool pollActive_ = false;
    bool samplesFull_ = false; ///< the last loop has been reached; the values must be reset first
    bool isComplete_ = false;
    std::int64_t maxLoops_ = pollLimits::usualLoops;
    std::int64_t refreshSecs_ = pollLimits::usualRefresh.count();
    std::optional<std::chrono::seconds> timeLimit_;
    std::int64_t loopCount_ = 0; ///< since the last reset
    std::int64_t eventsDone_ = 0;
    std::int64_t noDataCount_ = 0;
    Turn turn_;             ///< of the request that is outstanding
    std::string initQueue_; ///< commands still to be sent, separated by ";"

    Moment pollStart_;
    Moment firstPollStart_;
    std::chrono::microseconds nextRefresh_{};
    bool showsValues_ = false;                ///< there has been a refresh with samples since the reset
    std::size_t savedSize_ = 0;               ///< of the store when it was last saved as a log
    std::vector<std::int32_t> samplesBefore_; ///< by event, of earlier starts
};

} // namespace zint
