#pragma once

#include "catalogue/design.h"
#include "runner/chartAxes.h"
#include "runner/chartData.h"
#include "runner/chartRange.h"

#include <QCategoryAxis>
#include <QChart>
#include <QLineSeries>
#include <QPen>
#include <QPixmap>
#include <QString>
#include <QValueAxis>
#include <QWidget>

#include <cstddef>
#include <span>
#include <vector>

namespace zint {

/// What a chart shows of a run: a line per drawn event, an axis per unit, and the axis of time.
class ChartLines {
public:
    /// @param window the chart takes its colours and its font. @param design outlives this and stays as it is
    ChartLines(QChart& chart, const QWidget& window, const Design& design);

    /// Chooses what is drawn; paint() does it. An event keeps its style as long as it is drawn.
    /// @param events from 0, in rising order
    void draw(std::span<const std::size_t> events);

    /// Shows a part of the run. @param data of the design's events
    void paint(ChartData& data, const ChartRange& range);

    /// Takes colours and fonts from the window.
    void paintColours();

    /// What an event's line is called, with its unit while it is drawn. @param event from 0
    QString nameOf(std::size_t event) const;

    /// A piece of an event's line; empty while it is not drawn. @param event from 0
    QPixmap sampleOf(std::size_t event) const;

private:
    struct Line {
        std::size_t event;
        std::size_t axis;
        QString name;
        std::vector<QLineSeries*> pieces; ///< empty ones may be left over
    };

    struct ValueAxis {
        ChartAxis axis;
        QValueAxis* shown;
    };

    void takeStyles(std::span<const std::size_t> events);
    void paintLine(Line& line, std::span<const std::span<const ChartPoint>> pieces);
    void makeMargins();
    int stepsIn(int steps) const;
    void paintTimeAxis(const ChartRange& range);
    void paintPens();
    QPen penOf(std::size_t event) const;

    static constexpr int none = -1;

    QChart& chart_;
    const QWidget& window_;
    QCategoryAxis* timeAxis_;
    const Design& design_;
    std::vector<int> styles_; ///< by event: which colour and dashes; none while it is not drawn
    std::vector<Line> lines_; ///< in the order of the events
    std::vector<ValueAxis> axes_;
    bool isCrowded_ = false; ///< there are too many points for wide lines
};

} // namespace zint
