#include "runner/window/chartLines.h"

#include "platform/text.h"
#include "runner/window/chartStyle.h"

#include <QGraphicsLayout>
#include <QLegend>

#include <algorithm>
#include <ranges>
#include <utility>

namespace zint {
namespace {

constexpr double dotWidth = 5;

} // namespace

ChartLines::ChartLines(QChart& chart, const QWidget& window, const Design& design)
    : chart_(chart), window_(window), timeAxis_(new QCategoryAxis(&chart)), design_(design),
      styles_(design.events.size(), none)
{
    chart_.layout()->setContentsMargins(0, 0, 0, 0);
    chart_.setBackgroundRoundness(0);
    chart_.legend()->hide(); // the list beside it tells the same, and has room for it
    timeAxis_->setLabelsPosition(QCategoryAxis::AxisLabelsPositionOnValue);
    chart_.addAxis(timeAxis_, Qt::AlignBottom);
}

/// Each new line takes the first style that no other has.
void ChartLines::takeStyles(std::span<const std::size_t> events)
{
    for (std::size_t event = 0; event < styles_.size(); ++event) {
        if (!std::ranges::binary_search(events, event))
            styles_[event] = none;
    }
    for (const std::size_t event : events) {
        if (styles_.at(event) != none)
            continue;
        int style = 0;
        while (std::ranges::find(styles_, style) != styles_.end())
            ++style;
        styles_[event] = style;
    }
}

void ChartLines::draw(std::span<const std::size_t> events)
{
    takeStyles(events);
    chart_.removeAllSeries();
    for (const ValueAxis& axis : axes_) {
        chart_.removeAxis(axis.shown);
        delete axis.shown;
    }
    axes_.clear();
    lines_.clear();

    for (ChartAxis& axis : axesOf(design_, events)) {
        auto* shown = new QValueAxis(&chart_);
        shown->setTitleText(toQt(axis.unit));
        shown->setLabelFormat(QStringLiteral("%g"));
        shown->setVisible(axis.side != ChartAxis::Side::none);
        shown->setGridLineVisible(axis.side == ChartAxis::Side::left); // two grids would be one too many
        chart_.addAxis(shown, axis.side == ChartAxis::Side::left ? Qt::AlignLeft : Qt::AlignRight);
        axes_.push_back({std::move(axis), shown});
    }
    for (const std::size_t event : events) {
        const auto axis = std::ranges::find(axes_, axisUnit(design_, event),
                                            [](const ValueAxis& a) { return a.axis.unit; });
        lines_.push_back({.event = event, .axis = static_cast<std::size_t>(axis - axes_.begin())});
    }
    makeMargins();
    paintColours();
}

/// A time mark at the end of its axis needs half of its label's width beside the plot, where no other axis
/// leaves it.
void ChartLines::makeMargins()
{
    constexpr int usual = 8;
    const int half = window_.fontMetrics().horizontalAdvance(QStringLiteral("0:00:00")) / 2;
    const auto margin = [&](ChartAxis::Side side) {
        const auto isThere = [side](const ValueAxis& axis) { return axis.axis.side == side; };
        return std::ranges::any_of(axes_, isThere) ? usual : half;
    };
    chart_.setMargins(QMargins(margin(ChartAxis::Side::left), usual, margin(ChartAxis::Side::right), usual));
}

void ChartLines::paint(ChartData& data, const ChartRange& range)
{
    const int pixels = std::max(1, static_cast<int>(chart_.plotArea().width() * window_.devicePixelRatioF()));
    std::vector<std::vector<std::vector<ChartPoint>>> points(axes_.size()); // by axis
    for (const Line& line : lines_)
        points[line.axis].push_back(data.points(line.event, range.from(), range.to(), pixels));

    for (const Line& line : lines_) {
        for (QLineSeries* piece : line.pieces)
            piece->clear(); // each change of an axis would lay out the old points once more
    }
    std::vector<ChartScale> scales;
    for (std::size_t i = 0; i < axes_.size(); ++i) {
        const ChartScale scale = scaleOf(points[i]);
        axes_[i].shown->setRange(scale.lowest, scale.highest);
        axes_[i].shown->setTickCount(stepsIn(scale.steps) + 1);
        scales.push_back(scale);
    }
    paintTimeAxis(range);
    std::size_t total = 0;
    for (const auto& lines : points) {
        for (const auto& line : lines)
            total += line.size();
    }
    constexpr std::size_t crowd = 1500;
    if (std::exchange(isCrowded_, total > crowd) != isCrowded_)
        paintPens();
    std::vector<std::size_t> drawn(axes_.size());
    for (Line& line : lines_) {
        line.name = toQt(lineName(design_, line.event, axes_[line.axis].axis, scales[line.axis]));
        paintLine(line, data.pieces(points[line.axis][drawn[line.axis]++]));
    }
}

/// As many of an axis' round steps as there is room for labels: all, or every second, third...
int ChartLines::stepsIn(int steps) const
{
    const int room = static_cast<int>(chart_.plotArea().height()) / (window_.fontMetrics().height() * 3 / 2);
    int shown = steps;
    while (shown > 1 && (shown > room || steps % shown != 0))
        --shown;
    return shown;
}

/// A series has no gaps, so each piece of the line is a series.
void ChartLines::paintLine(Line& line, std::span<const std::span<const ChartPoint>> pieces)
{
    while (line.pieces.size() < pieces.size()) {
        auto* series = new QLineSeries(&chart_);
        chart_.addSeries(series);
        series->attachAxis(timeAxis_);
        series->attachAxis(axes_[line.axis].shown);
        line.pieces.push_back(series);
    }
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        QList<QPointF> shown;
        shown.reserve(static_cast<qsizetype>(pieces[i].size()));
        for (const ChartPoint& point : pieces[i])
            shown.append({point.time, point.value});
        line.pieces[i]->replace(shown);
        line.pieces[i]->setName(line.name);
        const bool isDot = shown.size() == 1; // which makes no line
        line.pieces[i]->setPointsVisible(isDot);
        QPen pen = penOf(line.event);
        if (isDot)
            pen.setWidthF(dotWidth);
        line.pieces[i]->setPen(pen);
    }
}

