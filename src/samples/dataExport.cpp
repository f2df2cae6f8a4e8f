#include "samples/dataExport.h"

#include "catalogue/conversion.h"
#include "samples/lineWriter.h"
#include "shared/runTimeError.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace zint {
namespace {

/// The row that is being gathered: the values of one loop, or what came of it.
class Row {
public:
    Row(std::ostream& stream, const Design& design)
        : lines_(stream), events_(design.events), cells_(events_.size())
    {
    }

    LineWriter& lines() { return lines_; }

    /// A header: the event's first sample stands behind it.
    void expect(std::size_t event, std::size_t index)
    {
        if (event < cells_.size())
            cells_[event] = {.isFilled = false, .next = static_cast<std::int32_t>(index)};
    }

    /// A sample. @return whether it belongs to an event
    bool take(std::size_t index, const SampleRecord& sample)
    {
        const auto event = expecting(static_cast<std::int32_t>(index));
        if (!event)
            return false;
        if (cells_[*event].isFilled)
            write();
        cells_[*event] = {.isFilled = true, .next = sample.link, .value = sample.value};
        time_ = sample.time;
        return true;
    }

    void write()
    {
        lines_ << time_;
        for (std::size_t event = 0; event < cells_.size(); ++event) {
            lines_ << '\t';
            Cell& cell = cells_[event];
            if (cell.isFilled)
                writeValue(events_[event].conversion, cell.value);
            cell.isFilled = false;
        }
        lines_.endLine();
    }

    /// What the user is told of a sample that no event expects.
    std::string complaint(std::size_t index) const
    {
        std::string text = "data error - can't find " + std::to_string(index) + " tmpLog " +
                           std::to_string(cells_.size() + 1);
        text += lineEnd;
        for (std::size_t event = 0; event < cells_.size(); ++event) {
            text += "tmpLog: " + std::to_string(event + 1) + " " + std::to_string(cells_[event].next);
            text += lineEnd;
        }
        return text;
    }

private:
    struct Cell {
        bool isFilled = false;
        std::int32_t next = 0; ///< the record of the event's next sample
        std::int32_t value = 0;
    };

    /// The event whose next sample stands there. The events come in the design's order over and over, so it
    /// is mostly found soon after the last one.
    std::optional<std::size_t> expecting(std::int32_t index)
    {
        for (std::size_t tried = 0; tried < cells_.size(); ++tried) {
            last_ = last_ + 1 < cells_.size() ? last_ + 1 : 0;
            if (cells_[last_].next == index)
                return last_;
        }
        return std::nullopt;
    }

    void writeValue(std::int32_t conversion, std::int32_t raw)
    {
        try {
            appendConverted(lines_.text(), conversion, raw);
        } catch (const RunTimeError& overflow) {
            lines_ << overflow.what(); // one such value is no reason to withhold the others
        }
    }

    LineWriter lines_;
    std::span<const DesignEntry> events_;
    std::vector<Cell> cells_;
    std::int32_t time_ = 0;
    std::size_t last_ = 0;
};

void writeHead(LineWriter& lines, const Design& design, const std::string& firstStart)
{
    lines << design.title << ' ' << firstStart;
    lines.endLine();
    lines << ' ';
    lines.endLine();
    lines << "Second(s)";
    for (const DesignEntry& event : design.events)
        lines << '\t' << event.description << '(' << unitText(event.conversion) << ')';
    lines.endLine();
}

} // namespace

void writeExport(std::ostream& stream, const Design& design, const SampleStore& samples,
                 const std::string& firstStart, const std::function<void(const std::string&)>& complain,
                 Progress& progress)
{
    Row row(stream, design);
    writeHead(row.lines(), design, firstStart);
    ProgressSteps records(progress, samples.size());
    for (std::size_t index = 0; index < samples.size(); ++index) {
        const SampleRecord& record = samples[index];
        if (record.isHeader())
            row.expect(static_cast<std::size_t>(record.value) - 1, index + 1);
        else if (!row.take(index, record))
            complain(row.complaint(index));
        records.step();
    }
    row.write();
    row.lines().flush();
}

} // namespace zint
