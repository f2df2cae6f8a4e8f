#pragma once

#include "samples/sampleStore.h"
#include "shared/progress.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace zint {

/// A row of a table: the values of one loop, or what came of it.
struct TableRow {
    /// Of an event.
    struct Cell {
        bool isFilled = false;
        std::int32_t next = 0; ///< the record of the event's next sample
        double value = 0;      ///< as eventValue.h has it
    };

    SampleTime time;         ///< of the last sample
    std::vector<Cell> cells; ///< by event
};

/// Gathers all samples into rows, in the order in which they came: the second sample of an event begins the
/// next row.
/// @param events how many a row has
/// @param write gets each row; the last one even when it is empty, as it is without samples
/// @param complain told, in words for the user, of a sample that belongs to no event; the others follow
/// @throws WorkStopped
void gatherRows(const SampleStore& samples, std::size_t events,
                const std::function<void(const TableRow&)>& write,
                const std::function<void(const std::string&)>& complain, Progress& progress);

} // namespace zint
