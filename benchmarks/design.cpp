// The designer's work on the largest designs. Each step should be done within one frame of the screen, 16 ms.

#include "catalogue/designFile.h"
#include "designer/loopOffsets.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>
#include <unistd.h>

namespace zint {
namespace {

constexpr std::int32_t slowestChoice = 1800; // the chooser's last frequency

Design fullDesign()
{
    Design design;
    loadDefaultDesign(design);
    DesignEntry pattern = design.events.at(3);
    pattern.frequency = 1;
    design.events.assign(Design::maxEvents, pattern);
    return design;
}

/// A design file in a folder that goes with it.
class TemporaryFile {
public:
    TemporaryFile() : folder_(std::filesystem::temp_directory_path() / ("zint" + std::to_string(getpid())))
    {
        std::filesystem::create_directory(folder_);
    }
    ~TemporaryFile()
    {
        std::error_code error;
        std::filesystem::remove_all(folder_, error);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    std::string path() const { return (folder_ / "full.obc").string(); }

private:
    std::filesystem::path folder_;
};

void load(benchmark::State& state)
{
    const TemporaryFile file;
    saveDesign(file.path(), fullDesign());
    for (auto _ : state)
        benchmark::DoNotOptimize(loadDesign(file.path()));
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
    const TemporaryFile file;
    const Design design = fullDesign();
    for (auto _ : state)
        saveDesign(file.path(), design);
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
