#include "designer/designGrid.h"

#include "shared/module1.h"

#include <algorithm>

namespace zint {

TooManyEvents::TooManyEvents(std::size_t count)
    : std::runtime_error("The design has " + std::to_string(count) + " polled events, but no more than " +
                         std::to_string(Design::maxEvents) + " fit. Disable or delete some.")
{
}

GridRow rowOf(const DesignEntry& event)
{
    return {event.code, event.description, event.conversion, event.frequency, std::to_string(event.offset)};
}

DesignGrid gridOf(const Design& design)
{
    DesignGrid grid{.title = design.title()};
    for (std::int32_t n = 1; n <= design.eventCount(); ++n)
        grid.rows.push_back(rowOf(design.entries.at(static_cast<std::size_t>(n))));
    return grid;
}

std::string summaryOf(const DesignGrid& grid)
{
    return grid.title + " (" + std::to_string(grid.rows.size()) + " events)";
}

void commit(const DesignGrid& grid, Design& design)
{
    const auto enabled = static_cast<std::size_t>(std::ranges::count_if(grid.rows, &GridRow::isEnabled));
    if (enabled > static_cast<std::size_t>(Design::maxEvents))
        throw TooManyEvents(enabled);
    Design committed = design;
    std::size_t n = 0;
    for (const GridRow& row : grid.rows) {
        if (!row.isEnabled())
            continue;
        DesignEntry& event = committed.entries.at(++n);
        event.code = row.code;
        event.description = row.description;
        event.conversion = row.conversion;
        event.frequency = row.frequency;
        event.offset = toInteger(row.offset);
    }
    committed.eventCount() = static_cast<std::int32_t>(n);
    committed.polledCount() = committed.eventCount();
    committed.title() = grid.title;
    design = std::move(committed);
}

} // namespace zint
