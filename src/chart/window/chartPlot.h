#pragma once

#include "chart/window/plotLibrary.h"

#include <functional>
#include <optional>

namespace zint {

/// The place on the screen where the user points at, drags and steers a chart. It tells what the user wants
/// to see of it.
class ChartPlot final : public QCustomPlot {
public:
    static constexpr double zoomStep = 0.7; ///< factor of what is shown, per key and notch of the wheel

    explicit ChartPlot(QWidget* parent);

    std::function<void(double factor, double time)> onZoom;
    std::function<void(double seconds)> onPan; ///< below 0: to what was before
    std::function<void()> onAll;
    std::function<void()> onPause;
    std::function<void()> onRectangle; ///< chosen; the selection rectangle tells its ranges
    std::function<void(QCPAxis* axis, const QCPRange& values)> onScale;
    std::function<void(std::optional<double> time)> onCursor; ///< nothing: the pointer has gone
    std::function<void(int direction)> onStep;                ///< to the next sample, 1 or -1
    std::function<void()> onResized;

    void showCursor(std::optional<double> time);
    void paintColours();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    enum class Drag { none, time, values, rectangle };

    QCPAxis* valueAxisAt(const QPointF& place) const;
    void dragTo(const QPointF& place);
    void stretch(double y);
    void shapePointer(const QPointF& place);

    QCPItemLine* cursor_; ///< on a layer of its own: moving it draws nothing else anew
    Drag drag_ = Drag::none;
    QPointF dragged_;                ///< where the pointer was last; for values where it was at first
    QCPAxis* draggedAxis_ = nullptr; ///< for values
    QCPRange draggedRange_;          ///< of that axis at first
};

} // namespace zint
