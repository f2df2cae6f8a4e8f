#include "terminal/window/debuggerForm.h"

#include "platform/text.h"
#include "terminal/window/ui_debuggerForm.h"
#include "widgets/display.h"

#include <QKeyEvent>

namespace zint {

debuggerForm::debuggerForm(ToolContext& context)
    : outputForm(context, "docexplr2"), ui(makeUi()),
      MSComm1(context.shell.makePort(gate(), context.shell.connection())), Timer1(gate()),
      terminal_({.line = {*MSComm1, context.shell.connection(), Timer1},
                 .clock = clock_,
                 .prompts = prompts(),
                 .outBox = *ui->outBox}),
      commands_(context.settings),
      statsThrottle_([this] { display(*ui->labelStats, {.caption = terminal_.panel().labelStats}); })
{
    connectControls();
    terminal_.onChanged = [this] { paint(); };
    setUpOutputTool(*ui);
    takeOptions();
    paint();
    ui->inBox->setFocus();
}

debuggerForm::~debuggerForm() = default;

/// The terminal needs the output box when it is made.
std::unique_ptr<Ui::debuggerForm> debuggerForm::makeUi()
{
    auto controls = std::make_unique<Ui::debuggerForm>();
    controls->setupUi(this);
    return controls;
}

void debuggerForm::Form_Unload() { terminal_.unload(); }

void debuggerForm::showStatus(const std::string& text) { terminal_.showStatus(text); }

/// What no control wanted: the Return key presses the button that has the focus, else the default one; the
/// arrows walk through the commands.
void debuggerForm::keyPressEvent(QKeyEvent* event)
{
    const auto walk = [this](std::string (CommandHistory::*step)(const std::string&)) {
        if (focusWidget() == ui->inBox)
            ui->inBox->setText(toQt((commands_.*step)(fromQt(ui->inBox->text()))));
    };
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        pressFocused(terminal_.isOpen() ? ui->sendCom : ui->openCom);
        break;
    case Qt::Key_Up:
        walk(&CommandHistory::older);
        break;
    case Qt::Key_Down:
        walk(&CommandHistory::newer);
        break;
    default:
        outputForm::keyPressEvent(event);
    }
}

void debuggerForm::openCom_Click()
{
    terminal_.pressOpenCom();
    if (terminal_.isOpen())
        ui->inBox->setFocus();
}

void debuggerForm::sendCom_Click()
{
    rememberCommand();
    terminal_.pressSendCom();
    if (!terminal_.isOpen())
        return;
    ui->inBox->setFocus();
    ui->inBox->selectAll(); // the next command takes its place
}

void debuggerForm::repeatCom_Click()
{
    rememberCommand();
    terminal_.pressRepeatCom();
}

void debuggerForm::mnuOpenCom_Click()
{
    if (!terminal_.isOpen())
        openCom_Click();
}

void debuggerForm::mnuCloseCom_Click()
{
    if (terminal_.isOpen())
        openCom_Click();
}

void debuggerForm::connectControls()
{
    onClick(ui->openCom, &debuggerForm::openCom_Click);
    onClick(ui->sendCom, &debuggerForm::sendCom_Click);
    onClick(ui->repeatCom, &debuggerForm::repeatCom_Click);
    onTrigger(ui->mnuOpenCom, &debuggerForm::mnuOpenCom_Click);
    onTrigger(ui->mnuCloseCom, &debuggerForm::mnuCloseCom_Click);
    on(ui->inBox, &QLineEdit::textChanged,
       [this](const QString& text) { terminal_.setCommand(fromQt(text)); });
    for (const QAbstractButton* option : std::initializer_list<QAbstractButton*>{
             ui->displayDec, ui->displayHex, ui->displayOct, ui->displayAckHdr, ui->displayResponseLen,
             ui->outputScroll, ui->outputOverwrite, ui->outputAppend})
        on(option, &QAbstractButton::toggled, [this] { takeOptions(); });
    on(ui->labelStats, &QPushButton::clicked, [this] { terminal_.showStatistics(); });
    on(ui->mnuClrOutput, &QAction::triggered, [this] { terminal_.clearOutput(); });
    on(ui->mnuClearCount, &QAction::triggered, [this] { terminal_.clearCounters(); });
}

void debuggerForm::takeOptions()
{
    TerminalOptions options;
    if (ui->displayDec->isChecked())
        options.base = NumberBase::decimal;
    else if (ui->displayOct->isChecked())
        options.base = NumberBase::octal;
    if (ui->outputAppend->isChecked())
        options.mode = OutputMode::append;
    else if (ui->outputOverwrite->isChecked())
        options.mode = OutputMode::overwrite;
    options.displayAckHdr = ui->displayAckHdr->isChecked();
    options.displayResponseLen = ui->displayResponseLen->isChecked();
    terminal_.setOptions(options);
}

/// Keeps what is about to be sent as it was typed.
void debuggerForm::rememberCommand()
{
    if (terminal_.isOpen() && !terminal_.isRepeating())
        commands_.add(fromQt(ui->inBox->text()));
}

void debuggerForm::paint()
{
    const TerminalPanel& p = terminal_.panel();
    const bool isOpen = terminal_.isOpen();
    display(*ui->statusBox, p.statusBox);
    statsThrottle_.request(); // the counters change with each reply
    display(*ui->openCom, p.openCom, isOpen ? "network-disconnect" : "network-connect");
    display(*ui->sendCom, p.sendCom);
    display(*ui->repeatCom, p.repeatCom, terminal_.isRepeating() ? "media-playback-stop" : "view-refresh");
    ui->openCom->setDefault(!isOpen);
    ui->sendCom->setDefault(isOpen);
    ui->mnuOpenCom->setEnabled(!isOpen);
    ui->mnuCloseCom->setEnabled(isOpen);
}

} // namespace zint
