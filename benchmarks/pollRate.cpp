// Requests per second of the poll runner, its window open and its chart visible, against a blocking loop on
// the same adapter; and the processor time that a request costs.

#include "pollRun.h"

namespace {

constexpr int rounds = 5;
constexpr std::size_t eventCount = 4;

zint::Design fourEvents()
{
    const zint::DesignEntry rpm{.code = "010C", .description = "Engine RPM", .conversion = 5, .frequency = 1};
    return {.title = "Benchmark", .events = std::vector(eventCount, rpm)};
}

} // namespace

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    if (argc != 5)
        fail("usage: bench_pollRate PATH LOOPS GOAL DESCRIPTION");
    const int loops = std::max(1, std::atoi(argv[2]));
    const int requests = loops * eventCount;
    std::vector<double> window;
    std::vector<double> processor;
    std::vector<double> blocking;
    for (int round = 0; round < rounds; ++round) {
        const Run run = poll(argv[1], fourEvents(), loops);
        window.push_back(requests / run.seconds);
        processor.push_back(run.processor / requests * 1e6);
        blocking.push_back(requests / blockingSeconds(argv[1], "010C\r", requests));
    }
    const double ratio = median(window) / median(blocking);
    std::printf("polling, %s: %.0f requests/s, blocking loop %.0f (medians of %d): ratio %.2f (%s); "
                "%.1f us of processor time per request\n",
                argv[4], median(window), median(blocking), rounds, ratio,
                atLeast(std::atof(argv[3]), ratio).c_str(), median(processor));
    return benchmarkStatus();
}
