#include "launcher/window/startForm.h"

#include "launcher/window/portWatch.h"
#include "launcher/window/ui_startForm.h"
#include "platform/text.h"
#include "widgets/display.h"

#include <QTimer>
#include <QWindow>

namespace zint {

startForm::startForm(ToolContext& context)
    : toolForm(context, "docstart2"), ui(std::make_unique<Ui::startForm>()),
      launcher_(context.shell.makeLauncher(prompts()))
{
    ui->setupUi(this);
    for (const PortNumber port : allPorts)
        ui->comPort->addItem(toQt(portName(port)));
    for (const int speed : lineSpeeds)
        ui->comSpeed->addItem(QString::number(speed));
    gate().run([this] { launcher_.load(); });

    // Choosing the entry that is shown counts, too: it makes a choice for this run one for good.
    on(ui->comPort, &QComboBox::activated, &startForm::comPort_Click);
    on(ui->comSpeed, &QComboBox::activated, &startForm::comSpeed_Click);
    connectToolButton(ui->getCodes, Tool::codes);
    connectToolButton(ui->editDTC, Tool::dtcEditor);
    connectToolButton(ui->vehicleReport, Tool::vehicleReport);
    connectToolButton(ui->pollDesign2, Tool::pollDesigner);
    connectToolButton(ui->obdPoll, Tool::pollRunner);
    connectToolButton(ui->scanner, Tool::scanner);
    connectToolButton(ui->debugger, Tool::terminal);
    onTrigger(ui->mnuPorts, &startForm::mnuPorts_Click);
    onTrigger(ui->mnuCheckConn, &startForm::mnuCheckConn_Click);
    onTrigger(ui->mnuSetUpDtc, &startForm::mnuSetUpDtc_Click);
    onTrigger(ui->mnuShowReg, &startForm::mnuShowReg_Click);
    onTrigger(ui->mnuClearReg, &startForm::mnuClearReg_Click);
    portWatch_.onTick = [this] { lookAtPorts(); };
    portWatch_.setInterval(portWatchInterval);
    setUpMenu(ui->mnuExit, ui->mnuAbout, ui->mnuHelp);
    setUpLogos({ui->logo, ui->logo2});
    setUpWindow();
    paint();
}

startForm::~startForm() = default;

void startForm::connectToolButton(QPushButton* button, Tool tool)
{
    on(button, &QPushButton::clicked, [this, tool] { context().shell.openTool(launcher_.click(tool)); });
}

void startForm::Form_Unload() { launcher_.unload(); }

void startForm::showEvent(QShowEvent* event)
{
    toolForm::showEvent(event);
    portWatch_.setEnabled(true);
    QTimer::singleShot(0, this, [this] { gate().run([this] { lookAtPorts(); }); }); // the window comes first
}

void startForm::offerUnsavedWork(std::chrono::system_clock::time_point since)
{
    gate().run([this, since] {
        if (const auto tool = launcher_.offerUnsavedWork(since))
            context().shell.recoverIn(*tool);
    });
}

void startForm::showAgain()
{
    paint();
    windowHandle()->setPosition(place_); // move() would pass nothing on, for the widget is there already
    show();
}

void startForm::hideEvent(QHideEvent* event)
{
    portWatch_.setEnabled(false);
    place_ = geometry().topLeft();
    toolForm::hideEvent(event);
}

void startForm::comPort_Click(int position)
{
    launcher_.choosePort(position);
    paint();
}

void startForm::comSpeed_Click(int position) { launcher_.chooseSpeed(position); }

void startForm::mnuPorts_Click()
{
    context().shell.assignPorts();
    lookAtPorts();
}

void startForm::mnuCheckConn_Click() { context().shell.openTool(Tool::doctor); }

void startForm::mnuSetUpDtc_Click() { launcher_.setUpDescriptions(); }

void startForm::mnuShowReg_Click() { launcher_.showDefaults(); }

void startForm::mnuClearReg_Click() { launcher_.clearDefaults(); }

void startForm::lookAtPorts()
{
    if (launcher_.refreshPortInfo())
        paint();
}

void startForm::paint()
{
    const StartPanel& p = launcher_.panel();
    setWindowTitle(toQt(p.caption));
    ui->comPort->setCurrentIndex(p.comPort);
    ui->comSpeed->setCurrentIndex(p.comSpeed);
    ui->comSpeed->setEnabled(p.comSpeedEnabled);
    for (std::size_t i = 0; i < p.portTips.size(); ++i)
        ui->comPort->setItemData(static_cast<int>(i), tipText(p.portTips[i]), Qt::ToolTipRole);
    display(*ui->speedHint, p.speedHint);
    ui->speedHint->setVisible(!p.speedHint.empty());
    display(*ui->portInfo, p.portInfo);
    ui->portInfo->setToolTip(tipText(p.portInfo)); // a long description may not fit
}

} // namespace zint
