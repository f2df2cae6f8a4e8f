#include "runner/liveChart.h"

#include "platform/text.h"
#include "runner/chartAxes.h"
#include "runner/chartData.h"
#include "runner/chartRange.h"
#include "runner/ui_liveChart.h"
#include "shared/textFile.h"

#include <QBuffer>
#include <QCategoryAxis>
#include <QChart>
#include <QChartView>
#include <QElapsedTimer>
#include <QGraphicsLayout>
#include <QImage>
#include <QKeyEvent>
#include <QLegend>
#include <QLineSeries>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <QSignalBlocker>
#include <QStyleOptionFocusRect>
#include <QTimer>
#include <QValueAxis>
#include <QWheelEvent>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <memory>
#include <ranges>
#include <utility>
#include <vector>

namespace zint {
namespace {

constexpr int eventRole = Qt::UserRole; ///< of a list item: the event, from 0
constexpr double zoomStep = 0.7;
constexpr double panStep = 0.1; ///< of what is shown
constexpr std::size_t checkedAtFirst = 4;
constexpr QSize sampleSize(20, 12); ///< of a line, beside its name

/// Colours that differ from each other and stand out from their background. There are as many of both kinds.
constexpr std::array onLight = {0x1b5fb8, 0xc8401a, 0x1c7d47, 0xa3308f,
                                0x8a6400, 0x0b7c90, 0x6b46c8, 0x5a5f66};
constexpr std::array onDark = {0x6cb0ff, 0xff8d5e, 0x63d692, 0xf18fdc,
                               0xe8bf45, 0x50d3e2, 0xb8a2ff, 0xc6cad0};
static_assert(onLight.size() == onDark.size());

/// With the colours used up, lines differ by their dashes.
constexpr std::array dashes = {Qt::SolidLine, Qt::DashLine, Qt::DotLine, Qt::DashDotLine};

std::size_t eventOf(const QListWidgetItem& item)
{
    return static_cast<std::size_t>(item.data(eventRole).toInt());
}

/// The place on the screen where the user points at, drags and steers the chart.
class ChartView final : public QChartView {
public:
    ChartView(QChart* chart, QWidget* parent) : QChartView(chart, parent)
    {
        setFocusPolicy(Qt::StrongFocus);
        setFrameShape(QFrame::NoFrame);
        setRenderHint(QPainter::Antialiasing);
        setViewportUpdateMode(FullViewportUpdate);
        scene()->setItemIndexMethod(QGraphicsScene::NoIndex); // all of it is painted each time
        setMinimumSize(240, 160);
        viewport()->setCursor(Qt::OpenHandCursor);
    }

    std::function<void(double factor, double place)>
        onZoom;                             ///< place: 0 at the left of the plot, 1 at its right
    std::function<void(double part)> onPan; ///< part of the plot's width; below 0: to the left
    std::function<void()> onAll;
    std::function<void()> onPause;
    std::function<void()> onResized;

    /// Milliseconds that painting has taken since this was last asked.
    double takePaintTime() { return std::exchange(paintTime_, 0); }

protected:
    void paintEvent(QPaintEvent* event) override
    {
        QElapsedTimer timer;
        timer.start();
        QChartView::paintEvent(event);
        if (hasFocus()) {
            QPainter painter(viewport());
            QStyleOptionFocusRect option;
            option.initFrom(viewport());
            option.rect = viewport()->rect().adjusted(1, 1, -1, -1);
            style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
        }
        paintTime_ += static_cast<double>(timer.nsecsElapsed()) / 1e6;
    }

    void resizeEvent(QResizeEvent* event) override
    {
        QChartView::resizeEvent(event);
        onResized();
    }

    void wheelEvent(QWheelEvent* event) override
    {
        constexpr double notch = 120;
        onZoom(std::pow(zoomStep, event->angleDelta().y() / notch), placeOf(event->position().x()));
        event->accept();
    }

