#include "scanner/window/calcHdrForm.h"

#include "platform/rememberedSize.h"
#include "platform/text.h"
#include "scanner/window/ui_calcHdrForm.h"
#include "widgets/display.h"
#include "widgets/lostFocus.h"

namespace zint {

calcHdrForm::calcHdrForm(std::string_view header, SettingsStore& settings, QWidget* parent)
    : QDialog(parent), ui(std::make_unique<Ui::calcHdrForm>()), settings_(settings), calculator_(header)
{
    ui->setupUi(this);
    optBit_ = {ui->optBit0, ui->optBit1, ui->optBit2, ui->optBit3,
               ui->optBit4, ui->optBit5, ui->optBit6, ui->optBit7};
    for (std::size_t box = 0; box < optBit_.size(); ++box)
        connect(optBit_.at(box), &QCheckBox::clicked, this, [this, box] { optBit_Click(box); });
    onLostFocus(*ui->prioVal, [this] { prioVal_LostFocus(); });
    onLostFocus(*ui->hdrTarget, [this] { hdrTarget_LostFocus(); });
    onLostFocus(*ui->hdrSource, [this] { hdrSource_LostFocus(); });
    connect(ui->applyCom, &QPushButton::clicked, this, &calcHdrForm::applyCom_Click);
    connect(ui->cancelCom, &QPushButton::clicked, this, &QDialog::reject);
    showPhysicalAddresses();
    paint();
    restoreSize(*this, settings_);
}

calcHdrForm::~calcHdrForm() = default;

void calcHdrForm::done(int result)
{
    rememberSize(*this, settings_);
    QDialog::done(result);
}

void calcHdrForm::optBit_Click(std::size_t box)
{
    const bool isChecked = optBit_.at(box)->isChecked();
    optBit_.at(box)->setFocus(); // not every desktop does so; the box that was left is to be checked first
    calculator_.clickOptBit(box, isChecked);
    paint();
    if (box == HeaderCalculator::addressingBox && isChecked) { // the target is now the user's to type
        ui->hdrTarget->setFocus();
        ui->hdrTarget->selectAll();
    }
}

void calcHdrForm::prioVal_LostFocus()
{
    calculator_.leavePrioVal(fromQt(ui->prioVal->text()));
    paint();
}

void calcHdrForm::hdrTarget_LostFocus()
{
    calculator_.leaveHdrTarget(fromQt(ui->hdrTarget->text()));
    paint();
}

void calcHdrForm::hdrSource_LostFocus()
{
    calculator_.leaveHdrSource(fromQt(ui->hdrSource->text()));
    paint();
}

void calcHdrForm::applyCom_Click()
{
    ui->applyCom->setFocus(); // the Return key leaves it where it is, in a box that is still to be checked
    accept();
}

void calcHdrForm::showPhysicalAddresses()
{
    constexpr int rows = static_cast<int>(physicalAddresses.size() + 1) / 2; // in two columns
    int index = 0;
    for (const AddressRange& range : physicalAddresses) {
        const int column = index / rows * 2;
        ui->guideLayout->addWidget(new QLabel(toQt(range.addresses), ui->guideFrame), index % rows, column);
        ui->guideLayout->addWidget(new QLabel(toQt(range.system), ui->guideFrame), index % rows, column + 1);
        ++index;
    }
    ui->guideLayout->setRowStretch(rows, 1); // the rows stay together when the window grows
}

void calcHdrForm::paint()
{
    const CalcHdrPanel& p = calculator_.panel();
    for (std::size_t box = 0; box < optBit_.size(); ++box)
        optBit_.at(box)->setChecked(p.optBit.at(box));
    ui->prioVal->setText(toQt(p.prioVal));
    display(*ui->hdrOpt, p.hdrOpt);
    ui->targetFrame->setTitle(toQt(p.targetFrame));
    ui->hdrTarget->setText(toQt(p.hdrTarget));
    ui->hdrTarget->setEnabled(p.hdrTargetEnabled);
    ui->hdrSource->setText(toQt(p.hdrSource));
}

} // namespace zint
