#pragma once

#include "catalogue/design.h"
#include "chart/window/plotLibrary.h"
#include "samples/sampleStore.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace zint {

/// An event's line. Not a number is where it has a gap.
class ChartLine final : public QCPGraph {
public:
    using QCPGraph::QCPGraph;

    std::size_t event = 0; ///< from 0
    DesignEntry entry;
    std::size_t style = 0;                 ///< its own as long as it is drawn
    std::int32_t read = EventTotals::none; ///< the last record that was read

    double selectTest(const QPointF&, bool, QVariant*) const override { return -1; } // nothing is selected

protected:
    void drawLinePlot(QCPPainter* painter, const QVector<QPointF>& points) const override;
};

/// What a chart shows of a run: a line per drawn event, an axis per unit, and the axis of time, which its
/// owner sets. Each sample is read and converted once. Values fit their axis, unless that is given a range.
class ChartPlot final : public QCustomPlot {
public:
    /// @param samples outlives this
    explicit ChartPlot(const SampleStore& samples, QWidget* parent = nullptr);

    /// Chooses what is drawn. @param events from 0, in rising order
    void draw(const Design& design, const std::vector<std::size_t>& events);

    /// Whether the store has others than those that were read.
    bool hasOthers() const { return generation_ != samples_.generation(); }

    double read();                         ///< what is new, or all anew. @return the newest sample's time
    void freeScales() { scaled_.clear(); } ///< fits the axes again that were given a range

    /// What an event's line is called, such as "Engine RPM (rpm)", or "Coolant Temp (C, 0..100)" for an axis
    /// that is not shown. Empty while the event is not drawn.
    QString nameOf(std::size_t event) const;
    QPen penOf(std::size_t event) const; ///< no pen while it is not drawn

    /// An event's value at a time: that of the nearest sample, but over no gap.
    std::optional<double> valueAt(std::size_t event, double time) const;

    /// The next sample of any line after a time, or the one before it. @param direction 1 or -1
    std::optional<double> nextTime(double time, int direction) const;

    std::optional<double> cursor() const { return cursor_; } ///< seconds
    void moveCursor(std::optional<double> time);             ///< draws nothing else anew

    /// That of the values beside the plot, that of time below it; null where there is none.
    QCPAxis* axisAt(const QPointF& place) const;

    /// Has dark lines on white, all with their dashes, and their names below, or all as on the screen again.
    /// @return its size then
    QSize setOnPaper(bool isOnPaper);

protected:
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    ChartLine* find(std::size_t event) const;
    std::size_t freeStyle() const;
    QCPAxis* axisOf(const QString& unit);
    void addAxis(QCPAxis* axis);
    void read(ChartLine& line) const;
    void fit();
    std::ptrdiff_t fitValues(QCPAxis& axis);
    void fitTime();
    void paintLines();
    QPalette colours() const;
    void paintColours();

    const SampleStore& samples_;
    std::uint64_t generation_ = 0;       ///< of the store, when it was last read
    std::vector<ChartLine*> lines_;      ///< in the order of the events
    std::vector<QCPAxis*> axes_;         ///< on the left and on the right in turn; as many as ever needed
    QStringList units_;                  ///< of the first axes
    std::map<QString, QCPRange> scaled_; ///< by the user, by their units
    QCPLegend* names_ = nullptr;         ///< while on paper
    bool isCrowded_ = false;             ///< there are too many points for wide lines
    QCPItemStraightLine* cursorLine_;
    std::optional<double> cursor_;
};

} // namespace zint
