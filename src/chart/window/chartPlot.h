#pragma once

#include "chart/chartRange.h"
#include "chart/window/chartLines.h"

#include <functional>
#include <optional>

namespace zint {

/// The place on the screen where the user points at, drags and steers a chart.
class ChartPlot final : public QCustomPlot {
public:
    /// @param samples outlives this
    ChartPlot(const SampleStore& samples, QWidget* parent);

    ChartLines& lines() { return lines_; }
    ChartRange& range() { return range_; }
    std::optional<double> cursor() const { return cursor_; } ///< seconds

    void paint(); ///< what the range tells, while it can be seen
    void paintColours();
    void zoomIn() { zoom(zoomStep, xAxis->range().center()); }
    void zoomOut() { zoom(1 / zoomStep, xAxis->range().center()); }
    void showAll(); ///< and fits the axes that were scaled

    std::function<void(bool linesAreOthers)> onPainted; ///< true when they look different than before
    std::function<void()> onCursor;                     ///< it has moved, or has gone
    std::function<void()> onPause;                      ///< a key for that was pressed

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

    static constexpr double zoomStep = 0.7; ///< factor of what is shown, per key and notch of the wheel

    void zoom(double factor, double time);
    void pan(double seconds);
    void scale(QCPAxis* axis, const QCPRange& values);
    void showRectangle(const QRect& chosen);
    void moveCursor(std::optional<double> time);
    void stepCursor(int direction);
    void stretch(double y);
    QCPAxis* valueAxisAt(const QPointF& place) const;
    void shapePointer(const QPointF& place);

    ChartLines lines_;
    ChartRange range_;
    QCPItemLine* cursorLine_; ///< on a layer of its own: moving it draws nothing else anew
    std::optional<double> cursor_;
    Drag drag_ = Drag::none;
    QPointF dragged_;                ///< where the pointer was last; for values where it was at first
    QCPAxis* draggedAxis_ = nullptr; ///< for values
    QCPRange draggedRange_;          ///< of that axis at first
};

} // namespace zint
