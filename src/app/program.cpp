#include "app/program.h"

#include "app/portTest.h"
#include "codes/window/codesForm.h"
#include "connection/connectionSetup.h"
#include "designer/window/pollSetup2.h"
#include "doctor/window/doctorForm.h"
#include "dtcdb/window/dtcEditForm.h"
#include "launcher/window/failedConnForm.h"
#include "launcher/window/portsForm.h"
#include "launcher/window/startForm.h"
#include "platform/text.h"
#include "process/folders.h"
#include "report/window/reportForm.h"
#include "runner/window/obdPollForm.h"
#include "scanner/window/scanForm.h"
#include "terminal/window/debuggerForm.h"
#include "widgets/icons.h"

#include <QApplication>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace zint {
namespace {

toolForm* makeDoctor(ToolContext& context)
{
    auto* const doctor = new doctorForm(context);
    doctor->beginSoon();
    return doctor;
}

toolForm* makeWindow(Tool tool, ToolContext& context)
{
    switch (tool) {
    case Tool::codes:
        return new codesForm(context);
    case Tool::doctor:
        return makeDoctor(context);
    case Tool::dtcEditor:
        return new dtcEditForm(context);
    case Tool::pollDesigner:
        return new pollSetup2(context);
    case Tool::pollRunner:
        return new obdPollForm(context);
    case Tool::scanner:
        return new scanForm(context);
    case Tool::terminal:
        return new debuggerForm(context);
    case Tool::vehicleReport:
        return new reportForm(context);
    }
    return nullptr;
}

constexpr std::chrono::milliseconds boxInterval{100};

bool anyWindowVisible() { return std::ranges::any_of(QApplication::topLevelWidgets(), &QWidget::isVisible); }

} // namespace

Program::Program(StartOptions options)
    : ports_(settings_, systemPorts_), vehiclePorts_(ports_),
      options_(std::move(options)), context_{.shell = *this,
                                             .values = values_,
                                             .design = design_,
                                             .settings = settings_,
                                             .userDataFolder = fromQt(userDataFolder())}
{
    instance_.onAsked = [this](const QByteArray& line) { return bringBack(fromLine(line)); };
}

Program::~Program()
{
    delete tool_;
    delete start_;
}

Launcher& Program::makeLauncher(Prompts& prompts)
{
    launcher_.emplace(settings_, ports_, prompts, values_, design_, launcherSystem());
    applyForThisRun(options_.connection, *launcher_);
    return *launcher_;
}

void Program::start()
{
    applyForThisRun(options_.connection, ports_);
    start_ = new startForm(context_);
    connect(start_, &toolForm::unloaded, qApp, &QCoreApplication::quit);
    start_->show();
    QTimer::singleShot(0, qApp, &useProgramIcon); // drawing it would keep the window waiting
    QTimer::singleShot(0, this, [this] {
        lookForUnsavedWork();
        openDesign();
    });
}

void Program::lookForUnsavedWork()
{
    session_.emplace(userDataFolder());
    if (const auto since = session_->cutOffSince())
        start_->offerUnsavedWork(*since);
}

/// What the user has chosen to recover comes first, and then stays.
void Program::openDesign()
{
    if (options_.designPath.empty() || tool_ || isEnding_)
        return;
    values_.designToOpen = options_.designPath;
    openTool(Tool::pollDesigner);
}

/// The runner is opened for a run whatever the present design is: the run brings its own.
void Program::recoverIn(Tool tool)
{
    openTool(tool);
    if (auto* recover = tool_->findChild<QAction*>(QStringLiteral("mnuRecover")))
        QTimer::singleShot(0, recover, &QAction::trigger); // when the launcher's handler has returned
}

std::unique_ptr<SerialPort> Program::makePort(EventGate& gate, const ConnectionChoice& choice)
{
    return vehiclePorts_.make(gate, choice.port);
}

void Program::openTool(Tool tool)
{
    tool_ = makeWindow(tool, context_);
    connect(tool_, &toolForm::unloaded, this, &Program::toolClosed);
    instance_.stopWaiting();
    start_->hide();
    tool_->show();
}

void Program::openFailedConn(QWidget& caller)
{
    auto* dialog = new failedConnForm(context_);
    connect(dialog, &toolForm::unloaded, this, &Program::waitIfHidden,
            Qt::QueuedConnection); // when it is gone
    caller.hide();
    dialog->show();
}

void Program::assignPorts()
{
    const auto speed = static_cast<std::size_t>(launcher_->panel().comSpeed);
    PortTest tester(settings_, systemPorts_, lineSpeeds.at(speed));
    portsForm(ports_, start_, &tester).exec();
}

void Program::useConnection(PortNumber port, std::optional<int> bitsPerSecond)
{
    launcher_->useConnection(port, bitsPerSecond);
}

void Program::toolClosed()
{
    if (std::exchange(isEnding_, false))
        start_->close();
    else if (const std::optional<Tool> next = std::exchange(next_, std::nullopt))
        openTool(*next);
    else
        showLauncher();
}

void Program::showLauncher()
{
    instance_.stopWaiting();
    start_->showAgain();
}

bool Program::bringBack(const StartOptions& options)
{
    if (anyWindowVisible()) // a message box over the hidden tool
        return false;
    applyForThisRun(options.connection, ports_);
    applyForThisRun(options.connection, *launcher_);
    if (!options.designPath.empty()) {
        values_.designToOpen = options.designPath;
        next_ = Tool::pollDesigner;
    }
    if (tool_)
        tool_->close(); // ends what it has running; toolClosed() then shows what comes next
    if (!anyWindowVisible())
        showLauncher();
    QWidget* const shown = start_->isVisible() ? static_cast<QWidget*>(start_) : tool_;
    shown->raise();
    shown->activateWindow();
    return true;
}

void Program::end()
{
    isEnding_ = true;
    while (QWidget* const box = QApplication::activeModalWidget()) // its handler goes on as after a Cancel
        if (!box->close())
            break;
    if (tool_)
        tool_->close(); // toolClosed() closes the launcher
    else
        start_->close();
    QTimer::singleShot(boxInterval, this, [this] {
        if (isEnding_ && start_) // the handler that held the window back has opened another box
            end();
    });
}

void Program::waitIfHidden()
{
    if (next_ && tool_)
        tool_->close(); // the dialog has asked for another tool in its place
    else if (start_ && !anyWindowVisible() && !instance_.waitToBeAsked())
        bringBack({}); // nobody else could
}

} // namespace zint
