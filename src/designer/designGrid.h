#pragma once

#include "catalogue/design.h"

#include <cstddef>
#include <cstdint>
#include <istream>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace zint {

/// One row of the designer's grid: an event, polled or not.
struct GridRow {
    std::string code;
    std::string description;
    std::int32_t conversion = 0;
    std::int32_t frequency = 0; ///< 0: disabled
    std::int32_t offset = 0;

    bool isEnabled() const { return frequency >= 1; }
    bool operator==(const GridRow&) const = default;
};

/// What the designer's grid holds while the user edits it. The design changes when the grid is committed.
struct DesignGrid {
    std::string title;
    std::vector<GridRow> rows;

    bool operator==(const DesignGrid&) const = default;
};

/// What a file of the design in the grid would hold.
struct DesignContent {
    DesignGrid grid;
    std::string extraCommands;
    int sampleSpeed = 0; ///< ms, or Design::automaticSpeed

    bool operator==(const DesignContent&) const = default;
};

/// A design holds no more events than Design::maxEvents.
class TooManyEvents : public std::runtime_error {
public:
    explicit TooManyEvents(std::size_t count);
};

/// A design while it is edited: a grid, which may hold rows that are not polled and more of them than a
/// design may, and the design that it is to become.
struct DesignDraft {
    DesignGrid grid;
    Design design; ///< gives what no grid shows: extra commands, sample speed and the reserved numbers
};

/// Writes a draft as a design of all its rows.
void writeDraft(std::ostream& stream, const DesignGrid& grid, const Design& design);

/// Reads what writeDraft() wrote. The design gets as many of the rows as it has room for.
/// @throws as readDesign(), but for the number of events
DesignDraft readDraft(std::istream& stream);

/// The row for an event.
GridRow rowOf(const DesignEntry& event);

/// The grid for a design.
DesignGrid gridOf(const Design& design);

/// "200ms", or "Auto"
std::string speedText(int sampleSpeed);

/// "title (N events)"
std::string summaryOf(const DesignGrid& grid);

/// Makes the enabled rows the design's events, in their order, and the grid's title its title. The design's
/// two reserved numbers stay with the places in the list, not with the rows.
/// @throws TooManyEvents for a 65th enabled row; the design is then as it was
void commit(const DesignGrid& grid, Design& design);

} // namespace zint
