#include "chart/window/liveChart.h"

#include "chart/window/chartPicture.h"
#include "chart/window/chartStyle.h"
#include "platform/text.h"
#include "shared/fileError.h"
#include "shared/module1.h"

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QMouseEvent>
#include <QShortcut>
#include <QSignalBlocker>
#include <QSplitter>
#include <QTableView>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>
#include <string>

namespace zint {
namespace {

constexpr double zoomStep = 0.7; // of what is shown, per key and notch of the wheel
constexpr double panStep = 0.1;

double along(const QCPAxis& axis, const QPointF& place)
{
    return axis.orientation() == Qt::Horizontal ? place.x() : place.y();
}

} // namespace

LiveChart::LiveChart(const LiveChartSurroundings& surroundings, QWidget* parent)
    : QWidget(parent), surroundings_(surroundings), plot_(new ChartPlot(surroundings.samples, this)),
      printer_(*this, surroundings.prompts, [this](QPrinter& printer) { return printChart(*plot_, printer); })
{
    plot_->setObjectName(QStringLiteral("chartView"));
    plot_->setAccessibleName(tr("Chart"));
    plot_->setMinimumSize(240, 160);
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

    makeSteering();
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, &LiveChart::look);
    connect(&surroundings_.choice, &EventChoice::chosenChanged, this, &LiveChart::drawChosen);
    connect(plot_, &QCustomPlot::afterReplot, this, &LiveChart::tellNames);
    drawChosen();
}

QToolBar* LiveChart::makeBar()
{
    auto* bar = new QToolBar(this);
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    bar->addWidget(makeWindows());
    bar->addSeparator();
    const auto add = [&](const char* name, const char* icon, const QString& text, const QString& tip,
                         const QList<QKeySequence>& keys, const auto& operation) {
        QAction* action = bar->addAction(QIcon::fromTheme(QLatin1String(icon)), text, this, operation);
        action->setObjectName(QLatin1String(name));
        action->setIconText(text); // with its dots
        action->setToolTip(tip);
        action->setShortcuts(keys);
        action->setShortcutContext(Qt::WidgetShortcut);
        plot_->addAction(action);
        bar->widgetForAction(action)->setFocusPolicy(Qt::TabFocus);
        return action;
    };
    add("chartAll", "zoom-fit-best", tr("Whole Run"), tr("Show all that was sampled (Home, or double-click)"),
        {Qt::Key_Home}, [this] { showAll(); });
    pause_ =
        add("chartPause", "media-playback-pause", tr("Pause"),
            tr("Let the chart stand still; polling goes on (Space)"), {Qt::Key_Space}, [this] { look(); });
    pause_->setCheckable(true);
    add("chartZoomIn", "zoom-in", tr("Zoom In"),
        tr("Show a shorter time (+, turn the mouse wheel, or drag a rectangle with Shift)"),
        {Qt::Key_Plus, Qt::Key_Equal, Qt::Key_Up}, // "=" is plus without the shift key
        [this] { zoom(zoomStep, plot_->xAxis->range().center()); });
    add("chartZoomOut", "zoom-out", tr("Zoom Out"), tr("Show a longer time (-, or turn the mouse wheel)"),
        {Qt::Key_Minus, Qt::Key_Down}, [this] { zoom(1 / zoomStep, plot_->xAxis->range().center()); });
    add("chartSave", "document-save", tr("Save Picture..."),
        tr("Save the chart as it is shown, as a picture or a PDF document"), {}, [this] { savePicture(); });
    add("chartPrint", "document-print", tr("Print..."), tr("Print the chart as it is shown"), {},
        [this] { hold([this] { printer_.print(); }); });
    return bar;
}

QWidget* LiveChart::makeWindows()
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
        range_.setWindow(windows->currentData().toDouble());
        paint();
    });
    return windows;
}

QWidget* LiveChart::makeList()
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

