#pragma once

#include "catalogue/design.h"
#include "runner/chartData.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

/// How a chart's axes are scaled and labelled.
namespace zint {

/// What an axis shows: round limits, and how many steps lie between them.
struct ChartScale {
    double lowest = 0;
    double highest = 1;
    int steps = 5;

    bool operator==(const ChartScale&) const = default;
};

/// A scale with round limits that values fit.
ChartScale roundScale(double lowest, double highest);

/// The axis of all lines that have the same unit.
struct ChartAxis {
    enum class Side {
        left,
        right,
        none ///< its lines use the whole height too; their names tell the limits
    };

    std::string unit; ///< may be empty
    Side side = Side::none;
};

/// The axes of some events: a unit each, in the order of the events; the first is on the left, the second on
/// the right.
/// @param events from 0
std::vector<ChartAxis> axesOf(const Design& design, std::span<const std::size_t> events);

/// The unit of an event as an axis has it, without blanks. @param event from 0
std::string axisUnit(const Design& design, std::size_t event);

/// Fits an axis to the points of its lines.
ChartScale scaleOf(std::span<const std::vector<ChartPoint>> lines);

/// What a line is called, such as "Engine RPM (rpm)", or "Coolant Temp (C, 0..100)" for an axis that is not
/// shown.
/// @param event from 0
std::string lineName(const Design& design, std::size_t event, const ChartAxis& axis, const ChartScale& scale);

/// What an event is called. @param event from 0
std::string eventName(const Design& design, std::size_t event);

/// A mark on the time axis.
struct TimeMark {
    double time = 0;
    std::string text; ///< "0:30", "1:02:00"

    bool operator==(const TimeMark&) const = default;
};

/// Marks at round times from one moment to another. @param most at least 2
std::vector<TimeMark> timeMarks(double from, double to, int most);

} // namespace zint
