#pragma once

#include "catalogue/design.h"
#include "chart/chartRange.h"
#include "chart/window/chartPlot.h"
#include "chart/window/eventChoice.h"
#include "shared/fileDialogs.h"
#include "shared/programValues.h"
#include "shared/prompts.h"
#include "widgets/windowPrinter.h"

#include <QTimer>

#include <functional>

class QToolBar;

namespace zint {

/// What the chart asks of its window; all of it outlives the chart.
struct LiveChartSurroundings {
    std::function<const Design&()> design; ///< of the samples; may be another one when they are others
    const SampleStore& samples;
    EventChoice& choice; ///< of that design
    Prompts& prompts;    ///< tells why a picture is not written
    FileDialogs& dialogs;
    ProgramValues& values;
    /// Runs what asks the user; the window does not close meanwhile.
    std::function<void(const std::function<void()>&)> ask = [](const auto& questions) { questions(); };
};

/// The chart of a run: its plot, which the user steers, buttons and the list of events. It looks into the
/// store and paints itself a few times a second while it is visible and polling runs.
class LiveChart final : public QWidget {
public:
    LiveChart(const LiveChartSurroundings& surroundings, QWidget* parent);

    /// Tells whether polling runs. It costs next to nothing, so call it whenever that or the samples may have
    /// changed.
    void setRunning(bool isRunning);

protected:
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QToolBar* makeBar();
    QWidget* makeWindows();
    QWidget* makeList();
    void makeSteering();
    void drawChosen();
    void look();
    void paint(QCustomPlot::RefreshPriority priority = QCustomPlot::rpQueuedReplot);
    void showAll();
    void zoom(double factor, double at);
    void press(QMouseEvent* event);
    void point(QMouseEvent* event);
    void turnWheel(QWheelEvent* event);
    void stretch(double at);
    void takeRectangle(const QRect& chosen);
    void stepCursor(int direction);
    void moveCursor(std::optional<double> time);
    void tellNames();
    void tellValues();
    void hold(const std::function<void()>& questions);
    void savePicture();

    LiveChartSurroundings surroundings_;
    ChartPlot* plot_;
    ChartRange range_;
    WindowPrinter printer_;
    QAction* pause_ = nullptr;
    QTimer timer_; ///< until the next look at the store

    bool isRunning_ = false;
    bool isHeld_ = false; ///< until the user has answered

    QCPAxis* grabbed_ = nullptr; ///< the axis that the user drags
    double fixed_ = 0;           ///< the end of it that stays, in pixels
    double reach_ = 0;           ///< from there to the pointer
};

} // namespace zint
