#include "chart/window/chartPlot.h"

#include "catalogue/eventValue.h"
#include "chart/window/chartStyle.h"
#include "platform/text.h"
#include "shared/module1.h"

#include <QSignalBlocker>
#include <QStyleOptionFocusRect>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace zint {
namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr int dotSize = 6; // pixels

struct ValueTicker final : QCPAxisTicker {
    using QCPAxisTicker::getTickStep;
};

using Point = QCPGraphDataContainer::const_iterator;

/// What is no number changes nothing.
void widen(QCPRange& values, Point begin, Point end)
{
    double lowest = values.lower;
    double highest = values.upper;
    for (; begin < end; ++begin) {
        lowest = std::min(lowest, begin->value);
        highest = std::max(highest, begin->value);
    }
    values.lower = lowest;
    values.upper = highest;
}

/// The next limits that have a tick, with room on both sides of a value by itself.
QCPRange roundLimits(ValueTicker& ticker, QCPRange values)
{
    if (values.size() == 0) {
        const double room = std::abs(values.lower) * 0.1;
        values = {values.lower - room, values.upper + (room > 0 ? room : 1)};
    }
    for (int i = 0; i < 3; ++i) { // wider limits may have wider ticks
        const double step = ticker.getTickStep(values);
        values = {std::floor(values.lower / step) * step, std::ceil(values.upper / step) * step};
    }
    return values;
}

} // namespace

/// A piece that is no larger than a dot becomes one: one sample by itself, say.
void ChartLine::drawLinePlot(QCPPainter* painter, const QVector<QPointF>& points) const
{
    QCPGraph::drawLinePlot(painter, points);
    painter->setPen(Qt::NoPen);
    painter->setBrush(pen().color());
    painter->setClipRect(clipRect() + QMargins(dotSize, dotSize, dotSize, dotSize)); // whole at the edge
    for (qsizetype start = 0, i = 0; i <= points.size(); ++i) {
        if (i < points.size() && !std::isnan(points[i].y()))
            continue;
        const QRectF box = QPolygonF(points.mid(start, i - start)).boundingRect();
        if (i > start && std::max(box.width(), box.height()) < dotSize)
            painter->drawEllipse(box.center(), dotSize / 2.0, dotSize / 2.0);
        start = i + 1;
    }
}

ChartPlot::ChartPlot(const SampleStore& samples, QWidget* parent)
    : QCustomPlot(parent), samples_(samples), cursorLine_(new QCPItemStraightLine(this))
{
    setPlottingHints(QCP::phFastPolylines | QCP::phCacheLabels);
    setAutoAddPlottableToLegend(false);
    setLocale(QLocale::c());
    xAxis->setTicker(QSharedPointer<QCPAxisTickerTime>::create());
    addAxis(yAxis);
    addAxis(yAxis2);

    const QString cursorLayer = QStringLiteral("cursor");
    addLayer(cursorLayer);
    layer(cursorLayer)->setMode(QCPLayer::lmBuffered);
    cursorLine_->setLayer(cursorLayer);
    cursorLine_->setVisible(false);
    cursorLine_->setAntialiased(false);

    connect(this, &QCustomPlot::beforeReplot, this, &ChartPlot::fit);
    paintColours();
}

void ChartPlot::addAxis(QCPAxis* axis)
{
    axis->setLayer(QStringLiteral("axes"));
    axis->grid()->setLayer(QStringLiteral("grid")); // below the lines
    axis->grid()->setVisible(axes_.empty());        // two grids would be one too many
    axis->setTicker(QSharedPointer<ValueTicker>::create());
    axis->setNumberFormat(QStringLiteral("g"));
    axis->setLowerEnding(QCPLineEnding::esNone);
    axis->setUpperEnding(QCPLineEnding::esNone);
    connect(axis, qOverload<const QCPRange&>(&QCPAxis::rangeChanged), this, [this, axis](const auto& range) {
        if (!axis->graphs().isEmpty())
            scaled_[axis->label()] = range;
        replot(rpQueuedReplot);
    });
    axes_.push_back(axis);
}

ChartLine* ChartPlot::find(std::size_t event) const
{
    const auto line = std::ranges::find(lines_, event, &ChartLine::event);
    return line == lines_.end() ? nullptr : *line;
}

std::size_t ChartPlot::freeStyle() const
{
    std::size_t style = 0;
    while (std::ranges::find(lines_, style, &ChartLine::style) != lines_.end())
        ++style;
    return style;
}

