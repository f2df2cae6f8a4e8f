#include "report/window/reportForm.h"

#include "platform/dateText.h"
#include "platform/text.h"
#include "report/reportJson.h"
#include "report/window/ui_reportForm.h"
#include "shared/textFile.h"
#include "widgets/display.h"
#include "widgets/windowPrinter.h"

#include <QClipboard>
#include <QEvent>
#include <QGuiApplication>
#include <QPrinter>
#include <QShortcut>

#include <algorithm>

namespace zint {
namespace {

constexpr const char* reportSettings = "Vehicle Report";

const FileKinds reportKinds{.extension = "html",
                            .filter = "Web page (*.html)|*.html|PDF (*.pdf)|*.pdf|" + textFileKinds.filter};

/// What marked cells look like on a page of the window's colours.
QString styleFor(const QPalette& palette)
{
    constexpr int half = 128;
    return palette.color(QPalette::Base).lightness() < half
               ? QStringLiteral(
                     "th { text-align: left; } .m1 { background: #1d4a1d; } .m2 { background: #5a4a00; } "
                     ".m3 { background: #6a2020; }")
               : QStringLiteral(
                     "th { text-align: left; } .m1 { background: #d8f0d8; } .m2 { background: #fdf0c0; } "
                     ".m3 { background: #f8d0d0; }");
}

QString titleOf(const ReportSection& section)
{
    const std::string word = wordOf(section.mark);
    return toQt(section.title + (word.empty() ? "" : " - " + word));
}

} // namespace

reportForm::reportForm(ToolContext& context)
    : toolForm(context, "docreprt2"), ui(std::make_unique<Ui::reportForm>()),
      MSComm1(context.shell.makePort(gate(), context.shell.connection())), Timer1(gate()), silence_(gate()),
      descriptions_(context.values.parmDTCdb, context.values.descriptionsFile), kept_(context.userDataFolder),
      report_({.line = {*MSComm1, context.shell.connection(), Timer1, &silence_},
               .clock = clock_,
               .prompts = prompts(),
               .keep = [this](const VehicleFacts& facts) { return keep(facts); }})
{
    ui->setupUi(this);
    ui->splitter->setStretchFactor(1, 1);
    ui->mnuKeep->setChecked(context.settings.get(reportSettings, "keep", "1") == "1");
    setUpKeys();
    onClick(ui->readReport, &reportForm::readReport_Click);
    onClick(ui->clearCodes, &reportForm::clearCodes_Click);
    on(ui->sections, &QListWidget::currentRowChanged, [this] { showDetails(); });
    onAsking(ui->mnuSaveReport, &QAction::triggered, [this] { mnuSaveReport_Click(); });
    onTrigger(ui->mnuCopy, &reportForm::mnuCopy_Click);
    onTrigger(ui->ftc, &reportForm::ftc_Click);
    report_.onChanged = [this] { paint(); };
    setUpPrinting(ui->mnuPrintSetup, ui->mnuPrintOut);
    setUpTool(*ui);
    paint();
}

reportForm::~reportForm() = default;

void reportForm::Form_Unload()
{
    context().settings.save(reportSettings, "keep", ui->mnuKeep->isChecked() ? "1" : "0");
    report_.unload();
}

void reportForm::readReport_Click() { report_.pressReadReport(ui->quick->isChecked()); }

void reportForm::clearCodes_Click() { report_.pressClearCodes(); }

void reportForm::ftc_Click() { context().shell.openFailedConn(*this); }

ReportHead reportForm::head() const { return headOf(report_.facts(), longDateText, report_.failure()); }

void reportForm::mnuSaveReport_Click()
{
    const std::string path =
        CommonDialog1.chooseToSave(reportKinds, context().values.parmInitDir, "vehicle-report.html");
    if (!path.empty())
        gate().run([this, path] { save(path); });
}

/// The name's ending tells the form.
void reportForm::save(const std::string& path)
{
    const std::string html = reportHtml(head(), shown_);
    if (path.ends_with(".pdf")) {
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(toQt(path));
        requireWritable(path);
        if (!printDocument(html, printer))
            throw FileError("\"" + path + "\" can't be written");
    } else {
        const std::string text = path.ends_with(".txt") ? reportText(head(), shown_) : html;
        replaceFile(path, [&text](std::ostream& stream) { stream << text; });
    }
    context().values.rememberFolderOf(path);
    display(*ui->statusBox, fileNamePart(path) + " saved");
}

bool reportForm::keep(const VehicleFacts& facts)
{
    if (ui->mnuKeep->isChecked())
        kept_.keep(facts, reportJson(headOf(facts, longDateText, report_.failure()), facts));
    return ui->mnuKeep->isChecked();
}

void reportForm::mnuCopy_Click() { QGuiApplication::clipboard()->setText(toQt(reportText(head(), shown_))); }

bool reportForm::printOn(QPrinter& printer) { return printDocument(reportHtml(head(), shown_), printer); }

void reportForm::changeEvent(QEvent* event)
{
    toolForm::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        showDetails();
}

/// The buttons' captions come and go and bear no keys.
void reportForm::setUpKeys()
{
    const std::pair<const char*, QPushButton*> keys[] = {
        {"Alt+R", ui->readReport}, {"Alt+C", ui->clearCodes}, {"Alt+B", ui->backCom}};
    for (const auto& [key, button] : keys) {
        auto* const shortcut = new QShortcut(QKeySequence(QLatin1String(key)), this);
        connect(shortcut, &QShortcut::activated, button, &QPushButton::click); // which passes the gate
    }
}

void reportForm::paint()
{
    const ReportPanel& p = report_.panel();
    display(*ui->readReport, p.readReport);
    display(*ui->clearCodes, p.clearCodes);
    ui->quick->setEnabled(!report_.isRunning());
    display(*ui->headline, report_.failure().empty() ? p.headline : report_.failure() + " " + p.headline);
    display(*ui->statusBox, p.statusBox);
    display(*ui->labelStats, p.labelStats);
    display(*ui->ProgressBar1, p.ProgressBar1);
    const bool isRead = !report_.isRunning() && !report_.facts().units.empty();
    for (QAction* entry : {ui->mnuSaveReport, ui->mnuCopy})
        entry->setEnabled(isRead);
    if (isRead && report_.reportCount() != shownReport_)
        showSections();
}

void reportForm::showSections()
{
    shownReport_ = report_.reportCount();
    const auto descriptions = descriptions_.available() ? descriptions_.open() : nullptr;
    shown_ = sectionsOf(report_.facts(), descriptions.get());
    if (!report_.clearedLines().empty())
        shown_.insert(shown_.begin(), clearedSection(report_.clearedLines()));
    const int row = std::max(ui->sections->currentRow(), 0);
    ui->sections->clear();
    for (const ReportSection& section : shown_)
        ui->sections->addItem(titleOf(section));
    ui->sections->setCurrentRow(row);
}

void reportForm::showDetails()
{
    const auto row = static_cast<std::size_t>(std::max(ui->sections->currentRow(), 0));
    ui->details->document()->setDefaultStyleSheet(styleFor(palette()));
    ui->details->setHtml(row < shown_.size() ? toQt(sectionHtml(shown_[row])) : QString());
}

} // namespace zint
