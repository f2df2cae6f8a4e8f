// The designer's work on the largest designs. Each step should be done within one frame of the screen, 16 ms.

#include "catalogue/designFile.h"
#include "designer/loopOffsets.h"
#include "fullDesign.h"
#include "support/temporaryFolder.h"

#include <benchmark/benchmark.h>

namespace zint {
namespace {

constexpr std::int32_t slowestChoice = 1800; // the chooser's last frequency

void load(benchmark::State& state)
{
    const TemporaryFolder folder;
    saveDesign(folder.path("full.obc"), fullDesign());
    for (auto _ : state)
        benchmark::DoNotOptimize(loadDesign(folder.path("full.obc")));
}

void commitGrid(benchmark::State& state)
{
    const Design draft = fullDesign();
    for (auto _ : state) {
        Design design = draft;
        dropUnpolled(design);
        benchmark::DoNotOptimize(design);
    }
}

void save(benchmark::State& state)
{
    const TemporaryFolder folder;
    const Design design = fullDesign();
    for (auto _ : state)
        saveDesign(folder.path("full.obc"), design);
}

void timeline(benchmark::State& state)
{
    Design design = fullDesign();
    design.events.back().frequency = slowestChoice;
    for (auto _ : state)
        benchmark::DoNotOptimize(timelineText(design));
}

BENCHMARK(load)->Name("load 64 events")->Unit(benchmark::kMillisecond);
BENCHMARK(commitGrid)->Name("commit 64 events")->Unit(benchmark::kMillisecond);
BENCHMARK(save)->Name("save 64 events")->Unit(benchmark::kMillisecond);
BENCHMARK(timeline)->Name("timeline of 1800 passes, 63 events in each")->Unit(benchmark::kMillisecond);

} // namespace
} // namespace zint