/// All ways to another part of the run meet where the range of the axis changes.
void LiveChart::makeSteering()
{
    plot_->setFocusPolicy(Qt::StrongFocus);
    plot_->setMouseTracking(true);
    plot_->setInteractions(QCP::iRangeDrag);
    plot_->installEventFilter(this);
    connect(plot_->xAxis, qOverload<const QCPRange&>(&QCPAxis::rangeChanged), this, [this](const auto& part) {
        range_.take(part.lower, part.upper);
        paint();
    });
    connect(plot_, &QCustomPlot::mousePress, this, &LiveChart::press);
    connect(plot_, &QCustomPlot::mouseMove, this, &LiveChart::point);
    connect(plot_, &QCustomPlot::mouseRelease, this, &LiveChart::point);
    connect(plot_, &QCustomPlot::mouseWheel, this, &LiveChart::turnWheel);
    connect(plot_, &QCustomPlot::mouseDoubleClick, this, &LiveChart::showAll);
    connect(plot_->selectionRect(), &QCPSelectionRect::accepted, this, &LiveChart::takeRectangle);
    connect(plot_->selectionRect(), &QCPSelectionRect::canceled, this, [this] { paint(); });

    const auto on = [this](const QKeySequence& key, const auto& operation) {
        new QShortcut(key, plot_, this, operation, Qt::WidgetShortcut);
    };
    const auto pan = [this](double part) { plot_->xAxis->moveRange(part * plot_->xAxis->range().size()); };
    on(Qt::Key_Left, [pan] { pan(-panStep); });
    on(Qt::Key_Right, [pan] { pan(panStep); });
    on(Qt::CTRL | Qt::Key_Left, [this] { stepCursor(-1); });
    on(Qt::CTRL | Qt::Key_Right, [this] { stepCursor(1); });
    for (const auto& key : {QKeySequence(Qt::Key_Escape), QKeySequence(Qt::SHIFT | Qt::Key_Escape)}) {
        on(key, [this] { // also while Shift is down for a rectangle
            plot_->selectionRect()->cancel();
            moveCursor(std::nullopt);
        });
    }
}

void LiveChart::setRunning(bool isRunning)
{
    if (isRunning == isRunning_ && !plot_->hasOthers())
        return;
    isRunning_ = isRunning;
    look();
}

void LiveChart::drawChosen()
{
    plot_->draw(surroundings_.design(), surroundings_.choice.chosen());
    look();
}

/// Looks what the store has. A chart that stands still shows no more than that the samples are others. The
/// next look is soon, but late enough on slow machines to leave the time to the polling.
void LiveChart::look()
{
    if (isHeld_)
        return;
    QElapsedTimer spent;
    spent.start();
    const bool goesOn = plot_->hasOthers() || !pause_->isChecked();
    const double end = plot_->read();
    if (goesOn)
        range_.setEnd(end, isRunning_);
    paint(QCustomPlot::rpQueuedRefresh); // at once, to know how long it takes
    constexpr qint64 soon = 200;         // ms
    constexpr qint64 late = 5000;
    constexpr qint64 share = 10; // at most a tenth of the time is spent here
    timer_.stop();
    if (isRunning_ && isVisible() && !pause_->isChecked())
        timer_.start(static_cast<int>(std::clamp(spent.elapsed() * share, soon, late)));
}

void LiveChart::paint(QCustomPlot::RefreshPriority priority)
{
    const QSignalBlocker isNoUser(plot_->xAxis);
    plot_->xAxis->setRange(range_.from(), range_.to());
    if (isVisible())
        plot_->replot(priority);
}

void LiveChart::showAll()
{
    range_.showAll();
    plot_->freeScales();
    paint();
}

void LiveChart::zoom(double factor, double at)
{
    plot_->xAxis->scaleRange(factor, range_.follows() ? plot_->xAxis->range().upper : at);
}

/// Tells the plot what a drag is going to do.
void LiveChart::press(QMouseEvent* event)
{
    const bool isLeft = event->button() == Qt::LeftButton;
    grabbed_ = isLeft ? plot_->axisAt(event->position()) : nullptr;
    if (grabbed_ != nullptr) {
        const QCPRange& shown = grabbed_->range();
        const double at = along(*grabbed_, event->position());
        const bool isUpper = grabbed_->pixelToCoord(at) > shown.center();
        fixed_ = grabbed_->coordToPixel(isUpper ? shown.lower : shown.upper); // what is farther away
        reach_ = at - fixed_;
    }
    const bool isRectangle = isLeft && grabbed_ == nullptr && event->modifiers().testFlag(Qt::ShiftModifier);
    plot_->setSelectionRectMode(isRectangle ? QCP::srmCustom : QCP::srmNone);
    plot_->axisRect()->setRangeDrag(grabbed_ != nullptr ? Qt::Orientations() : Qt::Horizontal);
    point(event);
}

void LiveChart::point(QMouseEvent* event)
{
    const QPointF place = event->position();
    const bool isDown = event->buttons().testFlag(Qt::LeftButton);
    grabbed_ = isDown ? grabbed_ : nullptr;
    if (grabbed_ != nullptr)
        stretch(along(*grabbed_, place));
    if (const QCPAxis* axis = isDown ? grabbed_ : plot_->axisAt(place); axis != nullptr)
        plot_->setCursor(axis == plot_->xAxis ? Qt::SizeHorCursor : Qt::SizeVerCursor);
    else if (plot_->selectionRectMode() == QCP::srmCustom && isDown)
        plot_->setCursor(Qt::CrossCursor);
    else
        plot_->setCursor(isDown ? Qt::ClosedHandCursor : Qt::OpenHandCursor);
    if (isDown)
        return; // the cursor goes with what is dragged
    const bool isInside = plot_->axisRect()->rect().contains(place.toPoint());
    moveCursor(isInside ? std::optional(plot_->xAxis->pixelToCoord(place.x())) : std::nullopt);
}

