#include "chart/window/liveChart.h"

#include "catalogue/conversion.h"
#include "chart/window/chartPicture.h"
#include "chart/window/chartPlot.h"
#include "platform/text.h"
#include "shared/fileError.h"
#include "widgets/windowPrinter.h"

#include <QComboBox>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QSplitter>
#include <QTableView>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

namespace zint {
namespace {

class QtLiveChart final : public LiveChart {
public:
    QtLiveChart(const LiveChartSurroundings& surroundings, QWidget* parent);

    void setRunning(bool isRunning) override;

protected:
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    QWidget* makeBar();
    QWidget* makeWindows();
    QWidget* makeList();
    void drawChosen();
    void look();
    void schedule(double spent);
    void tellNames();
    void tellValues();
    void showSamples();
    void paintColours();
    void hold(const std::function<void()>& questions);
    void savePicture();
    void print()
    {
        hold([this] { printer_.print(); });
    }

    LiveChartSurroundings surroundings_;
    ChartPlot* plot_;
    WindowPrinter printer_;
    QAction* pause_ = nullptr;
    QTimer timer_; ///< until the next look at the store

    std::uint64_t generation_ = 0; ///< of the store, when it was last looked at
    bool isRunning_ = false;
    bool isHeld_ = false; ///< until the user has answered
};

QtLiveChart::QtLiveChart(const LiveChartSurroundings& surroundings, QWidget* parent)
    : LiveChart(parent), surroundings_(surroundings), plot_(new ChartPlot(surroundings.samples, this)),
      printer_(*this, surroundings.prompts,
               [this](QPrinter& printer) { return printChart(plot_->lines(), printer); })
{
    plot_->setObjectName(QStringLiteral("chartView"));
    plot_->setAccessibleName(tr("Chart"));
    auto* splitter = new QSplitter(this);
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(plot_);
    splitter->addWidget(makeList());
    splitter->setStretchFactor(0, 1); // the list keeps its width
    const int listWidth = fontMetrics().averageCharWidth() * 42;
    splitter->setSizes({3 * listWidth, listWidth});
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(makeBar());
    layout->addWidget(splitter, 1);

    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, [this] { look(); });
    connect(&surroundings_.choice, &EventChoice::chosenChanged, this, [this] {
        drawChosen();
        plot_->paint();
    });
    plot_->onPainted = [this](bool areOthers) {
        if (areOthers)
            showSamples();
        tellNames();
    };
    plot_->onCursor = [this] { tellValues(); };
    plot_->onPause = [this] { pause_->trigger(); };
    drawChosen();
    paintColours();
}

QWidget* QtLiveChart::makeBar()
{
    auto* bar = new QToolBar(this);
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    bar->addWidget(makeWindows());
    bar->addSeparator();
    const auto add = [&](const char* name, const char* icon, const QString& text, const QString& tip,
                         const auto& operation) {
        QAction* action = bar->addAction(QIcon::fromTheme(QLatin1String(icon)), text, this, operation);
        action->setObjectName(QLatin1String(name));
        action->setIconText(text); // with its dots
        action->setToolTip(tip);
        bar->widgetForAction(action)->setFocusPolicy(Qt::TabFocus);
        return action;
    };
    add("chartAll", "zoom-fit-best", tr("Whole Run"), tr("Show all that was sampled (Home, or double-click)"),
        [this] { plot_->showAll(); });
    pause_ = add("chartPause", "media-playback-pause", tr("Pause"),
                 tr("Let the chart stand still; polling goes on (Space)"), [this] { look(); });
    pause_->setCheckable(true);
    add("chartZoomIn", "zoom-in", tr("Zoom In"),
        tr("Show a shorter time (+, turn the mouse wheel, or drag a rectangle with Shift)"),
        [this] { plot_->zoomIn(); });
    add("chartZoomOut", "zoom-out", tr("Zoom Out"), tr("Show a longer time (-, or turn the mouse wheel)"),
        [this] { plot_->zoomOut(); });
    add("chartSave", "document-save", tr("Save Picture..."),
        tr("Save the chart as it is shown, as a picture or a PDF document"), [this] { savePicture(); });
    add("chartPrint", "document-print", tr("Print..."), tr("Print the chart as it is shown"),
        [this] { print(); });
    return bar;
}

QWidget* QtLiveChart::makeWindows()
{
    auto* windows = new QComboBox(this);
    windows->setObjectName(QStringLiteral("chartWindow"));
    windows->setToolTip(tr("What is shown while polling runs"));
    windows->setAccessibleName(tr("Shown while polling runs"));
    windows->addItem(tr("Last minute"), 60.0);
    windows->addItem(tr("Last 5 minutes"), 300.0);
    windows->addItem(tr("Last 15 minutes"), 900.0);
    windows->setCurrentIndex(1);
    connect(windows, &QComboBox::activated, this, [this, windows] {
        plot_->range().setWindow(windows->currentData().toDouble());
        plot_->paint();
    });
    return windows;
}

QWidget* QtLiveChart::makeList()
{
    auto* list = new QTableView(this);
    list->setObjectName(QStringLiteral("chartEvents"));
    list->setAccessibleName(tr("Events to draw"));
    list->setToolTip(tr("Check the events to draw"));
    list->setModel(&surroundings_.choice);
    list->setIconSize(lineSampleSize);
    list->setShowGrid(false);
    list->setTabKeyNavigation(false);
    list->verticalHeader()->hide();
    list->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents); // names may be long
    QHeaderView& columns = *list->horizontalHeader();
    columns.setHighlightSections(false);
    columns.setSectionResizeMode(EventChoice::nameColumn, QHeaderView::Stretch);
    columns.resizeSection(EventChoice::valueColumn,
                          fontMetrics().horizontalAdvance(QStringLiteral("00:00:00.000")));
    return list;
}

