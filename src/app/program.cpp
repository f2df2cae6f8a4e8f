#include "app/program.h"

#include "app/connectionSetup.h"
#include "codes/window/codesForm.h"
#include "designer/window/pollSetup2.h"
#include "dtcdb/window/dtcEditForm.h"
#include "launcher/window/failedConnForm.h"
#include "launcher/window/portsForm.h"
#include "launcher/window/startForm.h"
#include "platform/text.h"
#include "process/folders.h"
#include "runner/window/obdPollForm.h"
#include "scanner/window/scanForm.h"
#include "terminal/window/debuggerForm.h"
#include "widgets/icons.h"

#include <QApplication>
#include <QTimer>

#include <algorithm>
#include <array>
#include <utility>

namespace zint {
namespace {

/// How each tool's window is made. A tool that is not listed is not part of this version; its button is
/// disabled.
struct ToolEntry {
    Tool tool;
    toolForm* (*make)(ToolContext&);
};

template <typename Form>
toolForm* make(ToolContext& context)
{
    return new Form(context);
}

constexpr std::array toolEntries = {
    ToolEntry{Tool::codes, &make<codesForm>},         ToolEntry{Tool::dtcEditor, &make<dtcEditForm>},
    ToolEntry{Tool::pollDesigner, &make<pollSetup2>}, ToolEntry{Tool::pollRunner, &make<obdPollForm>},
    ToolEntry{Tool::terminal, &make<debuggerForm>},   ToolEntry{Tool::scanner, &make<scanForm>},
};

constexpr std::chrono::milliseconds boxInterval{100};

const ToolEntry* entryOf(Tool tool)
{
    const auto* entry = std::ranges::find(toolEntries, tool, &ToolEntry::tool);
    return entry == toolEntries.end() ? nullptr : entry;
}

bool anyWindowVisible() { return std::ranges::any_of(QApplication::topLevelWidgets(), &QWidget::isVisible); }

} // namespace

Program::Program(const ConnectionOptions& options)
    : ports_(settings_, systemPorts_), vehiclePorts_(ports_),
      options_(options), context_{
                             .values = values_,
                             .design = design_,
                             .settings = settings_,
                             .userDataFolder = fromQt(userDataFolder()),
                             .connection = [this] { return launcher_->connection(); },
                             .makePort =
                                 [this](EventGate& gate, const ConnectionChoice& choice) {
                                     return vehiclePorts_.make(gate, choice.portNumber);
                                 },
                             .openFailedConn = [this](QWidget& caller) { openFailedConn(caller); },
                         }
{
    context_.goPolling = [this] { next_ = Tool::pollRunner; };
    context_.goDesigning = [this] { next_ = Tool::pollDesigner; };
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
    applyForThisRun(options_, *launcher_);
    return *launcher_;
}

void Program::start()
{
    applyForThisRun(options_, ports_);
    start_ = new startForm(context_, [this](Prompts& prompts) -> Launcher& { return makeLauncher(prompts); },
                           {.hasTool = [](Tool tool) { return entryOf(tool) != nullptr; },
                            .openTool = [this](Tool tool) { openTool(tool); },
                            .assignPorts = [this] { assignPorts(); },
                            .recoverIn = [this](Tool tool) { recoverIn(tool); }});
    connect(start_, &toolForm::unloaded, qApp, &QCoreApplication::quit);
    start_->show();
    QTimer::singleShot(0, qApp, &useProgramIcon); // drawing it would keep the window waiting
    QTimer::singleShot(0, this, &Program::lookForUnsavedWork);
}

void Program::lookForUnsavedWork()
{
    session_.emplace(userDataFolder());
    if (const auto since = session_->cutOffSince())
        start_->offerUnsavedWork(*since);
}

/// The runner is opened for a run whatever the present design is: the run brings its own.
void Program::recoverIn(Tool tool)
{
    openTool(tool);
    if (auto* recover = tool_->findChild<QAction*>(QStringLiteral("mnuRecover")))
        QTimer::singleShot(0, recover, &QAction::trigger); // when the launcher's handler has returned
}

void Program::openTool(Tool tool)
{
    const ToolEntry* entry = entryOf(tool);
    if (entry == nullptr)
        return;
    tool_ = entry->make(context_);
    connect(tool_, &toolForm::unloaded, this, &Program::toolClosed);
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

void Program::assignPorts() { portsForm(ports_, start_).exec(); }

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

bool Program::bringBack(const ConnectionOptions& options)
{
    if (anyWindowVisible()) // a message box over the hidden tool
        return false;
    applyForThisRun(options, ports_);
    applyForThisRun(options, *launcher_);
    if (tool_)
        tool_->close(); // ends what it has running, then shows the launcher
    showLauncher();
    start_->raise();
    start_->activateWindow();
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
    if (start_ && !anyWindowVisible())
        instance_.waitToBeAsked();
}

} // namespace zint
