#include "samples/dataLog.h"

#include "catalogue/designFile.h"
#include "samples/lineWriter.h"

#include <cstdint>

namespace zint {
namespace {

void writeBlock(LineWriter& lines, const SampleStore& samples, std::size_t event, ProgressSteps& records)
{
    const std::int32_t header = samples.events()[event].header;
    if (header == EventTotals::none)
        return;
    lines << "##" << event + 1;
    lines.endLine();
    for (std::int32_t index = header + 1; index > 0;) {
        const SampleRecord& sample = samples[index];
        lines << sample.time << ',' << sample.value;
        lines.endLine();
        index = sample.link;
        records.step();
    }
}

} // namespace

void writeLog(std::ostream& stream, const Design& design, const SampleStore& samples,
              const std::string& firstStart, Progress& progress)
{
    writeDesign(stream, design, EventFields::withoutReserved);
    LineWriter lines(stream);
    lines << firstStart;
    lines.endLine();
    lines << ' ' << samples.size() << ' ';
    lines.endLine();
    ProgressSteps records(progress, samples.size());
    for (std::size_t event = 0; event < samples.events().size(); ++event)
        writeBlock(lines, samples, event, records);
    lines.flush();
}

} // namespace zint