    void mousePressEvent(QMouseEvent* event) override
    {
        if (event->button() != Qt::LeftButton)
            return;
        draggedFrom_ = event->position().x();
        isDragging_ = true;
        viewport()->setCursor(Qt::ClosedHandCursor);
    }

    void mouseMoveEvent(QMouseEvent* event) override
    {
        if (!isDragging_)
            return;
        const double x = event->position().x();
        onPan(placeOf(draggedFrom_) - placeOf(x));
        draggedFrom_ = x;
    }

    void mouseReleaseEvent(QMouseEvent* event) override
    {
        if (event->button() != Qt::LeftButton)
            return;
        isDragging_ = false;
        viewport()->setCursor(Qt::OpenHandCursor);
    }

    void keyPressEvent(QKeyEvent* event) override
    {
        constexpr double middle = 0.5;
        switch (event->key()) {
        case Qt::Key_Plus:
        case Qt::Key_Equal: // plus without the shift key
        case Qt::Key_Up:
            return onZoom(zoomStep, middle);
        case Qt::Key_Minus:
        case Qt::Key_Down:
            return onZoom(1 / zoomStep, middle);
        case Qt::Key_Left:
            return onPan(-panStep);
        case Qt::Key_Right:
            return onPan(panStep);
        case Qt::Key_Home:
            return onAll();
        case Qt::Key_Space:
            return onPause();
        default:
            QChartView::keyPressEvent(event);
        }
    }

private:
    double placeOf(double x) const
    {
        const QRectF plot = chart()->plotArea();
        return plot.width() > 0 ? (x - plot.left()) / plot.width() : 0;
    }

    double paintTime_ = 0;
    double draggedFrom_ = 0;
    bool isDragging_ = false;
};

class QtLiveChart final : public LiveChart {
public:
    QtLiveChart(const LiveChartSurroundings& surroundings, QWidget* parent);

    void setRun(const Design& design, const SampleStore& samples) override;
    void setRunning(bool isRunning) override;

protected:
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    /// A line that is drawn.
    struct Line {
        std::size_t event;
        std::size_t axis;
        QLineSeries* series;
    };

    struct ValueAxis {
        ChartAxis axis;
        QValueAxis* shown;
    };

    void connectControls();
    void checkedChanged(const QListWidgetItem& item);
    void takeStyle(std::size_t event);
    void makeLines();
    void paint();
    void paintTimeAxis();
    void paintColours();
    QPen penOf(std::size_t event) const;
    void paintPens();
    void paintNames();
    QPixmap sampleOf(std::size_t event) const;
    QImage picture() const;
    void look();
    void schedule();
    void zoom(double factor, double place);
    void pan(double part);
    void showAll();
    void savePicture();
    bool isDark() const;

    LiveChartSurroundings surroundings_;
    std::unique_ptr<Ui::liveChart> ui;
    QChart* chart_;
    ChartView* view_;
    QCategoryAxis* timeAxis_;
    QTimer timer_; ///< until the next look at the store

    const Design* design_ = nullptr;
    const SampleStore* samples_ = nullptr;
    ChartData data_;
    ChartRange range_;
    bool isRunning_ = false;
    double lookTime_ = 0; ///< milliseconds that the last look took, without painting

