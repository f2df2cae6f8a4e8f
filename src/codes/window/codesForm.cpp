#include "codes/window/codesForm.h"

#include "codes/codesReport.h"
#include "codes/window/ui_codesForm.h"
#include "platform/dateText.h"
#include "platform/text.h"
#include "widgets/display.h"

#include <QClipboard>
#include <QFontInfo>
#include <QGuiApplication>

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

/// Takes no place while it has nothing to say.
void displayIfAny(QLabel& label, std::string text)
{
    while (text.ends_with('\n') || text.ends_with('\r'))
        text.pop_back();
    display(label, text);
    label.setVisible(!text.empty());
}

} // namespace

codesForm::codesForm(ToolContext& context)
    : toolForm(context, "docchken2"), ui(std::make_unique<Ui::codesForm>()),
      MSComm1(context.shell.makePort(gate(), context.shell.connection())), Timer1(gate()), silence_(gate()),
      descriptions_(context.values.parmDTCdb, context.values.descriptionsFile),
      exchange_({.line = {*MSComm1, context.shell.connection(), Timer1, &silence_},
                 .clock = clock_,
                 .descriptions = descriptions_,
                 .prompts = prompts(),
                 .values = context.values})
{
    ui->setupUi(this);
    setUpList();
    setUpKeys({{"Alt+G", ui->getCodes}, {"Alt+C", ui->clearCodes}, {"Alt+B", ui->backCom}});
    for (std::size_t i = 0; i < monitors_.size(); ++i)
        monitors_[i] = findChild<QLabel*>(toQt(monitorLabel(i)));
    onClick(ui->getCodes, &codesForm::getCodes_Click);
    onClick(ui->clearCodes, &codesForm::clearCodes_Click);
    onClick(ui->labelStats, &codesForm::labelStats_Click);
    onTrigger(ui->ftc, &codesForm::ftc_Click);
    onTrigger(ui->mnuSaveReport, &codesForm::mnuSaveReport_Click);
    exchange_.onChanged = [this] { paint(); };
    setUpPrinting(ui->mnuPrintSetup, ui->mnuPrintOut);
    setUpTool(*ui);
    paint();
}

codesForm::~codesForm() = default;

void codesForm::Form_Unload() { exchange_.unload(); }

void codesForm::getCodes_Click() { exchange_.pressGetCodes(); }

void codesForm::clearCodes_Click() { exchange_.pressClearCodes(); }

void codesForm::labelStats_Click() { exchange_.showStatistics(); }

void codesForm::ftc_Click() { context().shell.openFailedConn(*this); }

void codesForm::mnuSaveReport_Click()
{
    const std::string told = saveReport(CommonDialog1, context().values, exchange_.reading(), longDateText);
    if (!told.empty())
        exchange_.showStatus(told);
}

void codesForm::setUpList()
{
    ui->codesScroll->viewport()->setAutoFillBackground(false); // one colour with its frame
    ui->codesScrollContents->setAutoFillBackground(false);
    makeQuiet(*ui->notes);
    makeQuiet(*ui->noDescriptions);
    auto* const copy = new QAction(tr("&Copy"), this);
    onTrigger(copy, &codesForm::copyCodes);
    ui->codesScroll->addAction(copy);
    ui->codesScroll->setContextMenuPolicy(Qt::ActionsContextMenu);
    for (QLabel* label : {ui->canWarning, ui->codesOutput})
        label->setContextMenuPolicy(Qt::NoContextMenu); // the menu of the list, wherever it is opened
}

/// What is selected, or else the whole list.
void codesForm::copyCodes()
{
    QStringList texts;
    for (const QLabel* label : {ui->canWarning, ui->codesOutput})
        texts += label->selectedText().replace(QChar::ParagraphSeparator, u'\n');
    texts.removeAll(QString());
    if (texts.isEmpty())
        texts = {ui->canWarning->text(), ui->codesOutput->text()};
    texts.removeAll(QString());
    QGuiApplication::clipboard()->setText(texts.join(u'\n'));
}

void codesForm::paint()
{
    const CodesPanel& p = exchange_.panel();
    display(*ui->statusBox, p.statusBox);
    display(*ui->labelStats, {.caption = p.labelStats});
    display(*ui->getCodes, p.getCodes);
    display(*ui->clearCodes, p.clearCodes);
    display(*ui->stateMIL, p.stateMIL);
    displayIfAny(*ui->canWarning, p.canWarning);
    display(*ui->codesOutput, p.codesOutput);
    displayIfAny(*ui->notes, p.notes);
    displayIfAny(*ui->noDescriptions, p.noDescriptions);
    ui->mnuSaveReport->setEnabled(p.canSaveReport);
    ui->diagCodeFrame->setTitle(toQt(p.diagCodeFrame));
    for (std::size_t i = 0; i < monitors_.size(); ++i)
        display(*monitors_[i], p.readiness[i]);
}

} // namespace zint