void ChartPlot::draw(const Design& design, const std::vector<std::size_t>& events)
{
    const auto stays = [&](const ChartLine* line) {
        return std::ranges::binary_search(events, line->event) && line->event < design.events.size() &&
               design.events[line->event] == line->entry;
    };
    std::erase_if(lines_, [&](ChartLine* line) { return !stays(line) && removePlottable(line); });
    for (const std::size_t event : events) {
        if (event >= design.events.size() || find(event) != nullptr)
            continue;
        auto* line = new ChartLine(xAxis, yAxis);
        line->event = event;
        line->entry = design.events[event];
        line->style = freeStyle();
        lines_.push_back(line);
    }
    std::ranges::sort(lines_, {}, &ChartLine::event);
    units_.clear();
    for (ChartLine* line : lines_)
        line->setValueAxis(axisOf(toQt(unitNameOf(line->entry))));
}

QCPAxis* ChartPlot::axisOf(const QString& unit)
{
    if (!units_.contains(unit))
        units_ += unit;
    const auto place = static_cast<std::size_t>(units_.indexOf(unit));
    if (place == axes_.size()) {
        addAxis(axisRect()->addAxis(place % 2 == 0 ? QCPAxis::atLeft : QCPAxis::atRight));
        paintColours();
    }
    axes_[place]->setLabel(unit);
    return axes_[place];
}

double ChartPlot::read()
{
    const bool isNew = hasOthers();
    generation_ = samples_.generation();
    if (isNew)
        freeScales();
    double end = samples_.isEmpty() ? 0 : samples_[samples_.size() - 1].seconds();
    for (ChartLine* line : lines_) {
        if (isNew) {
            line->data()->clear();
            line->read = EventTotals::none;
        }
        read(*line);
        end = line->data()->isEmpty() ? end : std::max(end, (line->data()->constEnd() - 1)->key);
    }
    return end;
}

/// Adds what the store has got since the last time. A gap is a point that is no number, at the time of the
/// last one before it: the library shows that as a gap also where it joins the points of a pixel.
void ChartPlot::read(ChartLine& line) const
{
    if (line.event >= samples_.events().size())
        return;
    std::int32_t next = 0;
    if (line.read != EventTotals::none)
        next = samples_[line.read].link;
    else if (const std::int32_t header = samples_.events()[line.event].header; header != EventTotals::none)
        next = header + 1;
    QCPGraphDataContainer& points = *line.data();
    for (; next != 0; next = samples_[next].link) {
        const SampleRecord& sample = samples_[next];
        line.read = next;
        const double last = points.isEmpty() ? 0 : (points.constEnd() - 1)->key;
        if (sample.isFirst && !points.isEmpty())
            points.add({last, std::numeric_limits<double>::quiet_NaN()});
        if (const auto number = drawnNumber(line.entry, sample.value))
            points.add({std::max(last, sample.seconds()), *number}); // a clock may be set back
    }
}

/// Before each painting, for the room and the range that there are now.
void ChartPlot::fit()
{
    std::ptrdiff_t points = 0;
    for (std::size_t i = 0; i < axes_.size(); ++i) {
        const int fitting = viewport().width() < 320 ? 1 : std::max(2, viewport().width() / 240);
        axes_[i]->setVisible(static_cast<qsizetype>(i) < std::min<qsizetype>(fitting, units_.size()));
        points += fitValues(*axes_[i]);
    }
    constexpr std::ptrdiff_t crowd = 1500;
    isCrowded_ = points > (isCrowded_ ? crowd * 3 / 4 : crowd); // not to and fro
    updateLayout();
    fitTime();
    paintLines();
}

/// A line's next point on either side of what is shown counts, for the line leads there, but over no gap.
/// @return how many points of the axis are in sight
std::ptrdiff_t ChartPlot::fitValues(QCPAxis& axis)
{
    const QCPRange time = xAxis->range();
    QCPRange values;
    values.lower = infinite; // no value yet
    values.upper = -infinite;
    std::ptrdiff_t count = 0;
    for (const QCPGraph* line : axis.graphs()) {
        const auto begin = line->data()->findBegin(time.lower);
        auto end = line->data()->findEnd(time.upper);
        if (end - begin >= 2 && (end - 1)->key > time.upper && std::isnan((end - 2)->value))
            --end;
        count += end - begin;
        widen(values, begin, end);
    }
    const auto ticker = axis.ticker().staticCast<ValueTicker>();
    const int perTick = QFontMetrics(axis.tickLabelFont()).height() * 3;
    ticker->setTickCount(std::clamp(viewport().height() / perTick, 1, 6));
    const QSignalBlocker isNoUser(axis);
    if (const auto scaled = scaled_.find(axis.label()); scaled != scaled_.end())
        axis.setRange(scaled->second);
    else if (values.lower <= values.upper)
        axis.setRange(roundLimits(*ticker, values));
    else if (std::ranges::all_of(axis.graphs(), [](const auto* line) { return line->data()->isEmpty(); }))
        axis.setRange(0, 1); // the limits may be those of another unit
    return count;
}