    std::vector<int> styles_; ///< by event: which colour and dashes; none while it is not drawn
    std::vector<Line> lines_; ///< in the order of the events
    std::vector<ValueAxis> axes_;
    bool isCrowded_ = false; ///< there are too many points for wide lines
    static constexpr int none = -1;
};

QtLiveChart::QtLiveChart(const LiveChartSurroundings& surroundings, QWidget* parent)
    : LiveChart(parent), surroundings_(surroundings), ui(std::make_unique<Ui::liveChart>()),
      chart_(new QChart), view_(new ChartView(chart_, this)), timeAxis_(new QCategoryAxis(chart_))
{
    ui->setupUi(this);
    view_->setObjectName(QStringLiteral("chartView"));
    view_->setAccessibleName(tr("Chart"));
    view_->setToolTip(tr("Drag to move in time, turn the wheel to zoom"));
    ui->chartSplitter->insertWidget(0, view_);
    ui->chartSplitter->setStretchFactor(0, 1); // the list keeps its width
    const int listWidth = fontMetrics().averageCharWidth() * 32;
    ui->chartSplitter->setSizes({3 * listWidth, listWidth});
    chart_->layout()->setContentsMargins(0, 0, 0, 0);
    chart_->setBackgroundRoundness(0);
    chart_->setMargins(QMargins(8, 8, 8, 8));
    chart_->legend()->hide(); // the list tells the same, and has room for it
    timeAxis_->setLabelsPosition(QCategoryAxis::AxisLabelsPositionOnValue);
    chart_->addAxis(timeAxis_, Qt::AlignBottom);
    timer_.setSingleShot(true);
    connectControls();
    paintColours();
}

void QtLiveChart::connectControls()
{
    static constexpr std::array<double, 3> windows = {60, 300, 900};
    ui->chartWindow->setCurrentIndex(1);
    connect(ui->chartWindow, &QComboBox::activated, this, [this](int index) {
        range_.setWindow(windows.at(static_cast<std::size_t>(index)));
        paint();
    });
    connect(ui->chartAll, &QPushButton::clicked, this, [this] { showAll(); });
    connect(ui->chartZoomIn, &QPushButton::clicked, this, [this] { zoom(zoomStep, 0.5); });
    connect(ui->chartZoomOut, &QPushButton::clicked, this, [this] { zoom(1 / zoomStep, 0.5); });
    connect(ui->chartSave, &QPushButton::clicked, this, [this] { savePicture(); });
    connect(ui->chartPause, &QPushButton::toggled, this, [this] { look(); });
    connect(ui->chartEvents, &QListWidget::itemChanged, this,
            [this](const QListWidgetItem* item) { checkedChanged(*item); });
    connect(&timer_, &QTimer::timeout, this, [this] { look(); });
    view_->onZoom = [this](double factor, double place) { zoom(factor, place); };
    view_->onPan = [this](double part) { pan(part); };
    view_->onAll = [this] { showAll(); };
    view_->onPause = [this] { ui->chartPause->toggle(); };
    view_->onResized = [this] { paint(); };
}

void QtLiveChart::setRun(const Design& design, const SampleStore& samples)
{
    design_ = &design;
    samples_ = &samples;
    data_.setDesign(design);
    styles_.assign(design.events().size(), none);
    const QSignalBlocker quiet(ui->chartEvents); // filled, not checked by the user
    ui->chartEvents->clear();
    std::size_t checked = 0;
    for (std::size_t event = 0; event < styles_.size(); ++event) {
        if (!data_.hasNumbers(event))
            continue;
        auto* item = new QListWidgetItem(toQt(eventName(design, event)), ui->chartEvents);
        item->setData(eventRole, static_cast<int>(event));
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        const bool isDrawn = checked < checkedAtFirst;
        item->setCheckState(isDrawn ? Qt::Checked : Qt::Unchecked);
        if (isDrawn) {
            takeStyle(event);
            ++checked;
        }
    }
    makeLines();
    look();
}

void QtLiveChart::setRunning(bool isRunning)
{
    if (samples_ == nullptr)
        return;
    const bool isEmptied = data_.notice(*samples_);
    if (isRunning == isRunning_ && !isEmptied)
        return;
    isRunning_ = isRunning;
    look();
}

/// The first colour that no other line has.
void QtLiveChart::takeStyle(std::size_t event)
{
    int style = 0;
    while (std::ranges::find(styles_, style) != styles_.end())
        ++style;
    styles_.at(event) = style;
}

void QtLiveChart::checkedChanged(const QListWidgetItem& item)
{
    const std::size_t event = eventOf(item);
    const bool isDrawn = item.checkState() == Qt::Checked;
    if (isDrawn == (styles_.at(event) != none))
        return;
    if (isDrawn)
        takeStyle(event);
    else
        styles_.at(event) = none;
    makeLines();
    paint();
}

/// A series for each checked event, and an axis for each of their units.
void QtLiveChart::makeLines()
{
    chart_->removeAllSeries();
    for (const ValueAxis& axis : axes_) {
        chart_->removeAxis(axis.shown);
        delete axis.shown;
    }
    axes_.clear();
    lines_.clear();

    std::vector<std::size_t> events;
    for (std::size_t event = 0; event < styles_.size(); ++event) {
        if (styles_[event] != none)
            events.push_back(event);
    }
    for (ChartAxis& axis : axesOf(*design_, events)) {
        auto* shown = new QValueAxis(chart_);
        shown->setTitleText(toQt(axis.unit));
        shown->setLabelFormat(QStringLiteral("%g"));
        shown->setVisible(axis.side != ChartAxis::Side::none);
        shown->setGridLineVisible(axis.side == ChartAxis::Side::left); // two grids would be one too many
        chart_->addAxis(shown, axis.side == ChartAxis::Side::left ? Qt::AlignLeft : Qt::AlignRight);
        axes_.push_back({std::move(axis), shown});
    }
    for (const std::size_t event : events) {
        const auto axis = std::ranges::find(axes_, axisUnit(*design_, event),
                                            [](const ValueAxis& a) { return a.axis.unit; });
        auto* series = new QLineSeries(chart_);
        chart_->addSeries(series);
        series->attachAxis(timeAxis_);
        series->attachAxis(axis->shown);
        lines_.push_back({event, static_cast<std::size_t>(axis - axes_.begin()), series});
    }
    paintColours();
}

/// Looks what the store has, unless the chart stands still or nobody sees it.
void QtLiveChart::look()
{
    if (samples_ == nullptr)
        return;
    QElapsedTimer timer;
    timer.start();
    const bool isEmptied = data_.notice(*samples_);
    if (!ui->chartPause->isChecked() || isEmptied) {
        range_.setEnd(data_.end(*samples_), isRunning_);
        if (isVisible())
            paint();
    }
    lookTime_ = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    schedule();
}

/// The next look: soon, but late enough on slow machines to leave the time to the polling.
void QtLiveChart::schedule()
{
    constexpr double soon = 200; // ms
    constexpr double late = 5000;
    constexpr double share = 10; // at most a tenth of the time is spent here
    if (!isRunning_ || !isVisible() || ui->chartPause->isChecked()) {
        timer_.stop();
        return;
    }
    const double spent = lookTime_ + view_->takePaintTime();
    timer_.start(static_cast<int>(std::clamp(spent * share, soon, late)));
}

/// Shows the lines of what the range tells.
void QtLiveChart::paint()
{
    if (samples_ == nullptr)
        return;
    const double from = range_.from();
    const double to = range_.to();
    const int pixels = std::max(1, static_cast<int>(chart_->plotArea().width() * devicePixelRatioF()));
    std::vector<std::vector<std::vector<ChartPoint>>> points(axes_.size()); // by axis
    for (const Line& line : lines_)
        points[line.axis].push_back(data_.points(*samples_, line.event, from, to, pixels));

    for (const Line& line : lines_)
        line.series->clear(); // each change of an axis would lay out the old points once more
    std::vector<ChartScale> scales;
    for (std::size_t i = 0; i < axes_.size(); ++i) {
        const ChartScale scale = scaleOf(points[i]);
        axes_[i].shown->setRange(scale.lowest, scale.highest);
        axes_[i].shown->setTickCount(scale.steps + 1);
        scales.push_back(scale);
    }
    paintTimeAxis();
    std::size_t total = 0;
    for (const auto& line : points | std::views::join)
        total += line.size();
    constexpr std::size_t crowd = 1500;
    if (std::exchange(isCrowded_, total > crowd) != isCrowded_)
        paintPens();
    std::vector<std::size_t> drawn(axes_.size());
    for (const Line& line : lines_) {
        QList<QPointF> shown;
        const std::vector<ChartPoint>& found = points[line.axis][drawn[line.axis]++];
        shown.reserve(static_cast<qsizetype>(found.size()));
        for (const ChartPoint& point : found)
            shown.append({point.time, point.value});
        line.series->replace(shown);
        line.series->setName(toQt(lineName(*design_, line.event, axes_[line.axis].axis, scales[line.axis])));
    }
    paintNames();
}

/// Lets the list tell what a line's unit is, and its limits where no axis does.
void QtLiveChart::paintNames()
{
    const QSignalBlocker quiet(ui->chartEvents); // shown, not checked by the user
    auto line = lines_.begin();
    for (int row = 0; row < ui->chartEvents->count(); ++row) {
        QListWidgetItem* item = ui->chartEvents->item(row);
        const std::size_t event = eventOf(*item);
        const bool isDrawn = line != lines_.end() && line->event == event;
        const QString name = isDrawn ? (line++)->series->name() : toQt(eventName(*design_, event));
        if (item->text() != name)
            item->setText(name);
    }
}

void QtLiveChart::paintTimeAxis()
{
    const int labelWidth = fontMetrics().horizontalAdvance(QStringLiteral("0:00:00.0"));
    const int most = std::max(2, static_cast<int>(chart_->plotArea().width()) / (labelWidth * 3 / 2));
    const std::vector<TimeMark> marks = timeMarks(range_.from(), range_.to(), most);
    QStringList texts;
    for (const TimeMark& mark : marks)
        texts << toQt(mark.text);
    if (texts != timeAxis_->categoriesLabels()) {
        for (const QString& text : timeAxis_->categoriesLabels())
            timeAxis_->remove(text);
        timeAxis_->setStartValue(range_.from() - 1); // below the first mark
        for (qsizetype i = 0; i < texts.size(); ++i)
            timeAxis_->append(texts[i], marks[static_cast<std::size_t>(i)].time);
    }
    timeAxis_->setRange(range_.from(), range_.to());
}

bool QtLiveChart::isDark() const { return palette().color(QPalette::Base).lightness() < 128; }

QPen QtLiveChart::penOf(std::size_t event) const
{
    const auto style = static_cast<std::size_t>(styles_.at(event));
    const std::size_t colour = style % onLight.size();
    QPen pen(QColor::fromRgb(static_cast<QRgb>(isDark() ? onDark.at(colour) : onLight.at(colour))));
    pen.setStyle(dashes.at(style / onLight.size() % dashes.size()));
    constexpr double wide = 1.75;
    const double thin =
        1 / devicePixelRatioF(); // the toolkit draws it many times faster, above all with dashes
    pen.setWidthF(isCrowded_ || pen.style() != Qt::SolidLine ? thin : wide);
    return pen;
}

void QtLiveChart::paintPens()
{
    for (const Line& line : lines_)
        line.series->setPen(penOf(line.event));
}

/// Takes colours and fonts from the window.
void QtLiveChart::paintColours()
{
    const QColor text = palette().color(QPalette::Text);
    const QColor base = palette().color(QPalette::Base);
    const auto mixed = [&](double part) {
        return QColor::fromRgbF(static_cast<float>(base.redF() + (text.redF() - base.redF()) * part),
                                static_cast<float>(base.greenF() + (text.greenF() - base.greenF()) * part),
                                static_cast<float>(base.blueF() + (text.blueF() - base.blueF()) * part));
    };
    chart_->setBackgroundBrush(base);
    chart_->setBackgroundPen(Qt::NoPen);
    view_->setBackgroundBrush(base);
    for (QAbstractAxis* axis : chart_->axes()) {
        axis->setLabelsColor(text);
        axis->setLabelsFont(font());
        axis->setTitleBrush(text);
        axis->setTitleFont(font());
        axis->setLinePenColor(mixed(0.5));
        axis->setGridLineColor(mixed(0.15));
    }
    paintPens();

    const QSignalBlocker quiet(ui->chartEvents); // shown, not checked by the user
    for (int row = 0; row < ui->chartEvents->count(); ++row) {
        QListWidgetItem* item = ui->chartEvents->item(row);
        const std::size_t event = eventOf(*item);
        item->setIcon(QIcon(sampleOf(event)));
    }
}

/// A piece of an event's line; nothing is drawn of one that is not shown.
QPixmap QtLiveChart::sampleOf(std::size_t event) const
{
    QPixmap sample(sampleSize * devicePixelRatioF());
    sample.setDevicePixelRatio(devicePixelRatioF());
    sample.fill(Qt::transparent);
    if (styles_.at(event) == none)
        return sample;
    QPainter painter(&sample);
    QPen pen = penOf(event);
    pen.setWidthF(pen.style() == Qt::SolidLine ? 3 : 2);
    painter.setPen(pen);
    painter.drawLine(1, sampleSize.height() / 2, sampleSize.width() - 1, sampleSize.height() / 2);
    return sample;
}

void QtLiveChart::zoom(double factor, double place)
{
    range_.zoom(factor, range_.from() + place * (range_.to() - range_.from()));
    paint();
}

void QtLiveChart::pan(double part)
{
    range_.pan(part * (range_.to() - range_.from()));
    paint();
}

void QtLiveChart::showAll()
{
    range_.showAll();
    paint();
}

/// The chart with its lines' names below it.
QImage QtLiveChart::picture() const
{
    constexpr int gap = 8;
    const QFontMetrics metrics(font());
    const int rowHeight = metrics.lineSpacing() + gap / 2;
    const QSize size = view_->size();
    std::vector<QPoint> places; // of the names, in rows
    QPoint place(gap, size.height());
    for (const Line& line : lines_) {
        const int width = sampleSize.width() + metrics.horizontalAdvance(line.series->name()) + 2 * gap;
        if (place.x() + width > size.width() && place.x() > gap)
            place = QPoint(gap, place.y() + rowHeight);
        places.push_back(place);
        place.rx() += width + gap;
    }
    const int height = places.empty() ? size.height() : place.y() + rowHeight + gap;

    QImage image(QSize(size.width(), height) * devicePixelRatioF(), QImage::Format_RGB32);
    image.setDevicePixelRatio(devicePixelRatioF());
    image.fill(palette().color(QPalette::Base));
    QPainter painter(&image);
    painter.drawPixmap(0, 0, view_->grab());
    painter.setFont(font());
    painter.setPen(palette().color(QPalette::Text));
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        const QPoint middle = places[i] + QPoint(0, rowHeight / 2);
        painter.drawPixmap(middle - QPoint(0, sampleSize.height() / 2), sampleOf(lines_[i].event));
        painter.drawText(places[i] + QPoint(sampleSize.width() + gap,
                                            (rowHeight - metrics.height()) / 2 + metrics.ascent()),
                         lines_[i].series->name());
    }
    return image;
}

/// Polling goes on while the user chooses a file; the picture is what was seen when the button was pressed.
void QtLiveChart::savePicture()
{
    const QImage image = picture();
    ProgramValues& values = surroundings_.values;
    const std::string path = surroundings_.dialogs.chooseToSave(
        {.extension = "png", .filter = "Pictures (*.png)|*.png|All files (*.*)|*.*"}, values.parmInitDir,
        "chart.png");
    if (path.empty())
        return;
    surroundings_.gate.run([image, path, &values] {
        QByteArray bytes;
        QBuffer buffer(&bytes);
        if (!image.save(&buffer, "PNG"))
            throw FileError("The picture can't be made; there may be too little memory.");
        replaceFile(path, [&bytes](std::ostream& stream) { stream.write(bytes.constData(), bytes.size()); });
        values.rememberFolderOf(path);
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
