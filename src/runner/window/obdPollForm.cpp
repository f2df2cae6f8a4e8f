#include "runner/window/obdPollForm.h"

#include "chart/window/gauges.h"
#include "chart/window/liveChart.h"
#include "parameters/parametersFile.h"
#include "platform/dateText.h"
#include "platform/text.h"
#include "runner/pollPrintout.h"
#include "runner/window/pollGridModel.h"
#include "runner/window/ui_obdPollForm.h"
#include "shared/module1.h"
#include "widgets/display.h"
#include "widgets/windowPrinter.h"

#include <QHeaderView>
#include <QLocale>
#include <QTimer>

#include <algorithm>
#include <optional>
#include <utility>

namespace zint {
namespace {

constexpr const char* settingsSection = "Poll Data";

} // namespace

obdPollForm::obdPollForm(ToolContext& context)
    : toolForm(context, "docpldat2"), ui(std::make_unique<Ui::obdPollForm>()),
      MSComm1(context.shell.makePort(gate(), context.shell.connection())), Timer1(gate()), silence_(gate()),
      ticker_(gate()), CommonDialog1(*this), kept_(context.userDataFolder, dateText),
      poller_({.line = {*MSComm1, context.shell.connection(), Timer1, &silence_},
               .ticker = ticker_,
               .clock = clock_,
               .prompts = prompts(),
               .values = context.values,
               .kept = kept_,
               .dateText = dateText,
               .define = [file = ParametersFile(context.userDataFolder)](
                             Design& design, const std::string& path) { defineBeside(design, path, file); },
               .device = [&context] { return context.shell.connection().device; }},
              context.design),
      recent_(context.settings, settingsSection), grid_(std::make_unique<PollGridModel>())
{
    ui->setupUi(this);
    setUpGrid();
    setUpToolbar();
    setUpChart();
    setUpRecent();
    connectActions();
    poller_.onChanged = [this] { paint(); };
    poller_.onDesignChanged = [this] { choice_.list(poller_.design()); };
    poller_.onLog = [this](const std::string& path) {
        recent_.add(path);
        paintRecent();
    };
    setUpPrinting(ui->mnuprintSetup, ui->mnuPrint);
    setUpTool(*ui);
    restoreBoxes();
    gate().run([this] { poller_.load(); });
    ui->obdGrid->resizeColumnsToContents();
}

obdPollForm::~obdPollForm() = default;

void obdPollForm::Form_Unload()
{
    poller_.unload();
    context().settings.save(settingsSection, "scnUpdate", std::to_string(poller_.refreshSeconds()));
    context().settings.save(settingsSection, "reconnect", poller_.panel().reconnect ? "1" : "0");
    context().settings.save(settingsSection, "combine", poller_.panel().combine ? "1" : "0");
    context().settings.save(settingsSection, "decimalComma", ui->mnuDecimalComma->isChecked() ? "1" : "0");
}

void obdPollForm::restoreBoxes()
{
    letReconnect(context().settings.get(settingsSection, "reconnect") == "1");
    poller_.letCombine(context().settings.get(settingsSection, "combine") == "1");
    const char* const usual = QLocale().decimalPoint() == u',' ? "1" : "0";
    useDecimalComma(context().settings.get(settingsSection, "decimalComma", usual) == "1");
    if (const std::string stored = context().settings.get(settingsSection, "scnUpdate"); !stored.empty())
        poller_.setRefresh(stored);
}

void obdPollForm::letReconnect(bool isAllowed)
{
    poller_.letReconnect(isAllowed ? Reconnection::Patience(Reconnection::withoutEnd) : std::nullopt);
}

void obdPollForm::useDecimalComma(bool isWanted)
{
    ui->mnuDecimalComma->setChecked(isWanted);
    poller_.useDecimals(isWanted ? Decimals::comma : Decimals::point);
}

bool obdPollForm::printOn(QPrinter& printer)
{
    return printDocument(pollPrintout(poller_, dateText), printer);
}

void obdPollForm::mnuDesigner_Click()
{
    context().shell.switchTo(Tool::pollDesigner);
    close();
}

void obdPollForm::setUpGrid()
{
    constexpr int rowMargin = 8;
    ui->obdGrid->setModel(grid_.get());
    ui->obdGrid->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + rowMargin);
    ui->obdGrid->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    ui->obdGrid->horizontalHeader()->setHighlightSections(false);
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
    choice_.list(poller_.design());
    chart_ = new LiveChart({.design = [this]() -> const Design& { return poller_.design(); },
                            .samples = poller_.samples(),
                            .choice = choice_,
                            .prompts = prompts(),
                            .dialogs = CommonDialog1,
                            .values = context().values,
                            .ask = [this](const std::function<void()>& questions) { ask(questions); }},
                           ui->pages);
    ui->pages->addTab(chart_, tr("&Chart"));
    gauges_ = new Gauges({.design = [this]() -> const Design& { return poller_.design(); },
                          .samples = poller_.samples(),
                          .choice = choice_},
                         ui->pages);
    ui->pages->addTab(gauges_, tr("&Gauges"));
    setTabOrder(previousInFocusChain(), ui->backCom); // behind the pages, as they are seen
    setTabOrder(ui->backCom, ui->comStart);
}

