#pragma once

#include "catalogue/design.h"
#include "samples/sampleStore.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace zint {

/// What a gauge shows of an event. Its figures are short enough to be read at a glance: of a fraction they
/// have what makes three digits.
struct GaugeReading {
    std::string figure = "-"; ///< the last value without its unit, or why there is none; "-" before the first
    std::string minimum;      ///< of all samples; empty before the first number
    std::string maximum;
    std::optional<double> place; ///< of the last value from minimum to maximum, 0 to 1; nothing for no number
    std::int32_t badReplies = 0;

    bool operator==(const GaugeReading&) const = default;
};

/// Reads the gauge of one event. The range is that of the numbers that came. The store's own extremes are
/// raw, while a conversion may look at one byte only, and its minimum begins with a value that may never
/// come.
class GaugeReader {
public:
    /// @param number of the event in the store, from 0
    GaugeReader(std::size_t number, DesignEntry event) : number_(number), event_(std::move(event)) {}

    /// Goes through what came since the last call only: the store must not have been reset meanwhile.
    GaugeReading read(const SampleStore& samples);

private:
    struct Extreme {
        double number;
        double value;
    };

    void widen(double value);
    std::optional<double> placeOf(double value) const;

    std::size_t number_;
    DesignEntry event_;
    std::int32_t seen_ = EventTotals::none; ///< the last record that is in the range
    std::optional<Extreme> lowest_;         ///< there is none where there is no highest
    std::optional<Extreme> highest_;
};

} // namespace zint
