#include "chart/window/chartPlot.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace zint {

ChartPlot::ChartPlot(const SampleStore& samples, QWidget* parent)
    : QCustomPlot(parent), lines_(*this, samples), cursorLine_(new QCPItemLine(this))
{
    const QString cursorLayer = QStringLiteral("cursor");
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setMinimumSize(240, 160);
    addLayer(cursorLayer);
    layer(cursorLayer)->setMode(QCPLayer::lmBuffered);
    cursorLine_->setLayer(cursorLayer);
    for (QCPItemPosition* end : {cursorLine_->start, cursorLine_->end})
        end->setTypeY(QCPItemPosition::ptAxisRectRatio);
    cursorLine_->setVisible(false);
    cursorLine_->setAntialiased(false);
    setSelectionRectMode(QCP::srmCustom); // for the drags that the library is told of
    connect(selectionRect(), &QCPSelectionRect::accepted, this, &ChartPlot::showRectangle);
}

void ChartPlot::paint()
{
    if (!isVisible())
        return;
    onPainted(lines_.paint(range_.from(), range_.to()));
}

void ChartPlot::paintColours()
{
    lines_.paintColours(palette());
    cursorLine_->setPen(chartColour(0.7, palette()));
    QColor inside = palette().color(QPalette::Highlight);
    selectionRect()->setPen(inside);
    inside.setAlphaF(0.2F);
    selectionRect()->setBrush(inside);
}

void ChartPlot::zoom(double factor, double time)
{
    range_.zoom(factor, time);
    paint();
}

void ChartPlot::pan(double seconds)
{
    range_.pan(seconds);
    paint();
}

void ChartPlot::showAll()
{
    range_.showAll();
    lines_.freeScales();
    paint();
}

void ChartPlot::scale(QCPAxis* axis, const QCPRange& values)
{
    lines_.scale(axis, values);
    paint();
}

void ChartPlot::showRectangle(const QRect& chosen)
{
    if (std::min(std::abs(chosen.width()), std::abs(chosen.height())) < QApplication::startDragDistance())
        return;
    for (QCPAxis* axis : axisRect()->axes(QCPAxis::atLeft | QCPAxis::atRight))
        lines_.scale(axis, selectionRect()->range(axis));
    const QCPRange times = selectionRect()->range(xAxis);
    range_.take(times.lower, times.upper);
    paint();
}

void ChartPlot::moveCursor(std::optional<double> time)
{
    cursor_ = time;
    cursorLine_->setVisible(time.has_value());
    cursorLine_->start->setCoords(time.value_or(0), 0);
    cursorLine_->end->setCoords(time.value_or(0), 1);
    cursorLine_->layer()->replot();
    onCursor();
}

void ChartPlot::stepCursor(int direction)
{
    const auto time = lines_.nextTime(cursor_.value_or(xAxis->range().center()), direction);
    if (!time)
        return;
    if (!xAxis->range().contains(*time))
        pan(*time - xAxis->range().center());
    moveCursor(time);
}

void ChartPlot::paintEvent(QPaintEvent* event)
{
    QCustomPlot::paintEvent(event);
    if (!hasFocus())
        return;
    QPainter painter(this);
    QStyleOptionFocusRect option;
    option.initFrom(this);
    option.rect = rect().adjusted(1, 1, -1, -1);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
}

void ChartPlot::resizeEvent(QResizeEvent* /*event*/)
{
    setViewport(rect());
    updateLayout();
    paint();
}

void ChartPlot::wheelEvent(QWheelEvent* event)
{
    constexpr double notch = 120;
    const double factor = std::pow(zoomStep, event->angleDelta().y() / notch);
    if (QCPAxis* axis = valueAxisAt(event->position())) {
        const double fixed = axis->pixelToCoord(event->position().y());
        scale(axis, (axis->range() - fixed) * factor + fixed);
    } else {
        zoom(factor, xAxis->pixelToCoord(event->position().x()));
    }
    event->accept();
}