/// The entries stay, so that none goes while it is being chosen.
void obdPollForm::setUpRecent()
{
    QAction* const behind = ui->mnuRecent->actions().first();
    for (std::size_t place = 0; place < RecentFiles::most; ++place) {
        auto* const entry = new QAction(this);
        entry->setObjectName(QStringLiteral("mnuRecent%1").arg(place + 1));
        ui->mnuRecent->insertAction(behind, entry);
        recentEntries_.push_back(entry);
        onAsking(entry, &QAction::triggered, [this, entry] { openRecent(fromQt(entry->data().toString())); });
    }
    on(ui->mnuClearRecent, &QAction::triggered, [this] {
        recent_.clear();
        paintRecent();
    });
    paintRecent();
}

void obdPollForm::connectActions()
{
    using Kind = RunFiles::Kind;
    using Name = RunFiles::Name;
    const auto does = [this](QAction* action, void (Poller::*operation)()) {
        on(action, &QAction::triggered, [this, operation] { (poller_.*operation)(); });
    };
    const auto takes = [this](QLineEdit* box, void (Poller::*take)(const std::string&)) {
        on(box, &QLineEdit::textEdited, [this, take](const QString& text) { (poller_.*take)(fromQt(text)); });
    };
    const auto saves = [this](QAction* action, Kind kind, Name name) {
        onAsking(action, &QAction::triggered, [this, kind, name] { save(kind, name); });
    };
    does(ui->mnuResetVal, &Poller::resetValues);
    does(ui->mnuLoadLog, &Poller::loadLog);
    does(ui->mnuComStart, &Poller::pressStart);
    on(ui->comStart, &QPushButton::clicked, [this] { poller_.pressStart(); });
    saves(ui->mnuSaveLog, Kind::log, Name::usual);
    saves(ui->mnuSaveLogAs, Kind::log, Name::asked);
    saves(ui->mnuExportLog, Kind::table, Name::usual);
    saves(ui->mnuExportLogAs, Kind::table, Name::asked);
    saves(ui->mnuDebugLog, Kind::dump, Name::asked);
    on(ui->mnuDecimalComma, &QAction::triggered, &obdPollForm::useDecimalComma);
    onAsking(ui->mnuOpenLog, &QAction::triggered, [this] {
        if (poller_.mayOpen())
            openLog(poller_.chooseLog(CommonDialog1));
    });
    onAsking(ui->mnuRecover, &QAction::triggered, [this] { recover(); });
    onTrigger(ui->mnuDesigner, &obdPollForm::mnuDesigner_Click);
    takes(ui->textSampleCnt, &Poller::setMaxLoops);
    takes(ui->timeLimit, &Poller::setTimeLimit);
    takes(ui->scnUpdate, &Poller::setRefresh);
    on(ui->reconnect, &QCheckBox::clicked, &obdPollForm::letReconnect);
    on(ui->combine, &QCheckBox::clicked, [this](bool isWanted) { poller_.letCombine(isWanted); });
}

/// Polling goes on while the user chooses a file or reads why it can't be written.
void obdPollForm::save(RunFiles::Kind kind, RunFiles::Name name)
{
    const std::string path = poller_.chooseFile(kind, name, CommonDialog1);
    gate().run([this, kind, path] {
        const std::string failure = poller_.save(kind, path);
        if (!failure.empty())
            QTimer::singleShot(0, this, [this, failure] { ask([&] { prompts().message(failure); }); });
    });
}

