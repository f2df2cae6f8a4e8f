#pragma once

#include "connection/connectionOptions.h"
#include "connection/vehiclePorts.h"
#include "launcher/launcher.h"
#include "platform/qtSettingsStore.h"
#include "platform/systemPorts.h"
#include "process/runningInstance.h"
#include "process/sessionMark.h"
#include "widgets/toolContext.h"

#include <QObject>
#include <QPointer>

#include <memory>
#include <optional>

namespace zint {

class startForm;
class toolForm;

/// The program with its windows: makes what they share, and opens one tool at a time in place of the
/// launcher.
class Program : public QObject, private Shell {
    Q_OBJECT

public:
    explicit Program(StartOptions options);
    ~Program() override;

    /// Shows the launcher, then the polling designer if a design is asked for. The program ends when the
    /// launcher is closed.
    void start();

    /// Closes what is open, as a user would, and ends the program.
    void end();

private:
    Launcher& makeLauncher(Prompts& prompts) override;
    ConnectionChoice connection() const override { return launcher_->connection(); }
    std::unique_ptr<SerialPort> makePort(EventGate& gate, const ConnectionChoice& choice) override;
    WireRecord& record() override { return vehiclePorts_.record(); }
    void openTool(Tool tool) override;
    void recoverIn(Tool tool) override;
    void switchTo(Tool tool) override { next_ = tool; }
    void openFailedConn(QWidget& caller) override;
    void assignPorts() override;
    const PortDirectory& portDirectory() const override { return ports_; }
    void useConnection(PortNumber port, std::optional<int> bitsPerSecond) override;
    void lookForUnsavedWork();
    void openDesign();
    void toolClosed();
    void showLauncher();
    bool bringBack(const StartOptions& options);
    void waitIfHidden();

    QtSettingsStore settings_;
    SystemPorts systemPorts_;
    PortDirectory ports_;
    VehiclePorts vehiclePorts_;
    ProgramValues values_;
    Design design_;
    StartOptions options_;
    std::optional<Launcher> launcher_;
    ToolContext context_;
    RunningInstance instance_;
    std::optional<SessionMark> session_;
    QPointer<startForm> start_;
    QPointer<toolForm> tool_;
    std::optional<Tool> next_; ///< opened in place of the launcher when the present tool closes
    bool isEnding_ = false;    ///< the launcher closes when the present tool has closed
};

} // namespace zint
