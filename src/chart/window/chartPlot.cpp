#include "chart/window/chartPlot.h"

#include "chart/window/chartStyle.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace zint {
namespace {

constexpr double panStep = 0.1; ///< of what is shown
constexpr const char* cursorLayer = "cursor";

} // namespace

ChartPlot::ChartPlot(QWidget* parent) : QCustomPlot(parent), cursor_(new QCPItemLine(this))
{
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setMinimumSize(240, 160);
    setSelectionRectMode(QCP::srmCustom); // where a drag gets to the library
    addLayer(QLatin1String(cursorLayer));
    layer(QLatin1String(cursorLayer))->setMode(QCPLayer::lmBuffered);
    cursor_->setLayer(QLatin1String(cursorLayer));
    for (QCPItemPosition* end : {cursor_->start, cursor_->end})
        end->setTypeY(QCPItemPosition::ptAxisRectRatio);
    cursor_->setVisible(false);
    cursor_->setAntialiased(false);
    connect(selectionRect(), &QCPSelectionRect::accepted, this, [this](const QRect& chosen) {
        if (std::min(std::abs(chosen.width()), std::abs(chosen.height())) >=
            QApplication::startDragDistance())
            onRectangle();
    });
}

void ChartPlot::showCursor(std::optional<double> time)
{
    cursor_->setVisible(time.has_value());
    cursor_->start->setCoords(time.value_or(0), 0);
    cursor_->end->setCoords(time.value_or(0), 1);
    cursor_->layer()->replot();
}

void ChartPlot::paintColours()
{
    cursor_->setPen(chartColour(0.7, palette()));
    selectionRect()->setPen(palette().color(QPalette::Highlight));
    QColor inside = palette().color(QPalette::Highlight);
    inside.setAlphaF(0.2F);
    selectionRect()->setBrush(inside);
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
    onResized();
}

void ChartPlot::wheelEvent(QWheelEvent* event)
{
    constexpr double notch = 120;
    const double factor = std::pow(zoomStep, event->angleDelta().y() / notch);
    if (QCPAxis* axis = valueAxisAt(event->position())) {
        QCPRange range = axis->range();
        const double fixed = axis->pixelToCoord(event->position().y());
        range = {fixed + (range.lower - fixed) * factor, fixed + (range.upper - fixed) * factor};
        onScale(axis, range);
    } else {
        onZoom(factor, xAxis->pixelToCoord(event->position().x()));
    }
    event->accept();
}

QCPAxis* ChartPlot::valueAxisAt(const QPointF& place) const
{
    for (QCPAxis* axis : axisRect()->axes(QCPAxis::atLeft | QCPAxis::atRight)) {
        if (axis->visible() && !axisRect()->rect().contains(place.toPoint()) &&
            axis->getPartAt(place) != QCPAxis::spNone)
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
    drag_ = draggedAxis_ != nullptr                          ? Drag::values
            : event->modifiers().testFlag(Qt::ShiftModifier) ? Drag::rectangle
                                                             : Drag::time;
    if (drag_ == Drag::values)
        draggedRange_ = draggedAxis_->range();
    else if (drag_ == Drag::rectangle)
        QCustomPlot::mousePressEvent(event);
    shapePointer(dragged_);
}

void ChartPlot::mouseMoveEvent(QMouseEvent* event)
{
    if (drag_ == Drag::rectangle)
        QCustomPlot::mouseMoveEvent(event);
    else
        dragTo(event->position());
}

void ChartPlot::dragTo(const QPointF& place)
{
    if (drag_ == Drag::values) {
        stretch(place.y());
        return;
    }
    if (drag_ == Drag::time) {
        onPan(xAxis->pixelToCoord(dragged_.x()) - xAxis->pixelToCoord(place.x()));
        dragged_ = place;
    }
    const bool isInside = axisRect()->rect().contains(place.toPoint());
    onCursor(isInside ? std::optional(xAxis->pixelToCoord(place.x())) : std::nullopt);
    shapePointer(place);
}

/// The value that was grabbed follows the pointer; the end of the axis that is farther away stays.
void ChartPlot::stretch(double y)
{
    const double bottom = axisRect()->bottom();
    const double height = axisRect()->height();
    const double grabbed = (bottom - dragged_.y()) / height; // 0: the lower end, 1: the upper one
    const double now = (bottom - y) / height;
    constexpr double least = 0.05; // of the height; a smaller one would stretch without end
    const double size = draggedRange_.size();
    if (grabbed >= 0.5)
        onScale(draggedAxis_,
                {draggedRange_.lower, draggedRange_.lower + size * grabbed / std::max(now, least)});
    else
        onScale(draggedAxis_,
                {draggedRange_.upper - size * (1 - grabbed) / std::max(1 - now, least), draggedRange_.upper});
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
        onAll();
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
    onCursor(std::nullopt);
}

void ChartPlot::keyPressEvent(QKeyEvent* event)
{
    const QCPRange shown = xAxis->range();
    const bool steps = event->modifiers().testFlag(Qt::ControlModifier);
    const auto go = [&](int direction) {
        steps ? onStep(direction) : onPan(direction * panStep * shown.size());
    };
    switch (event->key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal: // plus without the shift key
    case Qt::Key_Up:
        return onZoom(zoomStep, shown.center());
    case Qt::Key_Minus:
    case Qt::Key_Down:
        return onZoom(1 / zoomStep, shown.center());
    case Qt::Key_Left:
        return go(-1);
    case Qt::Key_Right:
        return go(1);
    case Qt::Key_Home:
        return onAll();
    case Qt::Key_Space:
        return onPause();
    case Qt::Key_Escape:
        selectionRect()->cancel();
        return onCursor(std::nullopt);
    default:
        QCustomPlot::keyPressEvent(event);
    }
}

} // namespace zint
