#include "samples/tableRows.h"

#include "shared/textFile.h"

#include <optional>

namespace zint {
namespace {

/// Fills a row after the other.
class RowGatherer {
public:
    RowGatherer(std::size_t events, const std::function<void(const TableRow&)>& write)
        : row_{.cells = std::vector<TableRow::Cell>(events)}, write_(write)
    {
    }

    /// A header: the event's first sample stands behind it.
    void expect(std::size_t event, std::size_t index)
    {
        if (event < row_.cells.size())
            row_.cells[event] = {.isFilled = false, .next = static_cast<std::int32_t>(index)};
    }

    /// A sample. @return whether it belongs to an event
    bool take(std::size_t index, const SampleRecord& sample)
    {
        const auto event = expecting(static_cast<std::int32_t>(index));
        if (!event)
            return false;
        if (row_.cells[*event].isFilled)
            finish();
        row_.cells[*event] = {.isFilled = true, .next = sample.link, .value = sample.value};
        row_.time = {sample.time, sample.milliseconds};
        return true;
    }

    void finish()
    {
        write_(row_);
        for (TableRow::Cell& cell : row_.cells)
            cell.isFilled = false;
    }

    /// What the user is told of a sample that no event expects.
    std::string complaint(std::size_t index) const
    {
        std::string text = "data error - can't find " + std::to_string(index) + " tmpLog " +
                           std::to_string(row_.cells.size() + 1);
        text += lineEnd;
        for (std::size_t event = 0; event < row_.cells.size(); ++event) {
            text += "tmpLog: " + std::to_string(event + 1) + " " + std::to_string(row_.cells[event].next);
            text += lineEnd;
        }
        return text;
    }

private:
    /// The event whose next sample stands there. The events come in the design's order over and over, so it
    /// is mostly found soon after the last one.
    std::optional<std::size_t> expecting(std::int32_t index)
    {
        for (std::size_t tried = 0; tried < row_.cells.size(); ++tried) {
            last_ = last_ + 1 < row_.cells.size() ? last_ + 1 : 0;
            if (row_.cells[last_].next == index)
                return last_;
        }
        return std::nullopt;
    }

    TableRow row_;
    const std::function<void(const TableRow&)>& write_;
    std::size_t last_ = 0;
};

} // namespace

void gatherRows(const SampleStore& samples, std::size_t events,
                const std::function<void(const TableRow&)>& write,
                const std::function<void(const std::string&)>& complain, Progress& progress)
{
    RowGatherer row(events, write);
    ProgressSteps records(progress, samples.size());
    for (std::size_t index = 0; index < samples.size(); ++index) {
        const SampleRecord& record = samples[index];
        if (record.isHeader())
            row.expect(static_cast<std::size_t>(record.value) - 1, index + 1);
        else if (!row.take(index, record))
            complain(row.complaint(index));
        records.step();
    }
    row.finish();
}

} // namespace zint
