#pragma once

#include "link/adapterLink.h"
#include "report/reportPanel.h"
#include "report/reportPlan.h"
#include "shared/clock.h"
#include "shared/prompts.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zint {

/// The vehicle report's work: reads in one exchange what all control units tell. What was read stays when it
/// is stopped, and when the adapter vanishes.
class VehicleReport final : private AdapterLink::Listener {
public:
    /// What the report asks of its surroundings; all of it outlives the report.
    struct Surroundings {
        AdapterLine line;
        const Clock& clock;
        Prompts& prompts;
        /// Keeps each report as it ends. @return false where none is to be kept. @throws FileError
        std::function<bool(const VehicleFacts&)> keep = {};
    };

    explicit VehicleReport(Surroundings surroundings);

    /// Begins to read, or stops. Where the adapter can't be reached, the former report stays as it is.
    void pressReadReport(bool isQuick = false);

    /// Asks, clears codes and test results in the vehicle and reads again. Legal when a
    /// report was read and none is. That one is kept before; where it is not, the question says so.
    void pressClearCodes();

    void unload(); ///< the window goes away: ends the exchange

    /// How many reports have ended, whole or not.
    int reportCount() const { return reportCount_; }

    bool isRunning() const { return link_.isOpen(); }

    /// What was read last; as far as it came, while it is read.
    const VehicleFacts& facts() const;

    /// What the control units answered to the clearing, and what has changed by it; empty without one.
    const std::vector<std::string>& clearedLines() const { return clearedLines_; }

    /// Why the last report is not whole, or the first one could not begin; empty when it is, while it is
    /// read, and before the first one.
    const std::string& failure() const { return failure_; }

    const ReportPanel& panel() const { return panel_; }
    std::function<void()> onChanged; ///< called when the panel may have changed
    std::function<void()> onReply;   ///< called for each complete reply

private:
    void linkReset() override;
    void linkReady() override;
    void linkReply(std::string_view reply) override;
    void linkReceived() override;
    void linkNotice(std::string_view text) override;
    void linkSilent() override { changed(); }
    void linkTimedOut() override;
    void linkLost() override;

    void begin(ReportPlan::Scope scope);
    void tellNotBegun(const ReportPlan::Scope& scope);
    std::string keepFirst();
    void tellCleared();
    void tellAnswers();
    void sendNext();
    void end(const std::string& why);
    void changed();

    Surroundings around_;
    AdapterLink link_;
    std::optional<ReportPlan> plan_;
    VehicleFacts before_; ///< a clearing
    bool isKept_ = false; ///< what was read last
    std::vector<std::string> clearedLines_;
    ReportPanel panel_;
    std::string failure_;
    int reportCount_ = 0;
};

} // namespace zint
