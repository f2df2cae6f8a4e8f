#include "codes/codesForm.h"

#include "codes/ui_codesForm.h"
#include "platform/text.h"

#include <QFontInfo>

namespace zint {
namespace {

/// Small and in a faint colour: it is there to be found, not to be noticed.
void makeQuiet(QLabel& label)
{
    QFont font = label.font();
    font.setPointSizeF(QFontInfo(font).pointSizeF() * 0.9);
    label.setFont(font);
    label.setForegroundRole(QPalette::PlaceholderText);
}

} // namespace

codesForm::codesForm(ToolContext& context)
    : toolForm(context, "docchken2"), ui(std::make_unique<Ui::codesForm>()),
      MSComm1(context.makePort(gate(), context.connection())), Timer1(gate()),
      descriptions_(context.values.parmDTCdb, context.values.descriptionsFile),
      exchange_(*MSComm1, Timer1, context.connection(), descriptions_, prompts(), context.values)
{
    ui->setupUi(this);
    ui->codesScroll->viewport()->setAutoFillBackground(false); // one colour with its frame
    ui->codesScrollContents->setAutoFillBackground(false);
    makeQuiet(*ui->noDescriptions);
    monitors_ = {ui->misfireLab,        ui->fuelLab,      ui->componentLab, ui->catalystLab,
                 ui->heatedCatalystLab, ui->evapLab,      ui->secAirLab,    ui->acLab,
                 ui->oxySensorLab,      ui->oxyHeaterLab, ui->egrLab};
    onClick(ui->getCodes, &codesForm::getCodes_Click);
    onClick(ui->clearCodes, &codesForm::clearCodes_Click);
    onTrigger(ui->ftc, &codesForm::ftc_Click);
    exchange_.onChanged = [this] { paint(); };
    setUpCommonControls();
    paint();
}

codesForm::~codesForm() = default;

void codesForm::Form_Unload() { exchange_.unload(); }

void codesForm::getCodes_Click() { exchange_.pressGetCodes(); }

void codesForm::clearCodes_Click() { exchange_.pressClearCodes(); }

void codesForm::ftc_Click() { context().openFailedConn(*this); }

void codesForm::paint()
{
    const CodesPanel& p = exchange_.panel();
    display(*ui->statusBox, p.statusBox);
    display(*ui->labelStats, p.labelStats);
    display(*ui->getCodes, p.getCodes);
    display(*ui->clearCodes, p.clearCodes);
    display(*ui->stateMIL, p.stateMIL);
    display(*ui->codesOutput, p.codesOutput);
    display(*ui->noDescriptions, p.noDescriptions);
    ui->noDescriptions->setVisible(!p.noDescriptions.empty());
    ui->diagCodeFrame->setTitle(toQt(p.diagCodeFrame));
    for (std::size_t i = 0; i < monitors_.size(); ++i)
        display(*monitors_[i], p.readiness[i]);
}

} // namespace zint
