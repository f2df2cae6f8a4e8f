#include "chart/window/chartLines.h"

#include "catalogue/conversion.h"
#include "platform/text.h"
#include "shared/module1.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace zint {
namespace {

constexpr int dotSize = 6; // pixels

/// A line that shows a piece of it that is no larger than a dot as a dot: one sample by itself, say.
class LineGraph final : public QCPGraph {
public:
    using QCPGraph::QCPGraph;

protected:
    void drawLinePlot(QCPPainter* painter, const QVector<QPointF>& points) const override
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
};

class TimeTicker final : public QCPAxisTickerTime {
protected:
    double getTickStep(const QCPRange& range) override
    {
        const bool isClose = range.size() < tickCount();
        setTimeFormat(isClose ? QStringLiteral("%h:%m:%s.%z") : QStringLiteral("%h:%m:%s"));
        const double step = QCPAxisTickerTime::getTickStep(range);
        decimals_ = 0;
        for (double units = step; decimals_ < 3 && std::abs(std::round(units) - units) > 1e-6; units *= 10)
            ++decimals_;
        return step;
    }
    QString getTickLabel(double tick, const QLocale&, QChar, int) override
    {
        return timeText(std::max(tick, 0.0), decimals_);
    }

private:
    int decimals_ = 0;
};

class ValueTicker final : public QCPAxisTicker {
public:
    /// The next limits that have a tick.
    QCPRange rounded(QCPRange range)
    {
        for (int i = 0; i < 3; ++i) { // wider limits may have wider ticks
            const double step = getTickStep(range);
            range = {std::floor(range.lower / step) * step, std::ceil(range.upper / step) * step};
        }
        return range;
    }
};

/// Room on both sides of a value by itself.
QCPRange withRoom(QCPRange values)
{
    if (values.lower == values.upper) {
        const double room = values.lower == 0 ? 1 : std::abs(values.lower) * 0.1;
        values = {values.lower == 0 ? 0 : values.lower - room, values.upper + room};
    }
    return values;
}

/// A size in pixels suits any device that the chart is drawn on.
QFont inPixels(QFont font)
{
    font.setPixelSize(QFontInfo(font).pixelSize());
    return font;
}

} // namespace

QString timeText(double seconds, int decimals)
{
    const std::int64_t perSecond = std::llround(std::pow(10, decimals));
    const std::int64_t units = std::llround(seconds * static_cast<double>(perSecond));
    const QString text = toQt(durationText(units / perSecond));
    return decimals == 0 ? text
                         : text + u'.' + QString::number(units % perSecond).rightJustified(decimals, u'0');
}

ChartLines::ChartLines(QCustomPlot& plot, const SampleStore& samples)
    : plot_(plot), samples_(samples), palette_(plot.palette())
{
    plot.setPlottingHints(QCP::phFastPolylines | QCP::phCacheLabels);
    plot.setAutoAddPlottableToLegend(false);
    plot.setLocale(QLocale::c());
    plot.yAxis->setVisible(false); // stands in for those that come and go
    plot.yAxis->grid()->setVisible(false);
    plot.xAxis->setTicker(QSharedPointer<TimeTicker>::create());
}

const ChartLines::Line* ChartLines::find(std::size_t event) const
{
    const auto line = std::ranges::find(lines_, event, &Line::event);
    return line == lines_.end() ? nullptr : &*line;
}

std::size_t ChartLines::freeStyle() const
{
    std::size_t style = 0;
    while (std::ranges::find(lines_, style, &Line::style) != lines_.end())
        ++style;
    return style;
}

void ChartLines::draw(const Design& design, const std::vector<std::size_t>& events)
{
    const auto stays = [&](const Line& line) {
        return std::ranges::binary_search(events, line.event) && line.event < design.events.size() &&
               design.events[line.event] == line.entry;
    };
    std::erase_if(lines_,
                  [&](const Line& line) { return !stays(line) && plot_.removePlottable(line.graph); });
    for (const std::size_t event : events) {
        if (event < design.events.size() && find(event) == nullptr)
            lines_.push_back({.event = event,
                              .entry = design.events[event],
                              .style = freeStyle(),
                              .graph = new LineGraph(plot_.xAxis, plot_.yAxis)});
    }
    std::ranges::sort(lines_, {}, &Line::event);
    makeAxes();
    paintColours(palette_);
}

