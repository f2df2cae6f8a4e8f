#include "report/window/reportForm.h"

#include "parameters/carSupport.h"
#include "platform/dateText.h"
#include "platform/text.h"
#include "report/reportComparison.h"
#include "report/reportJson.h"
#include "report/window/ui_reportForm.h"
#include "shared/textFile.h"
#include "widgets/dark.h"
#include "widgets/display.h"
#include "widgets/icons.h"
#include "widgets/windowPrinter.h"

#include <QClipboard>
#include <QEvent>
#include <QGuiApplication>
#include <QPrinter>

#include <algorithm>
#include <array>

namespace zint {
namespace {

constexpr const char* reportSettings = "Vehicle Report";

const FileKinds reportKinds{.extension = "html",
                            .filter = "Web page (*.html)|*.html|PDF (*.pdf)|*.pdf|JSON (*.json)|*.json|" +
                                      textFileKinds.filter};
const FileKinds keptKinds{.extension = "json", .filter = "Reports in JSON (*.json)|*.json"};

const char* const introduction =
    "<p>A report asks each control unit for all that the standards define: codes with their freeze frame, "
    "readiness for an emissions test, live values, test results and what identifies the vehicle. Nothing is "
    "changed in the vehicle by reading.</p><p>Switch the ignition on, then press <b>Read Report</b>.</p>";

/// What marked cells look like on a page of the window's colours.
QString styleFor(const QPalette& palette)
{
    return isDark(palette) ? QStringLiteral("th, td { text-align: left; padding-right: 10px; } .m1 { "
                                            "background: #1d4a1d; } .m2 { background: #5a4a00; } "
                                            ".m3 { background: #6a2020; }")
                           : QStringLiteral("th, td { text-align: left; padding-right: 10px; } .m1 { "
                                            "background: #d8f0d8; } .m2 { background: #fdf0c0; } "
                                            ".m3 { background: #f8d0d0; }");
}

QString entryOf(const ReportSection& section)
{
    const std::string word = wordOf(section.mark);
    return toQt(section.title + (word.empty() ? "" : " - " + word));
}

QIcon iconOf(Mark mark)
{
    static const std::array names = {"", "zint-mark-ok", "zint-mark-attention", "zint-mark-failed",
                                     "zint-mark-unsupported"};
    return mark == Mark::none ? QIcon() : ownIcon(QLatin1String(names.at(static_cast<std::size_t>(mark))));
}

} // namespace

reportForm::reportForm(ToolContext& context)
    : toolForm(context, "docreprt2"), ui(std::make_unique<Ui::reportForm>()),
      MSComm1(context.shell.makePort(gate(), context.shell.connection())), Timer1(gate()), silence_(gate()),
      descriptions_(context.values.parmDTCdb, context.values.descriptionsFile),
      kept_(context.userDataFolder, fileDateText),
      report_({.line = {*MSComm1, context.shell.connection(), Timer1, &silence_},
               .clock = clock_,
               .prompts = prompts(),
               .keep = [this](const VehicleFacts& facts) { return keep(facts); }})
{
    ui->setupUi(this);
    ui->splitter->setStretchFactor(1, 1);
    ui->mnuKeep->setChecked(context.settings.get(reportSettings, "keep", "1") == "1");
    setUpKeys({{"Alt+R", ui->readReport}, {"Alt+C", ui->clearCodes}, {"Alt+B", ui->backCom}});
    onClick(ui->readReport, &reportForm::readReport_Click);
    onClick(ui->clearCodes, &reportForm::clearCodes_Click);
    on(ui->sections, &QListWidget::currentRowChanged, [this] { showDetails(); });
    onAsking(ui->mnuSaveReport, &QAction::triggered, [this] { mnuSaveReport_Click(); });
    onAsking(ui->mnuCompare, &QAction::triggered, [this] { mnuCompare_Click(); });
    onTrigger(ui->mnuCopy, &reportForm::mnuCopy_Click);
    onTrigger(ui->ftc, &reportForm::ftc_Click);
    report_.onChanged = [this] { paint(); };
    setUpPrinting(ui->mnuPrintSetup, ui->mnuPrintOut);
    setUpTool(*ui);
    paint();
    showDetails();
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

std::string reportForm::jsonOf(const VehicleFacts& facts) const
{
    return reportJson(headOf(facts, longDateText, report_.failure()), facts);
}

ReportHead reportForm::head() const { return headOf(report_.facts(), longDateText, report_.failure()); }

void reportForm::mnuSaveReport_Click()
{
    const std::string path =
        CommonDialog1.chooseToSave(reportKinds, context().values.parmInitDir, "vehicle-report");
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
        const std::string text = path.ends_with(".txt")    ? reportText(head(), shown_)
                                 : path.ends_with(".json") ? jsonOf(report_.facts())
                                                           : html;
        replaceFile(path, [&text](std::ostream& stream) { stream << text; });
    }
    context().values.rememberFolderOf(path);
    display(*ui->statusBox, fileNamePart(path) + " saved");
}

bool reportForm::keep(const VehicleFacts& facts)
{
    learn(context().values.carSupport, carSupport(facts.units, "vehicle report of " + dateText(facts.time)));
    if (ui->mnuKeep->isChecked())
        kept_.keep(facts, jsonOf(facts));
    return ui->mnuKeep->isChecked();
}

void reportForm::mnuCompare_Click()
{
    const std::string path = CommonDialog1.chooseToOpen(keptKinds, kept_.folderOf(report_.facts()));
    if (!path.empty())
        gate().run([this, path] { compareWith(path); });
}

void reportForm::compareWith(const std::string& path)
{
    const ReportComparison comparison = compare(factsInJson(contentOf(path), path), report_.facts());
    showSections();
    shown_.insert(shown_.begin(), comparisonSection(comparison, fileNamePart(path)));
    showTitles(0);
}

void reportForm::mnuCopy_Click() { QGuiApplication::clipboard()->setText(toQt(reportText(head(), shown_))); }

bool reportForm::printOn(QPrinter& printer) { return printDocument(reportHtml(head(), shown_), printer); }

void reportForm::changeEvent(QEvent* event)
{
    toolForm::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        showDetails();
}

void reportForm::paint()
{
    const ReportPanel& p = report_.panel();
    display(*ui->readReport, p.readReport);
    display(*ui->clearCodes, p.clearCodes);
    ui->quick->setEnabled(!report_.isRunning());
    display(*ui->headline, report_.failure().empty() ? p.headline : report_.failure() + "\n" + p.headline);
    display(*ui->statusBox, p.statusBox);
    display(*ui->labelStats, p.labelStats);
    display(*ui->ProgressBar1, p.ProgressBar1);
    const bool isRead = !report_.isRunning() && !report_.facts().units.empty();
    for (QAction* entry : {ui->mnuSaveReport, ui->mnuCompare, ui->mnuCopy})
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
        shown_.insert(shown_.begin(),
                      linesSection("Clearing", "What has come of it", report_.clearedLines()));
    showTitles(report_.clearedLines().empty() ? std::max(ui->sections->currentRow(), 0) : 0);
}

void reportForm::showTitles(int chosen)
{
    ui->sections->clear();
    for (const ReportSection& section : shown_)
        new QListWidgetItem(iconOf(section.mark), entryOf(section), ui->sections);
    ui->sections->setCurrentRow(chosen);
}

void reportForm::showDetails()
{
    const auto row = static_cast<std::size_t>(std::max(ui->sections->currentRow(), 0));
    ui->details->document()->setDefaultStyleSheet(styleFor(palette()));
    ui->details->setHtml(toQt(row < shown_.size() ? sectionHtml(shown_[row]) : introduction));
}

} // namespace zint
