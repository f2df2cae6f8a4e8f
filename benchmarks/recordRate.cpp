// What it costs to record what goes over the wire: requests per second with the record in memory and in a
// file against those without a record, in turn on the same adapter. Called with PATH COUNT DESCRIPTION GOAL.

#include "link/recordingPort.h"
#include "linkRun.h"
#include "platform/systemClock.h"
#include "support/temporaryFolder.h"

#include <cstdlib>

namespace {

double secondsRecorded(const char* path, int count, bool isInFile)
{
    const zint::TemporaryFolder folder;
    const zint::SystemClock clock;
    zint::WireRecord record(clock, {});
    if (isInFile)
        record.start(folder.path("transcript.txt"), zint::WireRecord::Identity::kept);
    const auto port = [&](zint::EventGate& gate) {
        return std::make_unique<zint::RecordingPort>(devicePort(path)(gate), record,
                                                     [](zint::PortNumber, int) { return std::string(); });
    };
    return LinkRun(port, count).secondsTaken();
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    if (argc != 5)
        fail("usage: bench_recordRate PATH COUNT DESCRIPTION GOAL");
    const int count = std::max(1, std::atoi(argv[2]));
    for (const bool isInFile : {false, true}) {
        const ComparedSeconds seconds =
            compareSeconds([&] { return secondsRecorded(argv[1], count, isInFile); },
                           [&] { return LinkRun(devicePort(argv[1]), count).secondsTaken(); });
        const double ratio = seconds.blocking / seconds.program;
        std::printf("recording %s, %s: %.0f requests/s, without %.0f (medians of %d): ratio %.3f (%s)\n",
                    isInFile ? "into a file" : "in memory", argv[3], count / seconds.program,
                    count / seconds.blocking, ComparedSeconds::rounds, ratio,
                    atLeast(std::atof(argv[4]), ratio).c_str());
    }
    return benchmarkStatus();
}