void obdPollForm::openLog(const std::string& path)
{
    if (!path.empty())
        gate().run([this, path] { poller_.openLog(path); });
}

void obdPollForm::openRecent(const std::string& path)
{
    if (!poller_.mayOpen())
        return;
    if (fileExists(path)) {
        openLog(path);
        return;
    }
    prompts().message("\"" + path + "\" is no longer there. It leaves the list.");
    recent_.remove(path);
    paintRecent();
}

void obdPollForm::recover()
{
    const auto run = std::make_shared<std::optional<OpenedRun>>(poller_.recover(CommonDialog1));
    if (*run)
        gate().run([this, run] { poller_.showRecovered(std::move(**run)); });
}

/// A file's name as a menu shows it: no longer than the window, and without marks of keys.
QString obdPollForm::entryText(const std::string& name) const
{
    const QString shown = fontMetrics().elidedText(toQt(name), Qt::ElideMiddle, width());
    return QString(shown).replace(u'\t', u' ').replace(u'&', QStringLiteral("&&"));
}

void obdPollForm::paintRecent()
{
    const std::vector<std::string> paths = recent_.paths();
    for (std::size_t place = 0; place < recentEntries_.size(); ++place) {
        QAction* const entry = recentEntries_[place];
        const QString path = place < paths.size() ? toQt(paths[place]) : QString();
        entry->setVisible(!path.isEmpty());
        entry->setData(path);
        entry->setToolTip(path);
        entry->setText(u'&' + QString::number(place + 1) + u' ' + entryText(fileNamePart(fromQt(path))));
    }
    ui->mnuRecent->menuAction()->setEnabled(!paths.empty());
}

void obdPollForm::paint()
{
    const PollPanel& p = poller_.panel();
    display(*ui->titleLab, p.titleLab);
    display(*ui->statusBox, p.statusBox + p.hint + (p.keepFailure.empty() ? "" : " - " + p.keepFailure));
    display(*ui->lengthHint, p.lengthHint);
    display(*ui->statLab1, p.statLab1);
    display(*ui->labelStats, p.labelStats);
    for (const auto& [box, shown] : {std::pair{ui->textSampleCnt, &p.textSampleCnt},
                                     {ui->timeLimit, &p.timeLimit},
                                     {ui->scnUpdate, &p.scnUpdate}}) {
        display(*box, *shown);
        box->setEnabled(!poller_.isPolling()); // what was typed counts from the start on
    }
    ui->reconnect->setChecked(p.reconnect);
    ui->combine->setChecked(p.combine);
    ui->combine->setEnabled(!poller_.isPolling());
    display(*ui->comStart, {.caption = p.comStart},
            poller_.isPolling() ? "media-playback-stop" : "media-playback-start");
    if (const QKeySequence key(Qt::ALT | Qt::Key_S); ui->comStart->shortcut() != key)
        ui->comStart->setShortcut(key); // which a caption without a mark takes away
    display(*ui->ProgressBar1, p.ProgressBar1);
    grid_->refresh(p.obdGrid);
    widenForWords();
    const bool isRunning = poller_.isPolling() && !poller_.isInterrupted();
    chart_->setRunning(isRunning);
    gauges_->setRunning(isRunning);
}

/// Words in place of numbers are longer than these: their column grows with them, up to a third of the grid.
/// What the user makes of it afterwards stays.
void obdPollForm::widenForWords()
{
    constexpr int valueColumn = 1;
    const auto has = [](const PollPanel::Row& row) { return row.isWords || row.minimum.empty(); };
    if (std::ranges::none_of(poller_.panel().obdGrid, has))
        return;
    const QAbstractItemView& grid = *ui->obdGrid;
    const int wanted = std::min(grid.sizeHintForColumn(valueColumn), grid.width() / 3);
    if (wanted <= widestWords_)
        return;
    widestWords_ = wanted;
    if (wanted > ui->obdGrid->columnWidth(valueColumn))
        ui->obdGrid->setColumnWidth(valueColumn, wanted);
}

} // namespace zint
