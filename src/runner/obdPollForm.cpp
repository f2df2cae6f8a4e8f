#include "runner/obdPollForm.h"

#include "platform/dateText.h"
#include "platform/text.h"
#include "platform/windowPrinter.h"
#include "runner/liveChart.h"
#include "runner/pollGridModel.h"
#include "runner/pollPrintout.h"
#include "runner/ui_obdPollForm.h"

#include <QHeaderView>

#include <cmath>
#include <utility>

namespace zint {

obdPollForm::obdPollForm(ToolContext& context)
    : toolForm(context, "docpldat2"), ui(std::make_unique<Ui::obdPollForm>()),
      MSComm1(context.makePort(gate(), context.connection())), Timer1(gate()), ticker_(gate()),
      CommonDialog1(*this), kept_(context.userDataFolder + "/runs", dateText),
      poller_({.port = *MSComm1,
               .timer = Timer1,
               .ticker = ticker_,
               .clock = clock_,
               .prompts = prompts(),
               .dialogs = CommonDialog1,
               .values = context.values,
               .kept = kept_,
               .dateText = dateText},
              context.connection(), context.design),
      grid_(std::make_unique<PollGridModel>())
{
    ui->setupUi(this);
    setUpGrid();
    setUpToolbar();
    setUpChart();
    connectActions();
    poller_.onChanged = [this] { paint(); };
    setUpCommonControls();
    gate().run([this] { poller_.load(); });
    ui->obdGrid->resizeColumnsToContents();
}

obdPollForm::~obdPollForm() = default;

void obdPollForm::Form_Unload() { poller_.unload(); }

bool obdPollForm::printOn(QPrinter& printer)
{
    return printDocument(pollPrintout(poller_, dateText), printer);
}

void obdPollForm::mnuDesigner_Click()
{
    context().goDesigning();
    close();
}

void obdPollForm::setUpGrid()
{
    constexpr int rowMargin = 8;
    ui->obdGrid->setModel(grid_.get());
    ui->obdGrid->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + rowMargin);
    ui->obdGrid->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    ui->obdGrid->horizontalHeader()->setHighlightSections(false);
    ui->pages->tabBar()->setAutoHide(true); // a page by itself needs no tab
}

void obdPollForm::setUpToolbar()
{
    nameToolButtons(*ui->Toolbar1, {{ui->mnuResetVal, "newPoll"},
                                    {ui->mnuSaveLog, "saveData"},
                                    {ui->mnuLoadLog, "loadData"},
                                    {ui->mnuPrint, "printDesign"},
                                    {ui->mnuExportLog, "exportData"},
                                    {ui->mnuDesigner, "openDesign"}});
}

void obdPollForm::setUpChart()
{
    chart_ = makeLiveChart({gate(), CommonDialog1, context().values}, ui->pages);
    if (chart_ == nullptr)
        return;
    chart_->setRun(context().design, poller_.samples());
    ui->pages->addTab(chart_, tr("&Chart"));
}

void obdPollForm::connectActions()
{
    const auto forward = [this](QAction* action, void (Poller::*operation)()) {
        connect(action, &QAction::triggered, this,
                [this, operation] { gate().run([this, operation] { (poller_.*operation)(); }); });
    };
    forward(ui->mnuResetVal, &Poller::resetValues);
    forward(ui->mnuSaveLog, &Poller::saveLog);
    forward(ui->mnuSaveLogAs, &Poller::saveLogAs);
    forward(ui->mnuRecover, &Poller::recover);
    forward(ui->mnuExportLog, &Poller::exportLog);
    forward(ui->mnuExportLogAs, &Poller::exportLogAs);
    forward(ui->mnuDebugLog, &Poller::debugLog);
    forward(ui->mnuComStart, &Poller::pressStart);
    connect(ui->comStart, &QPushButton::clicked, ui->mnuComStart, &QAction::trigger);
    onTrigger(ui->mnuDesigner, &obdPollForm::mnuDesigner_Click);
    ui->mnuDesigner->setEnabled(context().goDesigning != nullptr);
    connect(ui->textSampleCnt, &QLineEdit::textEdited, this,
            [this](const QString& text) { poller_.setMaxLoops(fromQt(text)); });
    connect(ui->scnUpdate, &QLineEdit::textEdited, this,
            [this](const QString& text) { poller_.setRefresh(fromQt(text)); });
}

void obdPollForm::paint()
{
    const PollPanel& p = poller_.panel();
    display(*ui->titleLab, p.titleLab);
    display(*ui->statusBox, p.statusBox);
    display(*ui->statLab1, p.statLab1);
    display(*ui->labelStats, p.labelStats);
    for (const auto& [box, shown] :
         {std::pair{ui->textSampleCnt, p.textSampleCnt}, {ui->scnUpdate, p.scnUpdate}}) {
        if (const QString text = toQt(shown.text); box->text() != text)
            box->setText(text);
        box->setEnabled(shown.enabled);
    }
    display(*ui->comStart, {.caption = p.comStart});
    ui->comStart->setIcon(QIcon::fromTheme(poller_.isPolling() ? QStringLiteral("media-playback-stop")
                                                               : QStringLiteral("media-playback-start")));
    display(*ui->ProgressBar1, p.ProgressBar1);
    grid_->refresh(p.obdGrid);
    if (chart_ != nullptr)
        chart_->setRunning(poller_.isPolling());
}

} // namespace zint