void ChartLines::paintTimeAxis(const ChartRange& range)
{
    const int labelWidth = window_.fontMetrics().horizontalAdvance(QStringLiteral("0:00:00.0"));
    const int most = std::max(2, static_cast<int>(chart_.plotArea().width()) / (labelWidth * 3 / 2));
    const std::vector<TimeMark> marks = timeMarks(range.from(), range.to(), most);
    QStringList texts;
    for (const TimeMark& mark : marks)
        texts << toQt(mark.text);
    if (texts != timeAxis_->categoriesLabels()) {
        for (const QString& text : timeAxis_->categoriesLabels())
            timeAxis_->remove(text);
        timeAxis_->setStartValue(range.from() - 1); // below the first mark
        for (qsizetype i = 0; i < texts.size(); ++i)
            timeAxis_->append(texts[i], marks[static_cast<std::size_t>(i)].time);
    }
    timeAxis_->setRange(range.from(), range.to());
}

void ChartLines::paintColours()
{
    const QColor text = window_.palette().color(QPalette::Text);
    chart_.setBackgroundBrush(window_.palette().color(QPalette::Base));
    chart_.setBackgroundPen(Qt::NoPen);
    for (QAbstractAxis* axis : chart_.axes()) {
        axis->setLabelsColor(text);
        axis->setLabelsFont(window_.font());
        axis->setTitleBrush(text);
        axis->setTitleFont(window_.font());
        axis->setLinePenColor(chartColour(0.5, window_.palette()));
        axis->setGridLineColor(chartColour(0.15, window_.palette()));
    }
    paintPens();
}

void ChartLines::paintPens()
{
    for (const Line& line : lines_) {
        for (QLineSeries* piece : line.pieces)
            piece->setPen(penOf(line.event));
    }
}

QPen ChartLines::penOf(std::size_t event) const
{
    const int style = styles_.at(event);
    if (style == none)
        return Qt::NoPen;
    QPen pen = chartPen(static_cast<std::size_t>(style), window_.palette());
    constexpr double wide = 1.75;
    const double thin =
        1 / window_.devicePixelRatioF(); // the toolkit draws it many times faster, above all with dashes
    pen.setWidthF(isCrowded_ || pen.style() != Qt::SolidLine ? thin : wide);
    return pen;
}

QString ChartLines::nameOf(std::size_t event) const
{
    const auto line = std::ranges::find(lines_, event, &Line::event);
    return line != lines_.end() ? line->name : toQt(eventName(design_, event));
}

QPixmap ChartLines::sampleOf(std::size_t event) const
{
    const QPen pen = penOf(event);
    return pen.style() == Qt::NoPen ? QPixmap() : lineSample(pen, window_.devicePixelRatioF());
}

} // namespace zint