/// Where the library joins the points of a pixel, the range moves by whole ones: a line keeps its shape.
void ChartPlot::fitTime()
{
    const int width = std::max(1, axisRect()->width());
    if (isCrowded_) {
        const QSignalBlocker isNoUser(xAxis);
        const double pixel = xAxis->range().size() / width;
        const double lower = xAxis->range().lower;
        xAxis->moveRange(std::round(lower / pixel) * pixel - lower); // once: the next painting finds it there
    }
    const bool hasHours = xAxis->range().upper >= 3600;
    QString format = hasHours ? QStringLiteral("%h:%m:%s") : QStringLiteral("%m:%s");
    QString widest = toQt(durationText(std::llround(xAxis->range().upper)));
    const QFontMetrics metrics(xAxis->tickLabelFont());
    // steps of time are up to 1.75 times shorter than asked for
    const auto room = [&] { return std::max(1, width * 4 / (7 * metrics.horizontalAdvance(widest))); };
    constexpr double close = 4; // seconds, of which whole ones are enough beyond
    const double shown = xAxis->range().size();
    if (shown < close) {
        format += QStringLiteral(".%z");
        widest += QStringLiteral(".000");
    }
    const auto ticker = xAxis->ticker().staticCast<QCPAxisTickerTime>();
    ticker->setTimeFormat(format);
    ticker->setFieldWidth(QCPAxisTickerTime::tuHours, 1);
    ticker->setFieldWidth(QCPAxisTickerTime::tuMinutes, hasHours ? 2 : 1);
    ticker->setTickCount(shown < close ? room() : std::min(room(), static_cast<int>(shown)));
    const int half = metrics.horizontalAdvance(widest) / 2 + 2; // of a label at the end of the axis
    axisRect()->setMinimumMargins({half, metrics.height(), half, 0});
}

void ChartPlot::paintLines()
{
    for (ChartLine* line : lines_) {
        line->setPen(penOf(line->event));
        line->setName(nameOf(line->event));
    }
}

QString ChartPlot::nameOf(std::size_t event) const
{
    const ChartLine* line = find(event);
    if (line == nullptr)
        return {};
    const QCPAxis& axis = *line->valueAxis();
    QStringList notes;
    if (!axis.label().isEmpty())
        notes += axis.label();
    if (!axis.visible() && !line->data()->isEmpty())
        notes += QStringLiteral("%1..%2").arg(axis.range().lower).arg(axis.range().upper);
    const QString name = toQt(line->entry.name());
    return notes.isEmpty() ? name : name + QStringLiteral(" (%1)").arg(notes.join(QStringLiteral(", ")));
}

QPen ChartPlot::penOf(std::size_t event) const
{
    const ChartLine* line = find(event);
    const bool isThin = isCrowded_ && names_ == nullptr; // dashes, for those who print
    return line == nullptr ? QPen(Qt::NoPen)
                           : chartPen(line->style, isThin ? LineWidth::thin : LineWidth::wide, colours());
}

std::optional<double> ChartPlot::valueAt(std::size_t event, double time) const
{
    const ChartLine* line = find(event);
    if (line == nullptr || line->data()->isEmpty())
        return {};
    constexpr double pixels = 8;
    const double reach = pixels * xAxis->range().size() / std::max(1, axisRect()->width());
    const auto next = line->data()->findBegin(time, false);
    auto last = next == line->data()->constBegin() ? next : next - 1;
    const bool isJoined = last != next && next != line->data()->constEnd() && !std::isnan(last->value);
    while (std::isnan(last->value))
        --last;
    const bool isNext = next != line->data()->constEnd() && next->key - time < std::abs(time - last->key);
    const auto nearest = isNext ? next : last;
    return isJoined || std::abs(nearest->key - time) <= reach ? std::optional(nearest->value) : std::nullopt;
}

