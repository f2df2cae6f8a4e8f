#pragma once

#include "catalogue/design.h"
#include "chart/window/eventChoice.h"
#include "samples/sampleStore.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

#include <cstdint>
#include <functional>

namespace zint {

class GaugeBoard;

/// What the gauges ask of their window; all of it outlives them.
struct GaugesSurroundings {
    std::function<const Design&()> design; ///< another one only when the samples' generation is another one
    const SampleStore& samples;
    EventChoice& choice; ///< of this design
};

/// The values of the chosen events in figures that can be read from the driver's seat, and the list to choose
/// them from. While it is visible and polling runs, it looks into the store ten times a second.
class Gauges final : public QWidget {
    Q_OBJECT

public:
    Gauges(GaugesSurroundings surroundings, QWidget* parent);

    /// Tells whether polling runs. It costs next to nothing, so call it whenever the panel may have changed.
    void setRunning(bool isRunning);

protected:
    void showEvent(QShowEvent* event) override;

private:
    QWidget* makeSide();
    void listGauges();
    void look();

    GaugesSurroundings surroundings_;
    GaugeBoard* board_;
    QTimer timer_;                 ///< until the next look at the store
    QElapsedTimer told_;           ///< since screen readers could learn the values
    std::uint64_t generation_ = 0; ///< of the store, when the gauges were listed
    bool isRunning_ = false;
};

} // namespace zint
