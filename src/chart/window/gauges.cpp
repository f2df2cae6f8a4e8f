#include "chart/window/gauges.h"

#include "catalogue/eventValue.h"
#include "chart/gaugeReading.h"
#include "platform/text.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QScrollArea>
#include <QShortcut>
#include <QSplitter>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>
#include <utility>
#include <vector>

namespace zint {
namespace {

constexpr int measuredSize = 100;    ///< pixels of the font in which figures are measured
constexpr double textPart = 0.75;    ///< of a line
constexpr double smallestName = 0.7; ///< of its usual size: a longer one is cut off

QFont sized(QFont font, double pixels)
{
    font.setPixelSize(std::max(1, static_cast<int>(pixels)));
    return font;
}

} // namespace

/// One event: name and unit, the figure as large as there is room for, and its place between minimum and
/// maximum. The figure keeps its size while it changes: the widest so far has to fit.
class Gauge final : public QWidget {
public:
    Gauge(std::size_t number, const DesignEntry& event, QWidget* parent);

    void look(const SampleStore& samples, bool isRunning);
    void tell();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void measure();
    QColor textColour(float strength) const;
    void paintHead(QPainter& painter, QRectF line) const;
    void paintFigure(QPainter& painter, const QRectF& room) const;
    void paintRange(QPainter& painter, const QRectF& bar, const QRectF& line) const;

    QString unit_;
    GaugeReader reader_;
    GaugeReading reading_;
    bool isRunning_ = false;
    QString widest_ = QStringLiteral("000"); ///< of the figures so far; most have three digits
};

Gauge::Gauge(std::size_t number, const DesignEntry& event, QWidget* parent)
    : QWidget(parent), unit_(toQt(unitNameOf(event))), reader_(number, event)
{
    setObjectName(QStringLiteral("gauge%1").arg(number + 1));
    setAccessibleName(toQt(event.name()));
    setToolTip(accessibleName());
    setFocusPolicy(Qt::TabFocus); // for screen readers
}

void Gauge::look(const SampleStore& samples, bool isRunning)
{
    GaugeReading reading = reader_.read(samples);
    if (reading == reading_ && isRunning == isRunning_)
        return;
    if (reading.badReplies != reading_.badReplies)
        setToolTip(accessibleName() + tr("\nBad replies: %1").arg(reading.badReplies));
    reading_ = std::move(reading);
    isRunning_ = isRunning;
    measure();
    update();
}

/// Lets screen readers know what is shown.
void Gauge::tell()
{
    QString text = toQt(reading_.figure) + u' ' + unit_;
    if (!reading_.minimum.empty())
        text += tr(", minimum %1, maximum %2").arg(toQt(reading_.minimum), toQt(reading_.maximum));
    if (reading_.badReplies > 0)
        text += tr(", bad replies: %1").arg(reading_.badReplies);
    setAccessibleDescription(text);
}

void Gauge::measure()
{
    const QFontMetrics metrics(sized(font(), measuredSize));
    for (const std::string& text : {reading_.figure, reading_.minimum, reading_.maximum}) {
        if (metrics.horizontalAdvance(toQt(text)) > metrics.horizontalAdvance(widest_))
            widest_ = toQt(text);
    }
}

/// @param strength from 0, the background, to 1
QColor Gauge::textColour(float strength) const
{
    QColor colour = palette().color(QPalette::Text);
    colour.setAlphaF(strength);
    return colour;
}

void Gauge::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(hasFocus() ? QPen(palette().highlight(), 3) : QPen(textColour(0.25F), 1));
    painter.setBrush(palette().base());
    painter.drawRoundedRect(QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5), 4, 4);

    const double line = std::min(height() * 0.15, std::max(width() * 0.1, 1.3 * fontMetrics().height()));
    const QRectF room = QRectF(rect()).adjusted(line / 2, line / 4, -line / 2, -line / 4);
    const QRectF foot(room.left(), room.bottom() - line, room.width(), line);
    const QRectF bar(room.left(), foot.top() - line / 2, room.width(), line / 2);
    paintHead(painter, {room.left(), room.top(), room.width(), line});
    paintFigure(painter,
                {room.left(), room.top() + line, room.width(), bar.top() - room.top() - 1.25 * line});
    paintRange(painter, bar, foot);
}

/// Name and unit, and a mark in front of them when there was a bad reply.
void Gauge::paintHead(QPainter& painter, QRectF line) const
{
    painter.setPen(textColour(1));
    painter.setFont(sized(font(), line.height() * textPart));
    if (reading_.badReplies > 0) {
        const QRectF mark(line.topLeft(), QSizeF(line.height(), line.height()));
        painter.setBrush(Qt::NoBrush);
        painter.drawPolygon(
            QPolygonF({{mark.center().x(), mark.top() + 1}, mark.bottomRight(), mark.bottomLeft()}));
        painter.drawText(mark, Qt::AlignHCenter | Qt::AlignBottom, QStringLiteral("!"));
        line.setLeft(mark.right() + line.height() / 3);
    }
    const double unit = painter.fontMetrics().horizontalAdvance(unit_);
    painter.drawText(line, Qt::AlignRight | Qt::AlignVCenter, unit_);
    line.setRight(line.right() - unit - line.height() / 3);
    const double part = line.width() / painter.fontMetrics().horizontalAdvance(accessibleName());
    painter.setFont(sized(font(), painter.font().pixelSize() * std::clamp(part, smallestName, 1.0)));
    const QString name =
        painter.fontMetrics().elidedText(accessibleName(), Qt::ElideRight, static_cast<int>(line.width()));
    painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter, name);
}