QCPAxis* ChartPlot::valueAxisAt(const QPointF& place) const
{
    for (QCPAxis* axis : axisRect()->axes(QCPAxis::atLeft | QCPAxis::atRight)) {
        if (!axisRect()->rect().contains(place.toPoint()) && axis->getPartAt(place) != QCPAxis::spNone)
            return axis;
    }
    return nullptr;
}

void ChartPlot::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    dragged_ = event->position();
    draggedAxis_ = valueAxisAt(dragged_);
    if (draggedAxis_ != nullptr) {
        drag_ = Drag::values;
        draggedRange_ = draggedAxis_->range();
    } else if (event->modifiers().testFlag(Qt::ShiftModifier)) {
        drag_ = Drag::rectangle;
        QCustomPlot::mousePressEvent(event);
    } else {
        drag_ = Drag::time;
    }
    shapePointer(dragged_);
}

void ChartPlot::mouseMoveEvent(QMouseEvent* event)
{
    const QPointF place = event->position();
    if (drag_ == Drag::rectangle)
        return QCustomPlot::mouseMoveEvent(event);
    if (drag_ == Drag::values)
        return stretch(place.y());
    if (drag_ == Drag::time)
        pan(xAxis->pixelToCoord(dragged_.x()) - xAxis->pixelToCoord(place.x()));
    dragged_ = place;
    const bool isInside = axisRect()->rect().contains(place.toPoint());
    moveCursor(isInside ? std::optional(xAxis->pixelToCoord(place.x())) : std::nullopt);
    shapePointer(place);
}

/// The value that was grabbed follows the pointer; the end of the axis that is farther away stays.
void ChartPlot::stretch(double y)
{
    constexpr double least = 0.05; // of the height; a smaller one would stretch without end
    const auto partAt = [this](double at) { return (axisRect()->bottom() - at) / axisRect()->height(); };
    const double grabbed = partAt(dragged_.y()); // 0: the lower end, 1: the upper one
    const QCPRange& old = draggedRange_;
    if (grabbed >= 0.5)
        scale(draggedAxis_, {old.lower, old.lower + old.size() * grabbed / std::max(partAt(y), least)});
    else
        scale(draggedAxis_,
              {old.upper - old.size() * (1 - grabbed) / std::max(1 - partAt(y), least), old.upper});
}

void ChartPlot::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    if (drag_ == Drag::rectangle)
        QCustomPlot::mouseReleaseEvent(event);
    drag_ = Drag::none;
    shapePointer(event->position());
}

void ChartPlot::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        showAll();
}

void ChartPlot::shapePointer(const QPointF& place)
{
    if (drag_ == Drag::values || (drag_ == Drag::none && valueAxisAt(place) != nullptr))
        setCursor(Qt::SizeVerCursor);
    else if (drag_ == Drag::rectangle)
        setCursor(Qt::CrossCursor);
    else
        setCursor(drag_ == Drag::time ? Qt::ClosedHandCursor : Qt::OpenHandCursor);
}

void ChartPlot::leaveEvent(QEvent* event)
{
    QCustomPlot::leaveEvent(event);
    if (isVisible()) // else the window is about to go, and with it what would be told
        moveCursor(std::nullopt);
}

void ChartPlot::keyPressEvent(QKeyEvent* event)
{
    constexpr double panStep = 0.1; // of what is shown
    const bool steps = event->modifiers().testFlag(Qt::ControlModifier);
    const auto go = [&](int direction) {
        steps ? stepCursor(direction) : pan(direction * panStep * xAxis->range().size());
    };
    switch (event->key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal: // plus without the shift key
    case Qt::Key_Up:
        return zoomIn();
    case Qt::Key_Minus:
    case Qt::Key_Down:
        return zoomOut();
    case Qt::Key_Left:
        return go(-1);
    case Qt::Key_Right:
        return go(1);
    case Qt::Key_Home:
        return showAll();
    case Qt::Key_Space:
        return onPause();
    case Qt::Key_Escape:
        selectionRect()->cancel();
        return moveCursor(std::nullopt);
    default:
        QCustomPlot::keyPressEvent(event);
    }
}

} // namespace zint
