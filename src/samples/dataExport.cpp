#include "samples/dataExport.h"

#include "catalogue/eventValue.h"
#include "samples/lineWriter.h"
#include "samples/tableRows.h"
#include "shared/runTimeError.h"

#include <cstddef>
#include <cstdint>

namespace zint {
namespace {

void writeHead(LineWriter& lines, const Design& design, const std::string& firstStart)
{
    lines << design.title << ' ' << firstStart;
    lines.endLine();
    lines << ' ';
    lines.endLine();
    lines << "Second(s)";
    for (const DesignEntry& event : design.events)
        lines << '\t' << event.description << '(' << unitOf(event) << ')';
    lines.endLine();
}

void writeValue(LineWriter& lines, const DesignEntry& event, double value)
{
    try {
        appendEventValue(lines.text(), event, value);
    } catch (const RunTimeError& overflow) {
        lines << overflow.what(); // one such value is no reason to withhold the others
    }
}

void writeRow(LineWriter& lines, const Design& design, const TableRow& row)
{
    lines << row.time.seconds;
    for (std::size_t event = 0; event < row.cells.size(); ++event) {
        lines << '\t';
        if (row.cells[event].isFilled)
            writeValue(lines, design.events[event], row.cells[event].value);
    }
    lines.endLine();
}

} // namespace

void writeExport(std::ostream& stream, const Design& design, const SampleStore& samples,
                 const std::string& firstStart, const std::function<void(const std::string&)>& complain,
                 Progress& progress)
{
    LineWriter lines(stream);
    writeHead(lines, design, firstStart);
    const auto write = [&](const TableRow& row) { writeRow(lines, design, row); };
    gatherRows(samples, design.events.size(), write, complain, progress);
    lines.flush();
}

} // namespace zint
