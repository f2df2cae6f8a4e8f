#pragma once

#include "catalogue/design.h"
#include "samples/sampleStore.h"
#include "shared/fileDialogs.h"
#include "shared/programValues.h"
#include "shared/prompts.h"

#include <QWidget>

#include <functional>

namespace zint {

/// The poll runner's chart: a line per checked event over time. It repaints itself a few times a second while
/// it is visible and polling runs, by looking into the store.
class LiveChart : public QWidget {
public:
    using QWidget::QWidget;

    /// Tells whether polling runs. It costs next to nothing, so call it whenever the panel may have changed.
    virtual void setRunning(bool isRunning) = 0;
};

/// What the chart asks of its window; all of it outlives the chart.
struct LiveChartSurroundings {
    const Design& design; ///< stays as it is
    const SampleStore& samples;
    Prompts& prompts; ///< tells why a picture is not written
    FileDialogs& dialogs;
    ProgramValues& values;
    /// Runs what asks the user; the window does not close meanwhile.
    std::function<void(const std::function<void()>&)> ask = [](const auto& questions) { questions(); };
};

/// @return nothing when the program was built without charts
#ifdef ZINT_CHARTS
LiveChart* makeLiveChart(const LiveChartSurroundings& surroundings, QWidget* parent);
#else
inline LiveChart* makeLiveChart(const LiveChartSurroundings&, QWidget*) { return nullptr; }
#endif

} // namespace zint