/// The first unit's axis is on the left, the second one's on the right, and so on in turn.
void ChartLines::makeAxes()
{
    const std::vector<ValueAxis> before = std::exchange(axes_, {});
    for (Line& line : lines_) {
        const std::string unit = std::string(unitName(line.entry.conversion));
        if (std::ranges::find(axes_, unit, &ValueAxis::unit) == axes_.end())
            addAxis(unit, before);
        const auto place = std::ranges::find(axes_, unit, &ValueAxis::unit);
        line.axis = static_cast<std::size_t>(place - axes_.begin());
        line.graph->setValueAxis(place->axis);
    }
    for (const ValueAxis& axis : before)
        plot_.axisRect()->removeAxis(axis.axis);
}

void ChartLines::addAxis(const std::string& unit, const std::vector<ValueAxis>& before)
{
    QCPAxis* axis = plot_.axisRect()->addAxis(axes_.size() % 2 == 0 ? QCPAxis::atLeft : QCPAxis::atRight);
    axis->setLayer(QStringLiteral("axes"));
    axis->grid()->setLayer(QStringLiteral("grid")); // below the lines
    axis->setTicker(QSharedPointer<ValueTicker>::create());
    axis->setLabel(toQt(unit));
    axis->setNumberFormat(QStringLiteral("g"));
    axis->setLowerEnding(QCPLineEnding::esNone);
    axis->setUpperEnding(QCPLineEnding::esNone);
    axis->grid()->setVisible(axes_.empty()); // two grids would be one too many
    const auto old = std::ranges::find(before, unit, &ValueAxis::unit);
    axis->setRange(old == before.end() ? QCPRange(0, 1) : old->axis->range());
    axes_.push_back({.unit = unit, .axis = axis, .isScaled = old != before.end() && old->isScaled});
}

/// Begins anew when the store has others than those that were read.
void ChartLines::read()
{
    const bool isNew = std::exchange(generation_, samples_.generation()) != samples_.generation();
    for (Line& line : lines_) {
        if (isNew) {
            line.graph->data()->clear();
            line.read = EventTotals::none;
        }
        read(line);
    }
}

/// Adds what the store has got since the last time. A gap is a point that is no number, at the time of the
/// last one before it: the library shows that as a gap also where it joins the points of a pixel.
void ChartLines::read(Line& line) const
{
    if (line.event >= samples_.events().size())
        return;
    std::int32_t next = 0;
    if (line.read != EventTotals::none)
        next = samples_[line.read].link;
    else if (const std::int32_t header = samples_.events()[line.event].header; header != EventTotals::none)
        next = header + 1;
    QCPGraphDataContainer& points = *line.graph->data();
    for (; next != 0; next = samples_[next].link) {
        const SampleRecord& sample = samples_[next];
        line.read = next;
        const double last = points.isEmpty() ? 0 : (points.constEnd() - 1)->key;
        if (sample.isFirst && !points.isEmpty())
            points.add({last, std::numeric_limits<double>::quiet_NaN()});
        if (const auto number = convertedNumber(line.entry.conversion, sample.value))
            points.add({std::max(last, sample.seconds()), *number}); // a clock may be set back
    }
}

/// Notes which values of a line are in sight, with its next point on either side so that it reaches the
/// edges. @return how many points these are
std::size_t ChartLines::look(const Line& line, double from, double to)
{
    const QCPGraphDataContainer& points = *line.graph->data();
    const auto begin = points.findBegin(from);
    auto end = points.findEnd(to);
    if (end - begin >= 2 && (end - 1)->key > to && std::isnan((end - 2)->value))
        --end; // behind a gap
    double lowest = std::numeric_limits<double>::infinity();
    double highest = -lowest;
    for (auto point = begin; point < end; ++point) {
        lowest = std::min(lowest, point->value); // not a number is not lower
        highest = std::max(highest, point->value);
    }
    ValueAxis& axis = axes_[line.axis];
    if (lowest <= highest)
        axis.seen = std::exchange(axis.isEmpty, false) ? QCPRange(lowest, highest)
                                                       : axis.seen.expanded({lowest, highest});
    return static_cast<std::size_t>(std::max<std::ptrdiff_t>(end - begin, 0));
}