std::optional<double> ChartPlot::nextTime(double time, int direction) const
{
    std::optional<double> best;
    for (const ChartLine* line : lines_) {
        const auto next = line->data()->findEnd(time, false);
        const auto last = line->data()->findBegin(time, false);
        if (direction > 0 && next != line->data()->constEnd())
            best = std::min(best.value_or(next->key), next->key);
        else if (direction < 0 && last != line->data()->constBegin())
            best = std::max(best.value_or((last - 1)->key), (last - 1)->key);
    }
    return best;
}

void ChartPlot::moveCursor(std::optional<double> time)
{
    cursor_ = time;
    cursorLine_->setVisible(time.has_value());
    cursorLine_->point1->setCoords(time.value_or(0), 0);
    cursorLine_->point2->setCoords(time.value_or(0), 1);
    cursorLine_->layer()->replot();
}

QCPAxis* ChartPlot::axisAt(const QPointF& place) const
{
    const QRectF rect = axisRect()->rect();
    if (place.y() < rect.top() || place.y() > rect.bottom())
        return place.y() > rect.bottom() ? xAxis : nullptr;
    QCPAxis* found = nullptr;
    for (QCPAxis* axis : axes_) { // from the inside out
        const bool isLeft = axis->axisType() == QCPAxis::atLeft;
        const double distance = isLeft ? rect.left() - place.x() : place.x() - rect.right();
        if (axis->visible() && distance > axis->offset())
            found = axis;
    }
    return found;
}

QSize ChartPlot::setOnPaper(bool isOnPaper)
{
    if (!isOnPaper) {
        plotLayout()->remove(std::exchange(names_, nullptr));
        plotLayout()->simplify();
        paintColours();
        return viewport().size();
    }
    names_ = new QCPLegend;
    plotLayout()->addElement(1, 0, names_);
    names_->setBorderPen(Qt::NoPen);
    names_->setFont(xAxis->labelFont());
    names_->setFillOrder(QCPLegend::foColumnsFirst);
    int widest = 1;
    for (const ChartLine* line : lines_)
        widest = std::max(widest, QFontMetrics(names_->font()).horizontalAdvance(line->name()));
    names_->setWrap(std::max(1, viewport().width() / (widest + names_->iconSize().width() + 24)));
    for (ChartLine* line : lines_)
        line->addToLegend(names_);
    const int height = names_->minimumOuterSizeHint().height();
    names_->setMaximumSize(QWIDGETSIZE_MAX, height);
    paintColours();
    return viewport().size() + QSize(0, height);
}

QPalette ChartPlot::colours() const
{
    return names_ == nullptr
               ? palette()
               : QPalette(Qt::black, Qt::lightGray, Qt::white, Qt::gray, Qt::gray, Qt::black, Qt::white);
}

void ChartPlot::paintColours()
{
    const QPalette palette = colours();
    const QColor text = palette.color(QPalette::Text);
    QFont inPixels = font(); // suits any device that the chart is drawn on
    inPixels.setPixelSize(QFontInfo(font()).pixelSize());
    setBackground(palette.brush(QPalette::Base));
    for (QCPAxis* axis : axisRect()->axes()) {
        axis->setTickLabelFont(inPixels);
        axis->setLabelFont(inPixels);
        axis->setTickLabelColor(text);
        axis->setLabelColor(text);
        axis->setBasePen(chartColour(0.5, palette));
        axis->setTickPen(chartColour(0.5, palette));
        axis->setSubTicks(false);
        axis->grid()->setPen(chartColour(0.15, palette));
        axis->grid()->setZeroLinePen(chartColour(0.15, palette));
    }
    cursorLine_->setPen(chartColour(0.7, palette));
    QColor inside = palette.color(QPalette::Highlight);
    selectionRect()->setPen(inside);
    inside.setAlphaF(0.2F);
    selectionRect()->setBrush(inside);
    paintLines();
}

void ChartPlot::changeEvent(QEvent* event)
{
    QCustomPlot::changeEvent(event);
    if (event->type() != QEvent::PaletteChange && event->type() != QEvent::FontChange)
        return;
    paintColours();
    replot(rpQueuedReplot);
}

void ChartPlot::paintEvent(QPaintEvent* event)
{
    QCustomPlot::paintEvent(event);
    if (!hasFocus())
        return;
    QPainter painter(this);
    constexpr int frame = 3;
    painter.setClipRegion(QRegion(rect()) - rect().adjusted(frame, frame, -frame, -frame)); // no tinted lines
    QStyleOptionFocusRect option;
    option.initFrom(this);
    option.rect = rect().adjusted(1, 1, -1, -1);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
}

} // namespace zint
