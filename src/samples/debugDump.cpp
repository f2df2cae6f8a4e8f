#include "samples/debugDump.h"

#include "samples/lineWriter.h"

namespace zint {

void writeDebugDump(std::ostream& stream, const SampleStore& samples, Progress& progress)
{
    LineWriter lines(stream);
    ProgressSteps records(progress, samples.size());
    for (std::size_t index = 0; index < samples.size(); ++index) {
        const SampleRecord& record = samples[index];
        lines << record.link << ',' << record.value << ',' << record.time;
        lines.endLine();
        records.step();
    }
    lines.flush();
}

} // namespace zint