void ChartLines::fit(ValueAxis& axis) const
{
    const int room = plot_.viewport().height() / (QFontMetrics(axis.axis->tickLabelFont()).height() * 3);
    auto* ticker = static_cast<ValueTicker*>(axis.axis->ticker().data());
    ticker->setTickCount(std::clamp(room, 1, 6));
    if (!axis.isScaled && !axis.isEmpty)
        axis.axis->setRange(ticker->rounded(withRoom(axis.seen)));
}

bool ChartLines::paint(double from, double to)
{
    read();
    std::size_t points = 0;
    for (ValueAxis& axis : axes_)
        axis.isEmpty = true;
    for (const Line& line : lines_)
        points += look(line, from, to);
    const int width = plot_.viewport().width();
    const std::size_t shown = width < 320 ? 1 : static_cast<std::size_t>(std::max(2, width / 240));
    for (std::size_t i = 0; i < axes_.size(); ++i) {
        fit(axes_[i]);
        axes_[i].axis->setVisible(i < shown);
    }
    constexpr std::size_t crowd = 1500;
    const bool wasCrowded = isCrowded_;
    isCrowded_ = points > (isCrowded_ ? crowd * 3 / 4 : crowd); // not to and fro
    paintTimeAxis(from, to);
    paintPens();
    plot_.replot(QCustomPlot::rpQueuedRefresh);
    return isCrowded_ != wasCrowded;
}

/// Where the library joins the points of a pixel, the range moves by whole ones: a line keeps its shape.
void ChartLines::paintTimeAxis(double from, double to)
{
    const double pixel = (to - from) / std::max(1, plot_.axisRect()->width());
    const double moved = isCrowded_ ? std::round(from / pixel) * pixel - from : 0;
    plot_.xAxis->setRange(from + moved, to + moved);
    const int label = QFontMetrics(plot_.xAxis->tickLabelFont()).horizontalAdvance(timeText(to, 1));
    plot_.xAxis->ticker()->setTickCount(std::max(2, plot_.axisRect()->width() * 2 / (label * 3)));
}

double ChartLines::end()
{
    read();
    double end = samples_.isEmpty() ? 0 : samples_[samples_.size() - 1].seconds();
    for (const Line& line : lines_)
        end = line.graph->data()->isEmpty() ? end : std::max(end, (line.graph->data()->constEnd() - 1)->key);
    return end;
}

void ChartLines::scale(QCPAxis* axis, const QCPRange& values)
{
    const auto scaled = std::ranges::find(axes_, axis, &ValueAxis::axis);
    if (scaled == axes_.end() || !QCPRange::validRange(values))
        return;
    scaled->isScaled = true;
    axis->setRange(values);
}

void ChartLines::freeScales()
{
    for (ValueAxis& axis : axes_)
        axis.isScaled = false;
}

void ChartLines::paintColours(const QPalette& palette)
{
    palette_ = palette;
    const QColor text = palette.color(QPalette::Text);
    const QFont font = inPixels(plot_.font());
    plot_.setBackground(palette.brush(QPalette::Base));
    for (QCPAxis* axis : plot_.axisRect()->axes()) {
        axis->setTickLabelFont(font);
        axis->setLabelFont(font);
        axis->setTickLabelColor(text);
        axis->setLabelColor(text);
        axis->setBasePen(chartColour(0.5, palette));
        axis->setTickPen(chartColour(0.5, palette));
        axis->setSubTicks(false);
        axis->grid()->setPen(chartColour(0.15, palette));
        axis->grid()->setZeroLinePen(chartColour(0.15, palette));
    }
    // a label at the end of the time axis needs half of its width beside the plot
    const int half = QFontMetrics(font).horizontalAdvance(QStringLiteral("0:00:00")) / 2;
    plot_.axisRect()->setMinimumMargins({half, half / 2, half, 0});
    paintPens();
}

void ChartLines::paintPens()
{
    for (const Line& line : lines_) {
        line.graph->setPen(penOf(line));
        line.graph->setName(nameOf(line.event));
    }
}

QPen ChartLines::penOf(const Line& line) const
{
    return chartPen(line.style, isCrowded_ ? LineWidth::thin : LineWidth::wide, palette_);
}