void QtLiveChart::setRunning(bool isRunning)
{
    if (isRunning == isRunning_ && generation_ == surroundings_.samples.generation())
        return;
    isRunning_ = isRunning;
    look();
}

void QtLiveChart::drawChosen()
{
    plot_->lines().draw(surroundings_.design(), surroundings_.choice.chosen());
    showSamples();
}

/// Looks what the store has. A chart that stands still shows no more than that the samples are others.
void QtLiveChart::look()
{
    if (isHeld_)
        return;
    QElapsedTimer timer;
    timer.start();
    const bool isNew = generation_ != surroundings_.samples.generation();
    if (isNew) {
        generation_ = surroundings_.samples.generation();
        plot_->lines().freeScales();
        drawChosen();
    }
    if (isNew || !pause_->isChecked()) {
        plot_->range().setEnd(plot_->lines().end(), isRunning_);
        plot_->paint();
    }
    schedule(static_cast<double>(timer.nsecsElapsed()) / 1e6);
}

/// The next look: soon, but late enough on slow machines to leave the time to the polling.
/// @param spent milliseconds that the last one took
void QtLiveChart::schedule(double spent)
{
    constexpr double soon = 200; // ms
    constexpr double late = 5000;
    constexpr double share = 10; // at most a tenth of the time is spent here
    if (isRunning_ && isVisible() && !pause_->isChecked())
        timer_.start(static_cast<int>(std::clamp(spent * share, soon, late)));
    else
        timer_.stop();
}

/// Lets the list tell what a line's unit is, its limits where no axis does, and its value at the cursor.
void QtLiveChart::tellNames()
{
    const Design& design = surroundings_.design();
    for (int row = 0; row < surroundings_.choice.rowCount(); ++row) {
        const std::size_t event = surroundings_.choice.eventOf(row);
        QString name = plot_->lines().nameOf(event);
        if (name.isEmpty() && event < design.events.size())
            name = toQt(design.events[event].name());
        surroundings_.choice.item(row, EventChoice::nameColumn)->setText(name);
    }
    if (plot_->cursor())
        tellValues();
}

void QtLiveChart::tellValues()
{
    const std::optional<double> time = plot_->cursor();
    EventChoice& choice = surroundings_.choice;
    choice.setHeaderData(EventChoice::valueColumn, Qt::Horizontal, time ? timeText(*time, 3) : tr("Value"));
    for (int row = 0; row < choice.rowCount(); ++row) {
        const auto value = time ? plot_->lines().valueAt(choice.eventOf(row), *time) : std::nullopt;
        choice.item(row, EventChoice::valueColumn)->setText(value ? QString::number(*value) : QString());
    }
}

/// Puts a piece of its line beside each name.
void QtLiveChart::showSamples()
{
    EventChoice& choice = surroundings_.choice;
    for (int row = 0; row < choice.rowCount(); ++row)
        choice.item(row, EventChoice::nameColumn)->setIcon(plot_->lines().sampleOf(choice.eventOf(row)));
}

void QtLiveChart::paintColours()
{
    plot_->paintColours();
    showSamples();
    plot_->paint();
}

/// Asks where to put what was seen when the button was pressed. Polling goes on meanwhile.
void QtLiveChart::hold(const std::function<void()>& questions)
{
    isHeld_ = true;
    surroundings_.ask(questions);
    isHeld_ = false;
    look();
}

void QtLiveChart::savePicture()
{
    hold([this] {
        const std::string path = surroundings_.dialogs.chooseToSave(
            {.extension = "png",
             .filter = "Pictures (*.png)|*.png|PDF documents (*.pdf)|*.pdf|All files (*.*)|*.*"},
            surroundings_.values.parmInitDir, "chart.png");
        if (path.empty())
            return;
        try {
            writeChart(plot_->lines(), path, devicePixelRatioF());
            surroundings_.values.rememberFolderOf(path);
        } catch (const FileError& error) { // told outside the gate, where it holds up nothing
            surroundings_.prompts.message(error.what());
        }
    });
}

void QtLiveChart::changeEvent(QEvent* event)
{
    LiveChart::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange)
        paintColours();
}

void QtLiveChart::showEvent(QShowEvent* event)
{
    LiveChart::showEvent(event);
    look();
}

void QtLiveChart::hideEvent(QHideEvent* event)
{
    LiveChart::hideEvent(event);
    timer_.stop();
}

} // namespace

LiveChart* makeLiveChart(const LiveChartSurroundings& surroundings, QWidget* parent)
{
    return new QtLiveChart(surroundings, parent);
}

} // namespace zint
