#pragma once

#include "catalogue/design.h"
#include "samples/sampleStore.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace zint {

/// A point of a chart's line.
struct ChartPoint {
    double time = 0;  ///< seconds since the first start of polling
    double value = 0; ///< in the event's unit

    bool operator==(const ChartPoint&) const = default;
};

/// The lines of a run's chart, one per event, decimated to what a screen can show.
///
/// A chart is drawn several times a second while replies come in, so each sample is read and converted once:
/// a line of 100000 samples takes 1.6 MB. Events that nobody asks for have no line.
///
/// The store knows whole seconds; the samples of one second are spread evenly over it. The newest second is
/// not over yet, so its samples are spread as closely as those of the second before it.
class ChartData {
public:
    /// @param design outlives this and stays as it is. @param samples of its events; outlives this
    ChartData(const Design& design, const SampleStore& samples);

    /// Polling starts; the store may hold samples of earlier starts.
    void startRun();

    /// Whether an event can be drawn at all. @param event from 0
    bool hasNumbers(std::size_t event) const;

    /// The line of an event between two moments, with its next point on either side so that it reaches the
    /// edges. Per column of pixels there are at most the first, the lowest, the highest and the last point.
    /// Columns stand at multiples of their width, so that a line that moves along keeps its shape. Samples
    /// that have no number in their unit are left out. @param event from 0
    std::vector<ChartPoint> points(std::size_t event, double from, double to, int pixels);

    /// The pieces of a line that points() gave: it breaks where polling was stopped. None is empty.
    std::vector<std::span<const ChartPoint>> pieces(std::span<const ChartPoint> line) const;

    /// The time of the newest sample, as exactly as it is known from the lines that were asked for.
    double end();

private:
    struct Line {
        std::int32_t conversion = 0;
        std::vector<ChartPoint> points;
        std::size_t finished = 0; ///< points of seconds that are over; the others belong to the newest
        std::int32_t record = EventTotals::none; ///< the first of the newest second
        std::int32_t time = 0;                   ///< of the newest second
        std::int32_t perSecond = 0;              ///< samples in the second before the newest
        double end = 0;                          ///< the time of the newest sample
    };

    void follow();
    void extend(Line& line, std::size_t event) const;

    const SampleStore& samples_;
    std::uint64_t generation_ = 0; ///< of the store, when it was last read
    std::vector<Line> lines_;
    std::vector<std::size_t> starts_; ///< how large the store was each time polling started
};

} // namespace zint
