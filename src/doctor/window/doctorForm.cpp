#include "doctor/window/doctorForm.h"

#include "doctor/doctorPanel.h"
#include "doctor/window/ui_doctorForm.h"
#include "platform/dateText.h"
#include "platform/text.h"
#include "shared/programInfo.h"
#include "widgets/display.h"
#include "widgets/icons.h"

#include <QClipboard>
#include <QEvent>
#include <QGuiApplication>
#include <QPixmap>
#include <QTimer>

#include <array>

namespace zint {
namespace {

/// "Stop" pressed while a network's adapter is sought comes when it was not found, and is no "Check" then.
constexpr std::chrono::milliseconds lateStop{200};

QIcon iconOf(StepMark mark)
{
    static constexpr std::array names = {
        "", "", "zint-mark-ok", "zint-mark-attention", "zint-mark-failed", "zint-mark-unsupported"};
    const QLatin1String name(names.at(static_cast<std::size_t>(mark)));
    if (!name.isEmpty())
        return ownIcon(name);
    QPixmap room(32, 32); // for a mark that is still to come
    room.fill(Qt::transparent);
    return room;
}

} // namespace

doctorForm::doctorForm(ToolContext& context)
    : toolForm(context, "docdoctr2"), ui(std::make_unique<Ui::doctorForm>()),
      usedPort_(context.shell.connection().port), Timer1(gate())
{
    ui->setupUi(this);
    for (const DiagnosisStep& step : emptyDiagnosis({}).steps)
        new QListWidgetItem(toQt(textOf(step)), ui->steps);
    listPorts();
    makeDoctor();
    setUpKeys({{"Alt+C", ui->check}, {"Alt+T", ui->takeOver}, {"Alt+B", ui->backCom}});
    onClick(ui->check, &doctorForm::check_Click);
    onClick(ui->takeOver, &doctorForm::takeOver_Click);
    onClick(ui->copyText, &doctorForm::copyText_Click);
    onTrigger(ui->mnuCopy, &doctorForm::copyText_Click);
    on(ui->portChooser, &QComboBox::activated, [this] { portChooser_Click(); });
    setUpTool(*ui);
    paint();
}

doctorForm::~doctorForm() = default;

void doctorForm::beginSoon()
{
    QTimer::singleShot(0, this, [this] { gate().run([this] { check_Click(); }); });
}

void doctorForm::Form_Unload() { doctor_->unload(); }

void doctorForm::changeEvent(QEvent* event)
{
    toolForm::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        paintSteps();
}

/// The ports that stand for something, and the one in use.
void doctorForm::listPorts()
{
    const PortNumber chosen = chosenPort();
    const PortDirectory& ports = context().shell.portDirectory();
    const std::vector<DetectedPort> detected = ports.detected();
    ui->portChooser->clear();
    for (const PortNumber port : allPorts) {
        const PortDirectory::Target target = ports.target(port, detected);
        if (!target.connected && port != usedPort_)
            continue;
        ui->portChooser->addItem(toQt(portName(port) + " - " + target.text()), static_cast<int>(port));
        if (port == chosen)
            ui->portChooser->setCurrentIndex(ui->portChooser->count() - 1);
    }
}

PortNumber doctorForm::chosenPort() const
{
    const QVariant port = ui->portChooser->currentData();
    return port.isValid() ? PortNumber{port.toInt()} : usedPort_;
}

void doctorForm::makeDoctor()
{
    doctor_.reset();
    ConnectionChoice choice = context().shell.connection();
    choice.port = chosenPort();
    MSComm1 = context().shell.makePort(gate(), choice);
    doctor_.emplace(ConnectionDoctor::Surroundings{
        .port = *MSComm1, .timer = Timer1, .clock = clock_, .inspector = inspector_});
    doctor_->onChanged = [this] { paint(); };
}

void doctorForm::check_Click()
{
    if (clock_.monotonic() < deafUntil_)
        return;
    if (doctor_->isRunning()) {
        doctor_->stop();
        return;
    }
    listPorts();
    const PortDirectory& ports = context().shell.portDirectory();
    std::vector<DetectedPort> detected = ports.detected();
    std::string location = ports.target(chosenPort(), detected).location;
    doctor_->begin({.port = chosenPort(),
                    .location = std::move(location),
                    .bitsPerSecond = context().shell.connection().bitsPerSecond,
                    .detected = std::move(detected)},
                   ConnectionDoctor::Scope::whole);
    if (!doctor_->isRunning())
        deafUntil_ = clock_.monotonic() + lateStop;
}

void doctorForm::takeOver_Click()
{
    const std::optional<int> speed = doctor_->otherSpeed();
    usedPort_ = chosenPort();
    context().shell.useConnection(usedPort_, speed);
    listPorts();
    makeDoctor();
    paint();
    display(*ui->statusBox,
            portName(usedPort_) + (speed ? " at " + std::to_string(*speed) : "") + " is used from now on");
}

void doctorForm::copyText_Click()
{
    const std::string head =
        programInfo().productName + " " + programInfo().version() + ", " + longDateText(clock_.wall()) + "\n";
    QGuiApplication::clipboard()->setText(toQt(diagnosisText(doctor_->diagnosis(), head)));
    display(*ui->statusBox, "Copied");
}

void doctorForm::portChooser_Click()
{
    makeDoctor();
    paint();
}

void doctorForm::paint()
{
    const DoctorPanel p = panelOf(*doctor_, chosenPort() != usedPort_);
    const bool isRunning = doctor_->isRunning();
    display(*ui->check, p.check, isRunning ? "media-playback-stop" : "media-playback-start");
    display(*ui->takeOver, p.takeOver);
    ui->portChooser->setEnabled(!isRunning);
    const bool hasText = !isRunning && !p.headline.empty();
    ui->copyText->setEnabled(hasText);
    ui->mnuCopy->setEnabled(hasText);
    display(*ui->headline, p.headline);
    display(*ui->statusBox, p.statusBox);
    display(*ui->ProgressBar1, p.ProgressBar1);
    paintSteps();
}

void doctorForm::paintSteps()
{
    const std::vector<DiagnosisStep>& steps = doctor_->diagnosis().steps;
    for (int row = 0; row < ui->steps->count(); ++row) {
        QListWidgetItem& item = *ui->steps->item(row);
        const DiagnosisStep& step = steps.at(static_cast<std::size_t>(row));
        if (const QString text = toQtLines(textOf(step)); item.text() != text)
            item.setText(text);
        item.setIcon(iconOf(step.mark));
    }
}

} // namespace zint