/// Pale while polling stands still, so that nobody takes an old value for the present one.
void Gauge::paintFigure(QPainter& painter, const QRectF& room) const
{
    painter.setPen(textColour(isRunning_ ? 1 : 0.6F));
    const QFontMetricsF measured(sized(font(), measuredSize));
    const double across = room.width() / measured.horizontalAdvance(widest_);
    const double upright = room.height() / (1.2 * measured.capHeight()); // with some space
    painter.setFont(sized(font(), measuredSize * std::min(across, upright)));
    const QFontMetricsF metrics(painter.font());
    const QString text = toQt(reading_.figure);
    const double left = room.center().x() - metrics.horizontalAdvance(text) / 2;
    painter.drawText(QPointF(left, room.center().y() + metrics.capHeight() / 2), text);
}

void Gauge::paintRange(QPainter& painter, const QRectF& bar, const QRectF& line) const
{
    painter.fillRect(bar, textColour(0.2F));
    if (reading_.place) {
        const double mark = bar.height() / 2;
        const double place = bar.left() + *reading_.place * (bar.width() - mark);
        painter.fillRect(QRectF(bar.left(), bar.top(), place - bar.left(), bar.height()),
                         palette().highlight());
        painter.fillRect(QRectF(place, bar.top() - mark / 2, mark, bar.height() + mark), textColour(1));
    }
    painter.setPen(textColour(1));
    const QString minimum = toQt(reading_.minimum);
    const QString maximum = toQt(reading_.maximum);
    painter.setFont(sized(font(), line.height() * textPart));
    const double both = painter.fontMetrics().horizontalAdvance(minimum + QStringLiteral("  ") + maximum);
    painter.setFont(sized(font(), line.height() * textPart * std::min(1.0, line.width() / both)));
    painter.drawText(line, Qt::AlignLeft | Qt::AlignBottom, minimum);
    painter.drawText(line, Qt::AlignRight | Qt::AlignBottom, maximum);
}

namespace {

/// How many columns give the largest figures.
int columnsFor(int count, QSize room)
{
    const auto figure = [&](int columns) { // what is as high as it is wide
        const int rows = (count + columns - 1) / columns;
        return std::min(room.width() / columns / 2, room.height() / rows);
    };
    int best = 1;
    for (int columns = 2; columns <= count; ++columns) {
        if (figure(columns) > figure(best))
            best = columns;
    }
    return best;
}

} // namespace

/// The gauges in a grid, which can fill the screen.
class GaugeBoard final : public QScrollArea {
public:
    explicit GaugeBoard(QSplitter& home);

    void list(const Design& design, const std::vector<std::size_t>& events);
    void look(const SampleStore& samples, bool isRunning, bool tells);
    void toggleFullScreen();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void arrange();

    QSplitter& home_;
    QList<int> homeSizes_; ///< of the splitter, while the screen is filled
    QLabel* page_;         ///< bears the gauges, or tells why there are none
    std::vector<Gauge*> gauges_;
};

GaugeBoard::GaugeBoard(QSplitter& home) : QScrollArea(&home), home_(home), page_(new QLabel(this))
{
    setObjectName(QStringLiteral("gaugeBoard"));
    setAccessibleName(Gauges::tr("Gauges"));
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::ClickFocus); // the gauges have their own
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    page_->setAlignment(Qt::AlignCenter);
    setWidget(page_);
}

void GaugeBoard::list(const Design& design, const std::vector<std::size_t>& events)
{
    for (Gauge* gauge : std::exchange(gauges_, {}))
        delete gauge;
    for (const std::size_t event : events) {
        gauges_.push_back(new Gauge(event, design.events.at(event), page_));
        gauges_.back()->show();
    }
    page_->setText(events.empty() ? Gauges::tr("Check the events to show") : QString());
    arrange();
}

void GaugeBoard::look(const SampleStore& samples, bool isRunning, bool tells)
{
    for (Gauge* gauge : gauges_) {
        gauge->look(samples, isRunning);
        if (tells)
            gauge->tell();
    }
}

