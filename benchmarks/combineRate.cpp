// Samples per second of six events that are due in each loop, asked one by one and in one request.

#include "parameters/eventList.h"
#include "pollRun.h"

namespace {

constexpr int rounds = 3;
constexpr double goal = 3;

} // namespace

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    if (argc != 4)
        fail("usage: bench_combineRate PATH LOOPS DESCRIPTION");
    const int loops = std::max(1, std::atoi(argv[2]));
    const zint::Design design{.title = "Benchmark",
                              .events =
                                  zint::eventsNamed({"0C,0D,05,0B,0F,11"}, {}, zint::UnitSystem::metric)};
    const double samples = static_cast<double>(design.events.size()) * loops;
    std::vector<double> alone;
    std::vector<double> combined;
    for (int round = 0; round < rounds; ++round) {
        alone.push_back(samples / poll(argv[1], design, loops).seconds);
        combined.push_back(samples / poll(argv[1], design, loops, true).seconds);
    }
    const double ratio = median(combined) / median(alone);
    std::printf("six parameters, %s: %.0f samples/s one by one, %.0f in one request (medians of %d): "
                "ratio %.2f (%s)\n",
                argv[3], median(alone), median(combined), rounds, ratio, atLeast(goal, ratio).c_str());
    return benchmarkStatus();
}
