#pragma once

#include "link/adapterLink.h"
#include "scanner/scanPanel.h"
#include "scanner/scanParameters.h"
#include "scanner/scanReply.h"
#include "scanner/scanSequence.h"
#include "shared/clock.h"
#include "shared/outputBox.h"
#include "shared/prompts.h"

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
        SerialPort& port;
        Timer& timer;
        const Clock& clock;
        Prompts& prompts;
        OutputBox& outBox;
        std::function<std::string(std::chrono::system_clock::time_point)> dateText; ///< for the output's head
        std::function<void()> beep;
    };

    Scanner(Surroundings surroundings, const ConnectionChoice& choice);

    void unload(); ///< the window goes away: ends the scan

    void pressScan(); ///< begins a scan, or ends it

    using Box = std::string ScanParameters::*;

    /// What stands in a box now; a scan reads the boxes while it runs.
    void type(Box box, const std::string& text);

    /// The user has left a box: refuses what can't stand in it.
    void leave(Box box);

    const ScanParameters& boxes() const { return boxes_; }

    /// How replies are shown, from the next one on.
    struct Display {
        ScanFilter filter = ScanFilter::all;
        bool dspDecimal = false;
        bool dspAscii = false;
    };
    void setDisplay(const Display& display) { display_ = display; }

    void clearOutput(); ///< leaves the date and time

    /// Tells that a file was written.
    void showStatus(const std::string& text);

    bool isScanning() const { return scanning_; }

    /// Why the last scan did not begin or was given up; empty when it is complete, or its user ended it.
    const std::string& failure() const { return failure_; }

    const ScanPanel& panel() const { return panel_; }
    std::function<void()> onChanged; ///< called when the panel or the boxes may have changed
    std::function<void()> onReply;   ///< called when the adapter has answered what was sent

private:
    enum class State { headerSent, scanning };

    void linkReset() override;
    void linkReady() override;
    void linkReply(std::string_view reply) override;
    void linkReceived() override;
    void linkEvent(int event) override;
    void linkTimedOut() override;
    void linkLost() override;

    void begin();
    void end();
    void takeHeaderReply(std::string_view reply);
    void takeReply(std::string_view reply);
    void beginRequests();
    void sendNext();
    void tellOfNext();
    std::string lineOf(const ScanRequest& request, const ScanReply& reply) const;
    void setStatus(std::string_view words);
    void write(const std::string& text) { around_.outBox.append(text); }
    void replied() const;
    void changed() const;

    Surroundings around_;
    AdapterLink link_;
    ScanParameters boxes_;
    Display display_;
    ScanPanel panel_;

    bool scanning_ = false;
    bool scanPending_ = false; ///< neither complete nor given up
    std::string failure_;
    State scanState_ = State::scanning;
    ScanSequence sequence_;
    ScanRequest lastRequest_;
    std::chrono::microseconds requestsBegin_{};

    std::int64_t events_ = 0; ///< replies to requests; the others count those of a kind
    std::int64_t invalid_ = 0;
    std::int64_t noData_ = 0;
    std::int64_t zero_ = 0;
};

} // namespace zint
