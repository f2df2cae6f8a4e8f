#pragma once

#include "catalogue/design.h"
#include "chart/window/eventChoice.h"
#include "samples/sampleStore.h"
#include "shared/fileDialogs.h"
#include "shared/programValues.h"
#include "shared/prompts.h"

#include <QWidget>

#include <functional>

namespace zint {

/// The chart of a run: a line per chosen event over time. It repaints itself a few times a second while it is
/// visible and polling runs, by looking into the store.
class LiveChart : public QWidget {
public:
    using QWidget::QWidget;

    /// Tells whether polling runs. It costs next to nothing, so call it whenever that or the samples may have
    /// changed.
    virtual void setRunning(bool isRunning) = 0;
};

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

LiveChart* makeLiveChart(const LiveChartSurroundings& surroundings, QWidget* parent);

} // namespace zint
