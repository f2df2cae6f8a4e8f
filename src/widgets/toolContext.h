#pragma once

#include "catalogue/design.h"
#include "link/connectionChoice.h"
#include "link/serialPort.h"
#include "shared/eventGate.h"
#include "shared/programValues.h"
#include "shared/settingsStore.h"

#include <functional>
#include <memory>
#include <string>

class QWidget;

namespace zint {

/// What the program gives each of its windows; it outlives them.
struct ToolContext {
    ProgramValues& values;
    Design& design;
    SettingsStore& settings;
    std::string userDataFolder; ///< in UTF-8; what the program keeps for this user beside the settings

    /// The launcher's choice, read by a tool when it is opened.
    std::function<ConnectionChoice()> connection;

    /// The serial control for a choice. Its notifications pass the gate, which outlives it.
    std::function<std::unique_ptr<SerialPort>(EventGate&, const ConnectionChoice&)> makePort;

    /// Opens the poll runner once the present tool's window has closed; empty in a version without a runner.
    std::function<void()> goPolling = {};

    /// As goPolling, for the polling designer.
    std::function<void()> goDesigning = {};

    /// Opens the connection-trouble dialog in place of a tool's window, which is hidden.
    std::function<void(QWidget& caller)> openFailedConn = {};
};

} // namespace zint