/// Gives the gauges all the room there is, and more to be scrolled where they would be too small to be read.
void GaugeBoard::arrange()
{
    const QSize smallest(fontMetrics().averageCharWidth() * 14, fontMetrics().height() * 9 / 2);
    const int count = std::max(1, static_cast<int>(gauges_.size()));
    const QSize room = viewport()->size();
    const int columns = std::min(columnsFor(count, room), std::max(1, room.width() / smallest.width()));
    const int rows = (count + columns - 1) / columns;
    page_->resize(room.width(), std::max(room.height(), rows * smallest.height()));
    constexpr int gap = 4;
    for (int i = 0; i < static_cast<int>(gauges_.size()); ++i) {
        const auto edge = [&](int column, int row) {
            return QPoint(column * page_->width() / columns, row * page_->height() / rows);
        };
        const QRect cell(edge(i % columns, i / columns), edge(i % columns + 1, i / columns + 1));
        gauges_[static_cast<std::size_t>(i)]->setGeometry(
            cell.adjusted(gap / 2, gap / 2, -gap / 2, -gap / 2));
    }
}

void GaugeBoard::toggleFullScreen()
{
    if (isWindow()) {
        setWindowState(Qt::WindowNoState);
        home_.insertWidget(0, this);
        home_.setSizes(homeSizes_);
        show();
    } else {
        homeSizes_ = home_.sizes();
        setParent(home_.parentWidget(), Qt::Window);
        setWindowTitle(accessibleName());
        showFullScreen();
    }
    setFocus();
}

void GaugeBoard::resizeEvent(QResizeEvent* event)
{
    QScrollArea::resizeEvent(event);
    arrange();
}

void GaugeBoard::keyPressEvent(QKeyEvent* event)
{
    if (isWindow() && (event->key() == Qt::Key_Escape || event->key() == Qt::Key_F11))
        toggleFullScreen();
    else
        QScrollArea::keyPressEvent(event);
}

void GaugeBoard::mouseDoubleClickEvent(QMouseEvent* /*event*/) { toggleFullScreen(); }

/// Closed as a window, the gauges go back to where they were.
void GaugeBoard::closeEvent(QCloseEvent* /*event*/)
{
    QTimer::singleShot(0, this, [this] { toggleFullScreen(); });
}

Gauges::Gauges(GaugesSurroundings surroundings, QWidget* parent)
    : QWidget(parent), surroundings_(std::move(surroundings))
{
    auto* splitter = new QSplitter(this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, layout->contentsMargins().top(), 0, 0);
    layout->addWidget(splitter);
    board_ = new GaugeBoard(*splitter);
    splitter->addWidget(makeSide());
    splitter->setChildrenCollapsible(false);
    splitter->setStretchFactor(0, 1); // the list keeps its width
    const int listWidth = fontMetrics().averageCharWidth() * 24;
    splitter->setSizes({3 * listWidth, listWidth});
    timer_.setInterval(std::chrono::milliseconds(100));
    connect(&timer_, &QTimer::timeout, this, [this] { look(); });
    connect(&surroundings_.choice, &EventChoice::chosenChanged, this, [this] {
        listGauges();
        look();
    });
    connect(new QShortcut(Qt::Key_F11, this), &QShortcut::activated, board_,
            [this] { board_->toggleFullScreen(); });
    listGauges();
}

QWidget* Gauges::makeSide()
{
    auto* side = new QWidget(this);
    auto* layout = new QVBoxLayout(side);
    auto* events = new QTableView(side);
    auto* fill = new QPushButton(tr("Full Screen"), side);
    layout->setContentsMargins({});
    layout->addWidget(events);
    layout->addWidget(fill);
    events->setObjectName(QStringLiteral("gaugeEvents"));
    events->setAccessibleName(tr("Events to show"));
    events->setToolTip(tr("Check the events to show"));
    events->setModel(&surroundings_.choice);
    events->hideColumn(EventChoice::valueColumn);
    events->setShowGrid(false);
    events->setTabKeyNavigation(false);
    events->horizontalHeader()->hide();
    events->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    events->verticalHeader()->hide();
    events->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents); // names may be long
    fill->setObjectName(QStringLiteral("gaugeScreen"));
    fill->setToolTip(tr("Fill the screen with the gauges (F11, or double-click them; Esc leaves)"));
    connect(fill, &QPushButton::clicked, this, [this] { board_->toggleFullScreen(); });
    return side;
}

void Gauges::setRunning(bool isRunning)
{
    if (isRunning == isRunning_ && generation_ == surroundings_.samples.generation())
        return;
    isRunning_ = isRunning;
    look();
}

void Gauges::listGauges()
{
    generation_ = surroundings_.samples.generation();
    told_.invalidate();
    board_->list(surroundings_.design(), surroundings_.choice.chosen());
}

/// Looks what the store has. Screen readers learn it now and then, which is as often as they can speak.
void Gauges::look()
{
    constexpr int tellingPause = 5000; // ms
    if (generation_ != surroundings_.samples.generation())
        listGauges();
    if (!board_->isVisible()) { // on its page or on the screen
        timer_.stop();
        return;
    }
    const bool tells = !isRunning_ || !told_.isValid() || told_.hasExpired(tellingPause);
    if (tells)
        told_.start();
    board_->look(surroundings_.samples, isRunning_, tells);
    if (!isRunning_)
        timer_.stop();
    else if (!timer_.isActive())
        timer_.start();
}

void Gauges::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    look();
}

} // namespace zint