QString ChartLines::nameOf(std::size_t event) const
{
    const Line* line = find(event);
    if (line == nullptr)
        return {};
    const ValueAxis& axis = axes_[line->axis];
    QStringList notes;
    if (!axis.unit.empty())
        notes += toQt(axis.unit);
    if (!axis.axis->visible() && !axis.isEmpty)
        notes += QStringLiteral("%1..%2").arg(axis.axis->range().lower).arg(axis.axis->range().upper);
    const QString name = toQt(line->entry.name());
    return notes.isEmpty() ? name : name + QStringLiteral(" (%1)").arg(notes.join(QStringLiteral(", ")));
}

QIcon ChartLines::sampleOf(std::size_t event) const
{
    const Line* line = find(event);
    return line == nullptr ? QIcon() : lineSample(penOf(*line), plot_.devicePixelRatioF());
}

std::optional<double> ChartLines::valueAt(std::size_t event, double time) const
{
    const Line* line = find(event);
    if (line == nullptr)
        return {};
    constexpr double pixels = 8;
    const double reach = pixels * plot_.xAxis->range().size() / std::max(1, plot_.axisRect()->width());
    const QCPGraphDataContainer& points = *line->graph->data();
    const auto next = points.findBegin(time, false);
    auto last = points.findBegin(time);
    const bool isJoined = next != last && next != points.constEnd() && !std::isnan(last->value);
    if (next != last && std::isnan(last->value))
        --last;
    std::optional<double> value;
    double distance = isJoined ? std::numeric_limits<double>::infinity() : reach;
    for (const auto& point : {last, next}) {
        if (point == points.constEnd() || std::abs(point->key - time) > distance)
            continue;
        distance = std::abs(point->key - time);
        value = point->value;
    }
    return value;
}

std::optional<double> ChartLines::nextTime(double time, int direction) const
{
    std::optional<double> best;
    for (const Line& line : lines_) {
        const QCPGraphDataContainer& points = *line.graph->data();
        const auto next = points.findEnd(time, false);
        const auto last = points.findBegin(time, false);
        if (direction > 0 && next != points.constEnd())
            best = std::min(best.value_or(next->key), next->key);
        else if (direction < 0 && last != points.constBegin())
            best = std::max(best.value_or((last - 1)->key), (last - 1)->key);
    }
    return best;
}

bool ChartLines::drawOn(const std::function<QPaintDevice&(QSize)>& deviceOf)
{
    const QPalette onScreen = palette_;
    paintColours(QPalette(Qt::black, Qt::lightGray, Qt::white, Qt::gray, Qt::gray, Qt::black, Qt::white));
    auto* names = new QCPLegend;
    plot_.plotLayout()->addElement(1, 0, names);
    names->setBorderPen(Qt::NoPen);
    names->setFont(plot_.xAxis->labelFont());
    names->setFillOrder(QCPLegend::foColumnsFirst);
    int widest = 1;
    for (const Line& line : lines_)
        widest = std::max(widest, QFontMetrics(names->font()).horizontalAdvance(line.graph->name()));
    const QSize plotSize = plot_.viewport().size();
    names->setWrap(std::max(1, plotSize.width() / (widest + names->iconSize().width() + 24)));
    for (const Line& line : lines_) {
        line.graph->setPen(chartPen(line.style, LineWidth::wide, palette_)); // dashes, for those who print
        line.graph->addToLegend(names);
    }
    const QSize size(plotSize.width(), plotSize.height() + names->minimumOuterSizeHint().height());
    names->setMaximumSize(QWIDGETSIZE_MAX, names->minimumOuterSizeHint().height());

    QPaintDevice& device = deviceOf(size);
    QCPPainter painter;
    const bool isReady = painter.begin(&device);
    if (isReady) {
        const double scale = std::min(static_cast<double>(device.width()) / size.width(),
                                      static_cast<double>(device.height()) / size.height());
        painter.scale(scale, scale);
        painter.setMode(QCPPainter::pmVectorized, device.devType() != QInternal::Image);
        plot_.toPainter(&painter, size.width(), size.height());
    }
    plot_.plotLayout()->remove(names);
    plot_.plotLayout()->simplify();
    paintColours(onScreen);
    return isReady && painter.end();
}

} // namespace zint
