#pragma once

#include "link/adapterLink.h"
#include "scanner/scanPanel.h"
#include "scanner/scanParameters.h"
#include "scanner/scanReply.h"
#include "scanner/scanSequence.h"
#include "shared/clock.h"
#include "shared/outputBox.h"
#include "shared/prompts.h"
#include "shared/settingsStore.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace zint {

/// The PID scanner's work: sends a request for each mode and PID of a range, tells of each reply what it is,
/// and lists those that its user wants to see.
class Scanner final : private AdapterLink::Listener {
public:
    /// What the scanner asks of its surroundings; all of it outlives the scanner.
    struct Surroundings {
        AdapterLine line;
        const Clock& clock;
        Prompts& prompts;
        OutputBox& outBox;
        DateText dateText; ///< for the output's head
        std::function<void()> beep;
    };

    explicit Scanner(Surroundings surroundings);

    void unload(); ///< the window goes away: ends the scan

    void pressScan(); ///< begins a scan, or ends it

    using Box = std::string ScanParameters::*;

    /// What stands in a box now; a scan reads the boxes while it runs.
    void type(Box box, const std::string& text);

    /// The user has left a box: refuses what can't stand in it.
    /// @param towardsScan by the button that begins a scan, which then does not begin with what took its
    /// place
    void leave(Box box, bool towardsScan = false);

    const ScanParameters& boxes() const { return boxes_; }

    /// How replies are shown, from the next one on.
    struct Display {
        ScanFilter filter = ScanFilter::all;
        bool dspDecimal = false;
        bool dspAscii = false;
        bool dspNames = false; ///< of the parameters that the program knows
    };
    void setDisplay(const Display& display) { display_ = display; }
    const Display& display() const { return display_; }

    /// The range, filter and formats that this user left last, for a window that opens. The header is not
    /// among them: another one than the usual lets a scan erase.
    void restore(const SettingsStore& settings);
    void remember(SettingsStore& settings) const;

    /// Counted since the last scan began.
    struct Counts {
        std::int64_t events = 0; ///< replies to requests; the others are those of a kind
        std::int64_t invalid = 0;
        std::int64_t noData = 0;
        std::int64_t zero = 0;
    };
    const Counts& counts() const { return counts_; }

    void clearOutput();    ///< leaves the date and time
    void showStatistics(); ///< the counters, and those of the last scan

    /// Tells that a file was written.
    void showStatus(const std::string& text);

    bool isScanning() const { return state_ != State::idle; }

    /// Why the last scan did not begin or was given up; empty when it is complete, or its user ended it.
    const std::string& failure() const { return failure_; }

    const ScanPanel& panel() const { return panel_; }
    std::function<void()> onChanged; ///< called when the panel or the boxes may have changed
    std::function<void()> onReply;   ///< called when the adapter has answered what was sent

private:
    enum class State {
        idle,
        opening,
        headerSent,
        requesting,
        done, ///< no request is left, or the header was refused; the summary comes next
    };

    void linkReset() override;
    void linkReady() override;
    void linkReply(std::string_view reply) override;
    void linkReceived() override;
    void linkSilent() override;
    void linkNotice(std::string_view text) override;
    void linkTimedOut() override;
    void linkLost() override;

    bool mayErase();
    void begin();
    void end();
    void enter(State state);
    void fail(const std::string& why);
    void takeHeaderReply(std::string_view reply);
    void takeReply(std::string_view reply);
    void beginRequests();
    void sendNext();
    void tellOfNext();
    std::string countsText() const;
    std::string lineOf(const ScanRequest& request, const ScanReply& reply) const;
    void setStatus(std::string_view words);
    void write(const std::string& text) { around_.outBox.append(text); }
    void showSilence();
    void replied() const;
    void changed() const;

    Surroundings around_;
    AdapterLink link_;
    ScanParameters boxes_;
    Display display_;
    ScanPanel panel_;
    std::string silenceShown_; ///< at the end of the status

    State state_ = State::idle;
    bool isRefused_ = false; ///< the next press to begin a scan, since a box has just been refused
    std::string failure_;
    ScanSequence sequence_;
    ScanRequest lastRequest_;
    std::chrono::microseconds requestsBegin_{};
    Counts counts_;
};

} // namespace zint
