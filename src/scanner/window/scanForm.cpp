#include "scanner/window/scanForm.h"

#include "platform/dateText.h"
#include "platform/text.h"
#include "scanner/window/calcHdrForm.h"
#include "scanner/window/ui_scanForm.h"
#include "widgets/display.h"
#include "widgets/lostFocus.h"

#include <QApplication>
#include <QKeyEvent>
#include <QStyle>

#include <algorithm>

namespace zint {

scanForm::scanForm(ToolContext& context)
    : outputForm(context, "docscan2"), ui(makeUi()),
      MSComm1(context.shell.makePort(gate(), context.shell.connection())), Timer1(gate()), silence_(gate()),
      scanner_({.line = {*MSComm1, context.shell.connection(), Timer1, &silence_},
                .clock = clock_,
                .prompts = prompts(),
                .outBox = *ui->outBox,
                .dateText = longDateText,
                .beep = &QApplication::beep}),
      boxes_{{
          {ui->cmdHead, &ScanParameters::cmdHead},
          {ui->modeStart, &ScanParameters::modeStart},
          {ui->modeStop, &ScanParameters::modeStop},
          {ui->pidStart, &ScanParameters::pidStart},
          {ui->pidStop, &ScanParameters::pidStop},
          {ui->cmdSuffix, &ScanParameters::cmdSuffix},
      }},
      throttle_([this] { paintThrottled(); })
{
    scanner_.restore(context.settings);
    showDisplay();
    connectControls();
    scanner_.onChanged = [this] { paintNow(); };
    setUpOutputTool(*ui);
    paintNow();
    ui->modeStart->setFocus();
}

scanForm::~scanForm() = default;

/// The scanner needs the output box when it is made.
std::unique_ptr<Ui::scanForm> scanForm::makeUi()
{
    auto controls = std::make_unique<Ui::scanForm>();
    controls->setupUi(this);
    controls->statusBox->setElideMode(
        Qt::ElideMiddle); // why a port fails stands before its path, the remedy behind
    const int side = style()->pixelMetric(QStyle::PM_SmallIconSize);
    controls->warningIcon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(side));
    return controls;
}

void scanForm::Form_Unload()
{
    scanner_.unload();
    scanner_.remember(context().settings);
}

void scanForm::showStatus(const std::string& text) { scanner_.showStatus(text); }

/// The Return key presses the button that has the focus; from a box it begins a scan, but never ends one.
void scanForm::keyPressEvent(QKeyEvent* event)
{
    if (!isReturn(*event) || event->isAutoRepeat()) {
        outputForm::keyPressEvent(event);
        return;
    }
    const bool isInBox = std::ranges::find(boxes_, focusWidget(), &BoxEntry::edit) != boxes_.end();
    pressFocused(isInBox && !scanner_.isScanning() ? ui->comScan : nullptr);
}

/// The menu, a key or another platform may press the button without giving it the focus.
void scanForm::comScan_Click()
{
    ui->comScan->setFocus();
    gate().run([this] { scanner_.pressScan(); }); // comes behind the check of the box that was left
}

void scanForm::calcHdr_Click()
{
    ui->calcHdr->setFocus();
    gate().run([this] { openCalculator(); }); // comes behind the check of the box that was left
}

void scanForm::openCalculator()
{
    auto* dialog = new calcHdrForm(scanner_.boxes().cmdHead, context().settings, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    on(dialog, &QDialog::accepted,
       [this, dialog] { scanner_.type(&ScanParameters::cmdHead, dialog->header()); });
    dialog->open();
}

void scanForm::labelStats_Click() { scanner_.showStatistics(); }

void scanForm::mnuClear_Click() { scanner_.clearOutput(); }

void scanForm::connectControls()
{
    for (const BoxEntry& entry : boxes_) {
        onLostFocus(*entry.edit, [this, box = entry.box] {
            const bool towardsScan = QApplication::focusWidget() == ui->comScan;
            gate().run([this, box, towardsScan] { scanner_.leave(box, towardsScan); });
        });
        on(entry.edit, &QLineEdit::textChanged,
           [this, box = entry.box](const QString& text) { scanner_.type(box, fromQt(text)); });
    }
    for (const QAbstractButton* option :
         std::initializer_list<QAbstractButton*>{ui->displayAll, ui->displayValid, ui->displayNonz,
                                                 ui->displayData, ui->dspDecimal, ui->dspAscii, ui->dspNames})
        on(option, &QAbstractButton::toggled, [this] { takeDisplay(); });
    onClick(ui->comScan, &scanForm::comScan_Click);
    onClick(ui->calcHdr, &scanForm::calcHdr_Click);
    onTrigger(ui->mnuOpenCom, &scanForm::comScan_Click);
    onTrigger(ui->mnuCloseCom, &scanForm::comScan_Click);
    onAsking(ui->labelStats, &QPushButton::clicked,
             [this] { labelStats_Click(); }); // a scan goes on meanwhile
    onTrigger(ui->mnuClear, &scanForm::mnuClear_Click);
}

/// By filter.
std::array<QRadioButton*, 4> scanForm::filterButtons() const
{
    return {ui->displayAll, ui->displayValid, ui->displayNonz, ui->displayData};
}

void scanForm::showDisplay()
{
    const Scanner::Display& chosen = scanner_.display();
    filterButtons().at(static_cast<std::size_t>(chosen.filter))->setChecked(true);
    ui->dspDecimal->setChecked(chosen.dspDecimal);
    ui->dspAscii->setChecked(chosen.dspAscii);
    ui->dspNames->setChecked(chosen.dspNames);
}

void scanForm::takeDisplay()
{
    const auto buttons = filterButtons();
    const auto* const checked = std::ranges::find_if(buttons, &QRadioButton::isChecked);
    scanner_.setDisplay({.filter = static_cast<ScanFilter>(checked - buttons.begin()),
                         .dspDecimal = ui->dspDecimal->isChecked(),
                         .dspAscii = ui->dspAscii->isChecked(),
                         .dspNames = ui->dspNames->isChecked()});
}

void scanForm::paintNow()
{
    const ScanPanel& p = scanner_.panel();
    throttle_.request();
    for (const BoxEntry& entry : boxes_)
        display(*entry.edit, scanner_.boxes().*entry.box);
    display(*ui->comScan, p.comScan, scanner_.isScanning() ? "media-playback-stop" : "media-playback-start");
    display(*ui->warning, p.warning);
    for (QWidget* part : {ui->warningIcon, ui->warning})
        part->setVisible(!p.warning.empty());
    ui->cmdHead->setReadOnly(!p.canChangeHeader);
    ui->calcHdr->setEnabled(p.canChangeHeader);
    ui->mnuOpenCom->setEnabled(p.mnuOpenCom);
    ui->mnuCloseCom->setEnabled(p.mnuCloseCom);
}

/// What changes with each reply.
void scanForm::paintThrottled()
{
    const ScanPanel& p = scanner_.panel();
    display(*ui->statusBox, p.statusBox);
    ui->statusBox->setToolTip(tipText(p.statusBox));
    display(*ui->labelStats, {.caption = p.labelStats});
    display(*ui->ProgressBar1, p.ProgressBar1);
}

} // namespace zint
