#pragma once

#include <QChartView>

#include <functional>

namespace zint {

/// The place on the screen where the user points at, drags and steers a chart. It has a chart of its own and
/// tells what the user wants to see of it.
class ChartView final : public QChartView {
public:
    static constexpr double zoomStep = 0.7; ///< factor of what is shown, per key and notch of the wheel

    explicit ChartView(QWidget* parent);

    std::function<void(double factor, double place)>
        onZoom;                             ///< place: 0 at the left of the plot, 1 at its right
    std::function<void(double part)> onPan; ///< part of the plot's width; below 0: to the left
    std::function<void()> onAll;
    std::function<void()> onPause;
    std::function<void()> onResized;

    /// Milliseconds that painting has taken since this was last asked.
    double takePaintTime();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    double placeOf(double x) const;

    double paintTime_ = 0;
    double draggedFrom_ = 0;
    bool isDragging_ = false;
};

} // namespace zint
