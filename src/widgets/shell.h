#pragma once

#include "link/connectionChoice.h"
#include "link/serialPort.h"
#include "link/wireRecord.h"
#include "shared/eventGate.h"
#include "shared/prompts.h"
#include "shared/tool.h"

#include <memory>
#include <optional>

class QWidget;

namespace zint {

class Launcher;
class PortDirectory;

/// What a window asks of the program around it.
class Shell {
public:
    virtual ~Shell() = default;

    /// The launcher's work for its window. @param prompts the window's, which outlives the launcher
    virtual Launcher& makeLauncher(Prompts& prompts) = 0;

    /// The launcher's choice, read by a tool when it is opened.
    virtual ConnectionChoice connection() const = 0;

    /// The serial control for a choice. Its notifications pass the gate, which outlives it.
    virtual std::unique_ptr<SerialPort> makePort(EventGate& gate, const ConnectionChoice& choice) = 0;

    /// What goes over the wire of all these.
    virtual WireRecord& record() = 0;

    /// Opens a tool in place of the launcher.
    virtual void openTool(Tool tool) = 0;

    /// The same, with the tool's list of unsaved work.
    virtual void recoverIn(Tool tool) = 0;

    /// Opens a tool once the window of the present one has closed.
    virtual void switchTo(Tool tool) = 0;

    /// Opens the connection-trouble dialog in place of a tool's window, which is hidden.
    virtual void openFailedConn(QWidget& caller) = 0;

    /// Lets the user assign ports to com1 to com8.
    virtual void assignPorts() = 0;

    /// What com1 to com8 stand for.
    virtual const PortDirectory& portDirectory() const = 0;

    /// Lets all tools use a port from now on, at a speed; without one, at the speed that is set.
    virtual void useConnection(PortNumber port, std::optional<int> bitsPerSecond) = 0;
};

} // namespace zint
