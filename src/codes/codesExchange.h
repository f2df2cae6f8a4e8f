#pragma once

#include "codes/codesPanel.h"
#include "codes/codesReading.h"
#include "dtcdb/codeDescriptions.h"
#include "link/adapterLink.h"
#include "shared/clock.h"
#include "shared/programValues.h"
#include "shared/prompts.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace zint {

/// One press of a button is one exchange: reset, echo off, monitor status, then read or clear.
///
/// A press while the port is open ends the exchange. Nothing here times out once the reset is answered: a
/// silent vehicle leaves the exchange open until the user cancels.
class CodesExchange final : private AdapterLink::Listener {
public:
    /// What the exchange asks of its surroundings; all of it outlives the exchange.
    struct Surroundings {
        AdapterLine line;
        const Clock& clock;
        const CodeDescriptionSource& descriptions;
        Prompts& prompts;
        ProgramValues& values; ///< failures that the user may want to report go to `lastFailureText`
    };

    explicit CodesExchange(Surroundings surroundings);

    void pressGetCodes();   ///< starts a read, or ends the exchange that runs
    void pressClearCodes(); ///< asks, then starts a clear; or ends the exchange that runs

    /// Closes the port if it is open; the window goes away.
    void unload();

    bool isRunning() const { return link_.isOpen(); }

    /// Whether the last exchange reached its end, and its replies could be read.
    bool succeeded() const { return finished_ && !failed_ && !isRunning(); }

    /// How the port or the adapter's silence ended the last exchange, see AdapterLink.
    const std::string& lastFailure() const { return link_.lastFailure(); }

    /// Whether the last exchange has told the vehicle to clear its codes; it may have refused.
    bool hasSentClear() const { return hasSentClear_; }

    /// What the last exchange brought; whole when it succeeded.
    const CodesReading& reading() const { return reading_; }

    /// Whether codes were listed that have no description because there is no database.
    bool lacksDescriptions() const { return !databaseAvailable_ && reading_.reportedCodes > 0; }

    void showStatistics() const; ///< the counters, and what became of the last reading

    /// Shows what became of a file, until the next event.
    void showStatus(const std::string& text);

    const CodesPanel& panel() const { return panel_; }
    std::function<void()> onChanged; ///< called after each event that may have changed the panel

private:
    enum class State { opening, statusRequested, codesRequested, clearRequested };

    void linkReady() override;
    void linkReply(std::string_view reply) override;
    void linkReceived() override;
    void linkSilent() override { changed(); }
    void linkNotice(std::string_view text) override;
    void linkTimedOut() override;
    void linkLost() override;

    bool begin();
    void pressStartingButton();
    void evaluateStatus(std::string_view reply);
    int readStatusByte(std::string_view reply);
    void act();
    void listCodes(std::string_view reply);
    void addDescriptions(const std::vector<std::string*>& codes);
    void fail();
    void showListing();
    void finishClearing();
    void changed();

    Surroundings around_;
    AdapterLink link_;
    const bool databaseAvailable_;
    CodesPanel panel_;
    State state_ = State::opening;
    bool clearRequested_ = false;
    bool finished_ = false;
    bool failed_ = false;
    bool hasSentClear_ = false;
    std::string statusReply_;
    CodesReading reading_;
};

} // namespace zint
