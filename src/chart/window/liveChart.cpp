#include "chart/window/liveChart.h"

#include "chart/chartRange.h"
#include "chart/eventNumbers.h"
#include "chart/window/chartLines.h"
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
    using Operation = void (QtLiveChart::*)();

    QToolBar* makeBar();
    void addButton(QToolBar& bar, const char* name, const char* icon, const QString& text, const QString& tip,
                   Operation operation);
    QWidget* makeList();
    void steerPlot();
    void drawChosen();
    void look();
    void schedule(double spent);
    void paint();
    void paintNames();
    void paintSamples();
    void paintColours();
    void setWindow(int index);
    void zoom(double factor, double time);
    void zoomIn() { zoom(ChartPlot::zoomStep, plot_->xAxis->range().center()); }
    void zoomOut() { zoom(1 / ChartPlot::zoomStep, plot_->xAxis->range().center()); }
    void showAll();
    void showRectangle();
    void moveCursor(std::optional<double> time);
    void stepCursor(int direction);
    void hold(const std::function<void()>& questions);
    void savePicture();
    void print();

    LiveChartSurroundings surroundings_;
    ChartPlot* plot_;
    ChartLines lines_;
    WindowPrinter printer_;
    QAction* pause_ = nullptr;
    QTimer timer_; ///< until the next look at the store

    std::uint64_t generation_ = 0; ///< of the store, when it was last looked at
    ChartRange range_;
    bool isRunning_ = false;
    bool isHeld_ = false;          ///< until the user has answered
    std::optional<double> cursor_; ///< seconds
};

QtLiveChart::QtLiveChart(const LiveChartSurroundings& surroundings, QWidget* parent)
    : LiveChart(parent), surroundings_(surroundings), plot_(new ChartPlot(this)),
      lines_(*plot_, surroundings.samples),
      printer_(*this, surroundings.prompts, [this](QPrinter& printer) { return printChart(lines_, printer); })
{
    plot_->setObjectName(QStringLiteral("chartView"));
    plot_->setAccessibleName(tr("Chart"));
    plot_->setToolTip(tr("Drag to move in time, Shift and drag to zoom into a rectangle, turn the wheel to "
                         "zoom, double-click to show all"));
    auto* splitter = new QSplitter(this);
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(plot_);
    splitter->addWidget(makeList());
    splitter->setStretchFactor(0, 1); // the list keeps its width
    const int listWidth = fontMetrics().averageCharWidth() * 40;
    splitter->setSizes({3 * listWidth, listWidth});
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(makeBar());
    layout->addWidget(splitter, 1);
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, [this] { look(); });
    connect(&surroundings_.choice, &EventChoice::chosenChanged, this, [this] {
        drawChosen();
        paint();
    });
    steerPlot();
    drawChosen();
    paintColours();
}

QToolBar* QtLiveChart::makeBar()
{
    auto* bar = new QToolBar(this);
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    auto* window = new QComboBox(bar);
    window->setObjectName(QStringLiteral("chartWindow"));
    window->setToolTip(tr("What is shown while polling runs"));
    window->setAccessibleName(tr("Shown while polling runs"));
    window->addItems({tr("Last minute"), tr("Last 5 minutes"), tr("Last 15 minutes")});
    window->setCurrentIndex(1);
    connect(window, &QComboBox::activated, this, [this](int index) { setWindow(index); });
    bar->addWidget(window);
    addButton(*bar, "chartAll", "zoom-fit-best", tr("Whole Run"),
              tr("Show all that was sampled (Home, or double-click)"), &QtLiveChart::showAll);
    addButton(*bar, "chartPause", "media-playback-pause", tr("Pause"),
              tr("Let the chart stand still; polling goes on (Space)"), &QtLiveChart::look);
    pause_ = bar->actions().constLast();
    pause_->setCheckable(true);
    addButton(*bar, "chartZoomIn", "zoom-in", tr("Zoom In"),
              tr("Show a shorter time (+, or turn the mouse wheel)"), &QtLiveChart::zoomIn);
    addButton(*bar, "chartZoomOut", "zoom-out", tr("Zoom Out"),
              tr("Show a longer time (-, or turn the mouse wheel)"), &QtLiveChart::zoomOut);
    addButton(*bar, "chartSave", "document-save", tr("Save Picture..."),
              tr("Save the chart as it is shown, as a picture or a PDF document"), &QtLiveChart::savePicture);
    addButton(*bar, "chartPrint", "document-print", tr("Print..."), tr("Print the chart as it is shown"),
              &QtLiveChart::print);
    return bar;
}

void QtLiveChart::addButton(QToolBar& bar, const char* name, const char* icon, const QString& text,
                            const QString& tip, Operation operation)
{
    QAction* action = bar.addAction(QIcon::fromTheme(QLatin1String(icon)), text);
    action->setObjectName(QLatin1String(name));
    action->setIconText(text); // with its dots
    action->setToolTip(tip);
    connect(action, &QAction::triggered, this, [this, operation] { (this->*operation)(); });
    bar.widgetForAction(action)->setFocusPolicy(Qt::TabFocus);
}

