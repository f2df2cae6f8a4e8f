#include "designer/designGrid.h"

#include "catalogue/designFile.h"

#include <algorithm>
#include <iterator>

namespace zint {

TooManyEvents::TooManyEvents(std::size_t count)
    : std::runtime_error("The design has " + std::to_string(count) + " polled events, but no more than " +
                         std::to_string(Design::maxEvents) + " fit. Disable or delete some.")
{
}

GridRow rowOf(const DesignEntry& event)
{
    return {event.code, event.description, event.conversion, event.frequency, event.offset};
}

DesignGrid gridOf(const Design& design)
{
    DesignGrid grid{.title = design.title()};
    std::ranges::transform(design.events(), std::back_inserter(grid.rows), &rowOf);
    return grid;
}

void writeDraft(std::ostream& stream, const DesignGrid& grid, const Design& design)
{
    Design all = design;
    all.title() = grid.title;
    std::vector<DesignEntry> more;
    for (std::size_t n = 0; const GridRow& row : grid.rows) {
        DesignEntry& place = n < Design::maxEvents ? all.entries.at(++n) : more.emplace_back();
        place.code = row.code;
        place.description = row.description;
        place.conversion = row.conversion;
        place.frequency = row.frequency;
        place.offset = row.offset;
    }
    all.eventCount() = static_cast<std::int32_t>(grid.rows.size() - more.size());
    writeDesign(stream, all, more);
}

DesignDraft readDraft(std::istream& stream)
{
    std::vector<DesignEntry> more;
    DesignDraft draft{.design = readDesign(stream, more)};
    draft.grid = gridOf(draft.design);
    std::ranges::transform(more, std::back_inserter(draft.grid.rows), &rowOf);
    return draft;
}

std::string speedText(int sampleSpeed)
{
    return sampleSpeed == Design::automaticSpeed ? "Auto" : std::to_string(sampleSpeed) + "ms";
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
    design.title() = grid.title;
    design.eventCount() = design.polledCount() = static_cast<std::int32_t>(enabled);
    auto event = design.events().begin();
    for (const GridRow& row : grid.rows) {
        if (!row.isEnabled())
            continue;
        event->code = row.code;
        event->description = row.description;
        event->conversion = row.conversion;
        event->frequency = row.frequency;
        event->offset = row.offset;
        ++event;
    }
}

} // namespace zint
