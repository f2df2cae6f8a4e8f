#pragma once

#include "catalogue/design.h"
#include "link/adapterLink.h"
#include "runner/keptRuns.h"
#include "runner/pollPanel.h"
#include "runner/runFiles.h"
#include "runner/sampleStore.h"
#include "runner/schedule.h"
#include "shared/clock.h"
#include "shared/fileDialogs.h"
#include "shared/programValues.h"
#include "shared/prompts.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
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
        Timer& timer;  ///< guards the reset
        Timer& ticker; ///< ticks while a run is on: hands samples to the system, shows progress
        const Clock& clock;
        Prompts& prompts;
        FileDialogs& dialogs;
        ProgramValues& values;
        KeptRuns& kept;
        std::function<std::string(std::chrono::system_clock::time_point)> dateText;
    };

    /// @param design outlives the poller and stays as it is
    Poller(Surroundings surroundings, const ConnectionChoice& choice, const Design& design);

    void load();   ///< the window opens
    void unload(); ///< the window goes away: closes the port; an unsaved run stays kept

    void pressStart(); ///< starts polling, or stops it
    /// The texts of two boxes: what is typed counts at the next reset, and at the next start.
    void setMaxLoops(const std::string& text) { panel_.textSampleCnt.text = text; }
    void setRefresh(const std::string& text) { panel_.scnUpdate.text = text; }

    void resetValues(); ///< empties the store; a run that is on goes on

    void saveLog() { saveLog(RunFiles::Name::usual); }
    void saveLogAs() { saveLog(RunFiles::Name::asked); }
    void exportLog() { files_.saveExport(run(), RunFiles::Name::usual); }
    void exportLogAs() { files_.saveExport(run(), RunFiles::Name::asked); }
    void debugLog() { files_.saveDebugDump(run()); }
    void recover() { files_.recover(around_.kept); }

    bool isPolling() const { return pollActive_; }
    const SampleStore& samples() const { return samples_; }
    const PollPanel& panel() const { return panel_; }

    /// "NO DATA" replies since the window was opened.
    std::int64_t noDataCount() const { return noDataCount_; }

    /// Seconds since the first start of polling, as samples count them.
    double now() const;

    std::chrono::system_clock::time_point firstStart() const { return firstPollDate_; }
    std::chrono::system_clock::time_point lastStart() const { return pollDate_; }
    std::function<void()> onChanged; ///< called when the panel may have changed; not for each reply

private:
    /// What is sent once the adapter is reset.
    enum class State { commands, firstRequest, polling };

    void linkReset() override;
    void linkReady() override;
    void linkReply(std::string_view reply) override;
    void linkReceived() override;
    void linkEvent(int event) override;
    void linkTimedOut() override;
    void linkLost() override;

    void start();
    void stop(const std::string& status);
    std::string completedStatus();
    void keepRun();
    void flushKept();
    void tick();
    void proceed(std::string_view reply);
    void sendCommand();
    void takeReply(std::string_view reply);
    void requestNext();
    void reachLoop(std::int64_t loop);
    void refresh();
    void refreshRow(std::size_t event);
    void writeSummary();
    void estimateTimeLeft();
    std::int64_t secondsSince(std::chrono::microseconds moment) const;

    bool isSaved() const;
    void saveLog(RunFiles::Name name);
    RunFiles::Run run() const { return {design_, samples_, firstPollDate_}; }

    void setStatus(std::string_view words);
    void changed() const;

    Surroundings around_;
    const Design& design_;
    AdapterLink link_;
    SampleStore samples_;
    PollPanel panel_;
    RunFiles files_;

    State state_ = State::commands;
    bool pollActive_ = false;
    bool samplesFull_ = false; ///< the last loop has been reached; the values must be reset first
    std::int64_t maxLoops_ = 1000;
    std::int64_t refreshSecs_ = 10;
    std::int64_t loopCount_ = 0; ///< since the last reset
    std::int64_t eventsDone_ = 0;
    std::int64_t noDataCount_ = 0;
    Turn turn_;               ///< of the request that is outstanding
    std::string initQueue_;   ///< commands still to be sent, separated by ";"
    std::string keepFailure_; ///< why this run is not kept; empty while it is

    std::chrono::microseconds pollStart_{};
    std::chrono::system_clock::time_point pollDate_; ///< the same moment
    std::chrono::microseconds firstPollStart_{};
    std::chrono::system_clock::time_point firstPollDate_; ///< the same moment
    std::chrono::microseconds nextRefresh_{};
    std::size_t savedSize_ = 0;               ///< of the store when it was last saved as a log
    std::int64_t loopsBefore_ = 0;            ///< of earlier starts
    std::vector<std::int32_t> samplesBefore_; ///< by event, of earlier starts
};

} // namespace zint
