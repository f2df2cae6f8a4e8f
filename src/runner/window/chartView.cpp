#include "runner/window/chartView.h"

#include <QChart>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>
#include <QWheelEvent>

#include <cmath>
#include <utility>

namespace zint {
namespace {

constexpr double panStep = 0.1; ///< of what is shown

} // namespace

ChartView::ChartView(QWidget* parent) : QChartView(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setFrameShape(QFrame::NoFrame);
    setRenderHint(QPainter::Antialiasing);
    setViewportUpdateMode(FullViewportUpdate);
    scene()->setItemIndexMethod(QGraphicsScene::NoIndex); // all of it is painted each time
    setMinimumSize(240, 160);
    viewport()->setCursor(Qt::OpenHandCursor);
}

double ChartView::takePaintTime() { return std::exchange(paintTime_, 0); }

void ChartView::paintEvent(QPaintEvent* event)
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

void ChartView::resizeEvent(QResizeEvent* event)
{
    QChartView::resizeEvent(event);
    onResized();
}

void ChartView::wheelEvent(QWheelEvent* event)
{
    constexpr double notch = 120;
    onZoom(std::pow(zoomStep, event->angleDelta().y() / notch), placeOf(event->position().x()));
    event->accept();
}

void ChartView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    draggedFrom_ = event->position().x();
    isDragging_ = true;
    viewport()->setCursor(Qt::ClosedHandCursor);
}

void ChartView::mouseMoveEvent(QMouseEvent* event)
{
    if (!isDragging_)
        return;
    const double x = event->position().x();
    onPan(placeOf(draggedFrom_) - placeOf(x));
    draggedFrom_ = x;
}

void ChartView::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    isDragging_ = false;
    viewport()->setCursor(Qt::OpenHandCursor);
}

void ChartView::keyPressEvent(QKeyEvent* event)
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

/// 0 at the left of the plot, 1 at its right.
double ChartView::placeOf(double x) const
{
    const QRectF plot = chart()->plotArea();
    return plot.width() > 0 ? (x - plot.left()) / plot.width() : 0;
}

} // namespace zint
