#pragma once

#include "codes/codesPanel.h"
#include "dtcdb/codeDescriptions.h"
#include "link/adapterLink.h"
#include "shared/programValues.h"
#include "shared/prompts.h"

#include <cstdint>
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
    /// All arguments outlive the exchange. Failures that the user may want to report go to
    /// `values.lastFailureText`.
    CodesExchange(SerialPort& port, Timer& timer, const ConnectionChoice& choice,
                  const CodeDescriptionSource& descriptions, Prompts& prompts, ProgramValues& values);

    void pressGetCodes();   ///< starts a read, or ends the exchange that runs
    void pressClearCodes(); ///< asks, then starts a clear; or ends the exchange that runs

    /// Closes the port if it is open; the window goes away.
    void unload();

    bool isRunning() const { return link_.isOpen(); }

    /// Whether the last exchange reached its end without an error.
    bool succeeded() const { return succeeded_; }

    /// How many stored codes the vehicle reported last; its list may show fewer.
    int reportedCodeCount() const { return codeCount_; }

    /// Whether codes were listed that have no description because there is no database.
    bool lacksDescriptions() const { return !databaseAvailable_ && codeCount_ > 0; }

    const CodesPanel& panel() const { return panel_; }
    std::function<void()> onChanged; ///< called after each event that may have changed the panel

private:
    enum class State { opening, statusRequested, codesRequested, clearRequested };

    void linkReady() override;
    void linkReply(std::string_view reply) override;
    void linkReceived() override;
    void linkEvent(int event) override;
    void linkTimedOut() override;
    void linkLost() override;

    bool begin();
    void end();
    void pressStartingButton();
    void evaluateStatus(std::string_view reply);
    int readStatusByte(std::string_view reply);
    void act();
    void listCodes(std::string_view reply);
    void addDescriptions(std::vector<std::string>& codes);
    void finishClearing();
    void changed();

    AdapterLink link_;
    const CodeDescriptionSource& descriptions_;
    const bool databaseAvailable_;
    Prompts& prompts_;
    ProgramValues& values_;
    CodesPanel panel_;
    State state_ = State::opening;
    bool clearRequested_ = false;
    bool finished_ = false;
    bool succeeded_ = false;
    int codeCount_ = 0;
    std::int64_t errorsBefore_ = 0;
};

} // namespace zint
