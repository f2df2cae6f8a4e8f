#pragma once

#include "catalogue/design.h"
#include "connection/connectionOptions.h"
#include "connection/vehiclePorts.h"
#include "launcher/launcher.h"
#include "link/adapterLink.h"
#include "link/portDirectory.h"
#include "platform/qtSettingsStore.h"
#include "platform/qtTimer.h"
#include "platform/systemClock.h"
#include "platform/systemPorts.h"
#include "shared/eventGate.h"
#include "shared/outputBox.h"
#include "shared/programValues.h"
#include "shared/prompts.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// What the commands that need no window have in common.
namespace zint {

namespace exitStatus {
inline constexpr int success = 0;
inline constexpr int failure = 1; ///< standard error tells why
inline constexpr int wrongUsage = 2;
} // namespace exitStatus

/// Says on standard error what went wrong.
void complain(std::string text);

/// Shows on standard error how far the command is, in place of what was shown before; an empty text takes it
/// away. Only a terminal shows it. What is printed then takes its place.
void showProgress(const std::string& text);

/// Prints on standard output. @return the exit status; a failure has been told
int printOut(const std::string& text);

/// The same in bold letters where the terminal has them.
int printBold(const std::string& text);

/// A text as it may go to a terminal: bytes of damaged replies that would steer it, or are no text, as
/// "\x1B". What complain() and the printing functions write to a terminal has come through it.
std::string visibleText(std::string_view text);

/// "1 second", "2 seconds".
std::string secondsText(std::chrono::seconds time);

/// Runs a command; what it throws is told. @return the exit status
int telling(const std::function<int()>& command);

/// What is told when there is no database of code descriptions.
std::string noDatabaseText(const std::string& path);

/// Standard output as a tool's box, which keeps all lines. A failure has been told; nothing is printed after
/// it.
class PrintedBox : public OutputBox {
public:
    void append(const std::string& text) final;
    void replace(const std::string& text) override { append(text); }
    std::string text() const final { return {}; } // nothing here reads it
    void endLine();                               ///< unless what was printed last ended with one

    bool hasFailed = false;

private:
    bool isLineOpen_ = false;
};

/// Tells on standard error, without the windows' advice to look under Help; questions were answered on the
/// command line.
class CommandPrompts final : public Prompts {
public:
    void message(const std::string& text, const std::string& title = {},
                 const std::string& reason = {}) override;
    std::optional<std::string> input(const std::string& text, const std::string& title,
                                     const std::string& initial = {}) override;
    std::optional<std::size_t> choose(const std::string& text, const std::string& title,
                                      const std::vector<std::string>& lines) override;
    bool confirm(const std::string& text, const std::string& title) override;

    bool hasComplained = false;
};

/// A command that speaks to a vehicle: the connection as the settings and the command line say, and all else
/// that an engine asks for. Needs an application object.
class CommandSession {
public:
    /// Begins to record what is to be recorded. @throws FileError when that can't be written
    explicit CommandSession(const ConnectionOptions& options);

    const ConnectionChoice& connection() const { return connection_; }
    const PortDirectory& ports() const { return ports_; }

    /// Says on standard error which device is tried at which speed, if a user reads that.
    void tellConnection() const;

    /// The chosen port. It must not outlive the session.
    std::unique_ptr<SerialPort> makePort() { return vehiclePorts_.make(gate, connection_.port); }

    CommandPrompts prompts;
    ProgramValues values; ///< changes are not saved
    EventGate gate;       ///< an action that fails is told, and ends the event loop

private:
    void record(const ConnectionOptions& options);

    QtSettingsStore settings_;
    SystemPorts systemPorts_;
    PortDirectory ports_{settings_, systemPorts_};
    VehiclePorts vehiclePorts_{ports_};
    ConnectionChoice connection_;
};

/// Ends the event loop when a reply does not come in time, and tells so.
class Patience {
public:
    /// @param session outlives this. @param timeout of each reply; 0 waits for ever
    /// @param complaint stands in front of the time
    Patience(CommandSession& session, std::chrono::seconds timeout, std::string complaint);

    void begin(); ///< something was sent
    void end() { timer_.setEnabled(false); }

private:
    std::chrono::seconds timeout_;
    std::string complaint_;
    QtTimer timer_;
};

/// What every command has around it that speaks to a vehicle.
struct VehicleSession : CommandSession {
    /// @param timeout and complaint see Patience
    VehicleSession(const ConnectionOptions& options, std::chrono::seconds timeout,
                   std::string complaint = "the adapter has not answered within ")
        : CommandSession(options), patience(*this, timeout, std::move(complaint))
    {
    }

    AdapterLine line() { return {*port, connection(), resetTimer, &silence}; }

    SystemClock clock;
    QtTimer resetTimer{gate};
    QtTimer silence{gate};
    Patience patience;
    std::unique_ptr<SerialPort> port = makePort();
};

} // namespace zint