QWidget* QtLiveChart::makeList()
{
    auto* list = new QTableView(this);
    list->setObjectName(QStringLiteral("chartEvents"));
    list->setAccessibleName(tr("Events to draw"));
    list->setToolTip(tr("Check the events to draw"));
    list->setModel(&surroundings_.choice);
    list->setShowGrid(false);
    list->setTabKeyNavigation(false);
    list->verticalHeader()->hide();
    list->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents); // names may be long
    QHeaderView& columns = *list->horizontalHeader();
    columns.setHighlightSections(false);
    columns.setSectionResizeMode(EventChoice::nameColumn, QHeaderView::Stretch);
    columns.resizeSection(EventChoice::valueColumn,
                          fontMetrics().horizontalAdvance(QStringLiteral("00:00:00.0000")));
    return list;
}

void QtLiveChart::steerPlot()
{
    plot_->onZoom = [this](double factor, double time) { zoom(factor, time); };
    plot_->onPan = [this](double seconds) {
        range_.pan(seconds);
        paint();
    };
    plot_->onAll = [this] { showAll(); };
    plot_->onPause = [this] { pause_->trigger(); };
    plot_->onRectangle = [this] { showRectangle(); };
    plot_->onScale = [this](QCPAxis* axis, const QCPRange& values) {
        lines_.scale(axis, values);
        paint();
    };
    plot_->onCursor = [this](std::optional<double> time) { moveCursor(time); };
    plot_->onStep = [this](int direction) { stepCursor(direction); };
    plot_->onResized = [this] { paint(); };
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
    lines_.draw(surroundings_.design(), surroundings_.choice.chosen());
    paintSamples();
}

/// Looks what the store has. A chart that stands still shows no more than that the samples are others.
void QtLiveChart::look()
{
    if (isHeld_)
        return;
    QElapsedTimer timer;
    timer.start();
    const std::uint64_t generation = surroundings_.samples.generation();
    const bool isNew = generation != generation_;
    if (isNew) {
        generation_ = generation;
        drawChosen();
    }
    if (isNew || !pause_->isChecked()) {
        range_.setEnd(lines_.end(), isRunning_);
        paint();
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

void QtLiveChart::paint()
{
    if (!isVisible())
        return;
    if (lines_.paint(range_.from(), range_.to()))
        paintSamples();
    paintNames();
    if (cursor_)
        moveCursor(cursor_);
}

/// Lets the list tell what a line's unit is, and its limits where no axis does.
void QtLiveChart::paintNames()
{
    const Design& design = surroundings_.design();
    for (int row = 0; row < surroundings_.choice.rowCount(); ++row) {
        const std::size_t event = surroundings_.choice.eventOf(row);
        QString name = lines_.nameOf(event);
        if (name.isEmpty() && event < design.events.size())
            name = toQt(eventName(design.events[event]));
        surroundings_.choice.item(row, EventChoice::nameColumn)->setText(name);
    }
}

/// Puts a piece of its line beside each name.
void QtLiveChart::paintSamples()
{
    for (int row = 0; row < surroundings_.choice.rowCount(); ++row)
        surroundings_.choice.item(row, EventChoice::nameColumn)
            ->setIcon(lines_.sampleOf(surroundings_.choice.eventOf(row)));
}

void QtLiveChart::paintColours()
{
    plot_->paintColours();
    lines_.paintColours(palette());
    paintSamples();
    paint();
}

void QtLiveChart::setWindow(int index)
{
    static constexpr std::array<double, 3> windows = {60, 300, 900};
    range_.setWindow(windows.at(static_cast<std::size_t>(index)));
    paint();
}

void QtLiveChart::zoom(double factor, double time)
{
    range_.zoom(factor, time);
    paint();
}

void QtLiveChart::showAll()
{
    range_.showAll();
    lines_.freeScales();
    paint();
}

void QtLiveChart::showRectangle()
{
    const QCPSelectionRect& chosen = *plot_->selectionRect();
    for (QCPAxis* axis : lines_.valueAxes())
        lines_.scale(axis, chosen.range(axis));
    const QCPRange times = chosen.range(plot_->xAxis);
    range_.take(times.lower, times.upper);
    paint();
}

/// Tells in the list what the lines' values are at a time.
void QtLiveChart::moveCursor(std::optional<double> time)
{
    cursor_ = time;
    plot_->showCursor(time);
    EventChoice& choice = surroundings_.choice;
    choice.setHeaderData(EventChoice::valueColumn, Qt::Horizontal, time ? timeText(*time, 3) : tr("Value"));
    for (int row = 0; row < choice.rowCount(); ++row) {
        const auto value = time ? lines_.valueAt(choice.eventOf(row), *time) : std::nullopt;
        choice.item(row, EventChoice::valueColumn)->setText(value ? QString::number(*value) : QString());
    }
}

void QtLiveChart::stepCursor(int direction)
{
    const auto time = lines_.nextTime(cursor_.value_or(plot_->xAxis->range().center()), direction);
    if (!time)
        return;
    cursor_ = time;
    if (!plot_->xAxis->range().contains(*time))
        range_.pan(*time - plot_->xAxis->range().center());
    paint();
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
            writeChart(lines_, path, devicePixelRatioF());
            surroundings_.values.rememberFolderOf(path);
        } catch (const FileError& error) { // told outside the gate, where it holds up nothing
            surroundings_.prompts.message(error.what());
        }
    });
}

void QtLiveChart::print()
{
    hold([this] { printer_.print(); });
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
