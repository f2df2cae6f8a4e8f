#pragma once

#include "catalogue/design.h"
#include "chart/window/chartStyle.h"
#include "chart/window/plotLibrary.h"
#include "samples/sampleStore.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace zint {

/// A time since the first start of polling: "0:30", "1:02:00", "0:12.345".
QString timeText(double seconds, int decimals);

/// What a chart shows of a run: a line per drawn event, an axis per unit, and the axis of time. Each sample
/// is read and converted once.
class ChartLines {
public:
    /// Plot and samples outlive this.
    ChartLines(QCustomPlot& plot, const SampleStore& samples);

    /// Chooses what is drawn; paint() does it. An event keeps its style as long as it is drawn.
    /// @param events from 0, in rising order
    void draw(const Design& design, const std::vector<std::size_t>& events);

    /// Shows a part of the run. Values fit their axis, unless the user has scaled it.
    /// @return whether the lines look different now
    bool paint(double from, double to);

    /// The time of the newest sample.
    double end();

    void scale(QCPAxis* axis, const QCPRange& values); ///< until freeScales()
    void freeScales();

    void paintColours(const QPalette& palette);

    /// What an event's line is called, such as "Engine RPM (rpm)", or "Coolant Temp (C, 0..100)" for an axis
    /// that is not shown. Empty while the event is not drawn.
    QString nameOf(std::size_t event) const;
    QIcon sampleOf(std::size_t event) const; ///< a piece of its line

    /// An event's value at a time: that of the nearest sample, but over no gap.
    std::optional<double> valueAt(std::size_t event, double time) const;

    /// The next sample of any line after a time, or the one before it. @param direction 1 or -1
    std::optional<double> nextTime(double time, int direction) const;

    /// Draws what is shown, with the lines' names below it, in light colours as for paper.
    /// @param deviceOf makes what it is drawn on, for a size in pixels of the screen; the drawing fills it
    /// @return false when nothing can be drawn there
    bool drawOn(const std::function<QPaintDevice&(QSize)>& deviceOf);

private:
    struct Line {
        std::size_t event = 0;
        DesignEntry entry;
        std::size_t style = 0;
        QCPGraph* graph = nullptr;
        std::size_t axis = 0;
        std::int32_t read = EventTotals::none; ///< the last record that was read
    };

    struct ValueAxis {
        std::string unit;
        QCPAxis* axis = nullptr;
        bool isScaled = false; ///< by the user
        QCPRange seen;         ///< the values in sight
        bool isEmpty = true;   ///< there is none
    };

    const Line* find(std::size_t event) const;
    std::size_t freeStyle() const;
    void makeAxes();
    void addAxis(const std::string& unit, const std::vector<ValueAxis>& before);
    void read();
    void read(Line& line) const;
    std::size_t look(const Line& line, double from, double to);
    void fit(ValueAxis& axis) const;
    void paintTimeAxis(double from, double to);
    void paintPens();
    QPen penOf(const Line& line) const;

    QCustomPlot& plot_;
    const SampleStore& samples_;
    std::uint64_t generation_ = 0; ///< of the store, when it was last read
    std::vector<Line> lines_;      ///< in the order of the events
    std::vector<ValueAxis> axes_;
    QPalette palette_;
    bool isCrowded_ = false; ///< there are too many points for wide lines
};

} // namespace zint