void LiveChart::turnWheel(QWheelEvent* event)
{
    if (event->angleDelta().y() == 0)
        return; // it was turned sideways
    constexpr double notch = 120;
    const double factor = std::pow(zoomStep, event->angleDelta().y() / notch);
    const QPointF place = event->position();
    if (QCPAxis* axis = plot_->axisAt(place); axis != nullptr && axis != plot_->xAxis)
        axis->scaleRange(factor, axis->pixelToCoord(place.y()));
    else
        zoom(factor, plot_->xAxis->pixelToCoord(place.x()));
}

/// What was grabbed follows the pointer; the end of the axis that is farther away stays.
/// @param at the pointer's place along the axis
void LiveChart::stretch(double at)
{
    const double least = 0.05 * plot_->axisRect()->height(); // nearer it would stretch without end
    const double reach = std::copysign(std::max((at - fixed_) * std::copysign(1, reach_), least), reach_);
    if (reach != reach_)
        grabbed_->scaleRange(reach_ / reach, grabbed_->pixelToCoord(fixed_));
    reach_ = reach;
}

void LiveChart::takeRectangle(const QRect& chosen)
{
    const QRect inside = chosen.normalized() & plot_->axisRect()->rect();
    if (std::min(inside.width(), inside.height()) >= QApplication::startDragDistance())
        plot_->axisRect()->zoom(inside, plot_->axisRect()->axes());
    paint(); // without the rectangle
}

void LiveChart::stepCursor(int direction)
{
    const QCPRange shown = plot_->xAxis->range();
    const auto time = plot_->nextTime(plot_->cursor().value_or(shown.center()), direction);
    if (!time)
        return;
    if (!shown.contains(*time))
        plot_->xAxis->moveRange(*time - shown.center());
    moveCursor(time);
}

void LiveChart::moveCursor(std::optional<double> time)
{
    plot_->moveCursor(time);
    tellValues();
}

/// Lets the list tell what a line looks like, its unit, its limits where no axis does, and its value at the
/// cursor.
void LiveChart::tellNames()
{
    constexpr int penRole = Qt::UserRole + 1; // of a name: what its icon was drawn with
    const Design& design = surroundings_.design();
    for (int row = 0; row < surroundings_.choice.rowCount(); ++row) {
        const std::size_t event = surroundings_.choice.eventOf(row);
        QStandardItem& item = *surroundings_.choice.item(row, EventChoice::nameColumn);
        QString name = plot_->nameOf(event);
        if (name.isEmpty() && event < design.events.size())
            name = toQt(design.events[event].name());
        item.setText(name);
        if (const QPen pen = plot_->penOf(event); item.data(penRole) != QVariant(pen)) {
            item.setData(pen, penRole);
            item.setIcon(lineSample(pen, devicePixelRatioF()));
        }
    }
    tellValues();
}

void LiveChart::tellValues()
{
    const std::optional<double> time = plot_->cursor();
    EventChoice& choice = surroundings_.choice;
    const qint64 milliseconds = std::llround(time.value_or(0) * 1000);
    const QString clock = toQt(durationText(milliseconds / 1000)) +
                          QStringLiteral(".%1").arg(milliseconds % 1000, 3, 10, QLatin1Char('0'));
    choice.setHeaderData(EventChoice::valueColumn, Qt::Horizontal, time ? clock : tr("Value"));
    for (int row = 0; row < choice.rowCount(); ++row) {
        const auto value = time ? plot_->valueAt(choice.eventOf(row), *time) : std::nullopt;
        choice.item(row, EventChoice::valueColumn)->setText(value ? QString::number(*value) : QString());
    }
}

/// Asks where to put what was seen when the button was pressed. Polling goes on meanwhile.
void LiveChart::hold(const std::function<void()>& questions)
{
    isHeld_ = true;
    surroundings_.ask(questions);
    isHeld_ = false;
    look();
}

void LiveChart::savePicture()
{
    hold([this] {
        const std::string path = surroundings_.dialogs.chooseToSave(
            {.extension = "png",
             .filter = "Pictures (*.png)|*.png|PDF documents (*.pdf)|*.pdf|All files (*.*)|*.*"},
            surroundings_.values.parmInitDir, "chart.png");
        if (path.empty())
            return;
        try {
            writeChart(*plot_, path, devicePixelRatioF());
            surroundings_.values.rememberFolderOf(path);
        } catch (const FileError& error) { // told outside the gate, where it holds up nothing
            surroundings_.prompts.message(error.what());
        }
    });
}

void LiveChart::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    look();
}

/// The cursor goes with the pointer.
bool LiveChart::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Leave && isVisible()) // else the window is about to go
        moveCursor(std::nullopt);
    return QWidget::eventFilter(watched, event);
}

} // namespace zint
