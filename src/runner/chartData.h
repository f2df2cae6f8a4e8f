#pragma once

#include "catalogue/design.h"
#include "runner/sampleStore.h"

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

/// What a stretch of a line comes to when it is drawn in one column of pixels.
struct ChartColumn {
    ChartPoint first;
    ChartPoint lowest;
    ChartPoint highest;
    ChartPoint last;
    bool isEmpty = true;

    void add(const ChartPoint& point);        ///< a later one
    void add(const ChartColumn& laterPoints); ///< may be empty
};

/// The lines of a run's chart, one per event, decimated to what a screen can show.
///
/// A store can hold millions of samples, and a chart is drawn several times a second while replies come in.
/// So what was read once is kept in blocks, each with its place in the store and what it comes to in one
/// column. A part of the run is found without walking to it, and where a column is as wide as a block the
/// samples in it are not read again. The blocks grow with the store; only events that are asked for have any.
///
/// The store knows whole seconds; the samples of one second are spread evenly over it. The newest second is
/// not over yet, so its samples are spread as closely as those of the second before it.
class ChartData {
public:
    /// Forgets all, and reads the events' conversions.
    void setDesign(const Design& design);

    /// Tells that polling starts, before its first sample comes; the store may hold samples of earlier
    /// starts.
    void startRun(const SampleStore& samples);

    /// Whether an event can be drawn at all. @param event from 0
    bool hasNumbers(std::size_t event) const;

    /// The line of an event between two moments, with its next point on either side so that it reaches the
    /// edges. Per column of pixels there are at most the first, the lowest, the highest and the last point.
    /// Columns stand at multiples of their width, so that a line that moves along keeps its shape. Samples
    /// that have no number in their unit are left out.
    /// @param samples always the same store; it may have grown, or have been emptied since it was last empty
    /// here
    /// @param event from 0
    std::vector<ChartPoint> points(const SampleStore& samples, std::size_t event, double from, double to,
                                   int pixels);

    /// The pieces of a line that points() gave: it breaks where polling was stopped. None is empty.
    std::vector<std::span<const ChartPoint>> pieces(const SampleStore& samples,
                                                    std::span<const ChartPoint> line) const;

    /// The time of the newest sample, as exactly as it is known from the lines that were asked for.
    double end(const SampleStore& samples) const;

    /// Forgets what was read when the store has been emptied. It is noticed when the store is smaller than it
    /// was; so call this after it was emptied and before it is filled again. @return whether
    /// it was emptied
    bool notice(const SampleStore& samples);

private:
    /// Successive samples of one event, in whole seconds of time.
    struct Block {
        std::int32_t record = 0; ///< of the first sample
        std::int32_t time = 0;   ///< of the first sample
        std::int32_t samples = 0;
        ChartColumn points;
    };

    /// The samples that came in one second.
    struct Second {
        std::int32_t record = 0; ///< of the first
        std::int32_t time = 0;
        std::int32_t samples = 0;
        std::int32_t nextRecord = 0; ///< where the next second begins; 0: this is the newest one
        std::int32_t nextTime = 0;
    };

    struct Line {
        std::int32_t conversion = 0;
        std::int32_t header = EventTotals::none;
        std::vector<Block> blocks; ///< of seconds that are over
        Block growing;             ///< the last of them, not full yet
        Second newest;
        std::int32_t samplesPerSecond = 0; ///< in the second before the newest
    };

    static Second readSecond(const SampleStore& samples, std::int32_t record, std::int32_t time);
    static void extend(Line& line, const SampleStore& samples, std::size_t event);

    std::vector<Line> lines_;
    std::vector<std::size_t> starts_; ///< how large the store was each time polling started
    std::size_t size_ = 0;            ///< of the store, when it was last seen
};

} // namespace zint
