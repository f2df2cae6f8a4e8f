// The files of a long run: the program's data log and export against plain C that prints the same lines from
// an array, in turn; the CSV file against the export; and the memory that the samples take.

#include "fullDesign.h"
#include "measure.h"
#include "plainPrinter.h"
#include "samples/csvExport.h"
#include "samples/dataExport.h"
#include "samples/dataLog.h"
#include "support/temporaryFolder.h"

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <functional>
#include <random>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

constexpr int rounds = 5;
constexpr int passesPerSecond = 3;
constexpr const char* nowhere = "/dev/null";

/// What of a 32-bit number goes to a conversion: one byte or two.
int rawValue(std::uint32_t random, int conversion)
{
    const bool isWide = conversion == 5 || conversion == 15 || conversion == 17;
    return static_cast<int>(random & (isWide ? 0xFFFFU : 0xFFU));
}

/// The same samples as the program and as plain C have them.
struct Run {
    explicit Run(int passes) : design(fullDesign())
    {
        std::mt19937 random{1};
        for (const zint::DesignEntry& event : design.events)
            eventConversions.push_back(event.conversion);
        times.reserve(static_cast<std::size_t>(passes));
        values.reserve(times.capacity() *
                       zint::Design::maxEvents); // no left-overs that the samples could use
        for (int pass = 0; pass < passes; ++pass) {
            times.push_back(pass / passesPerSecond);
            for (const int conversion : eventConversions)
                values.push_back(rawValue(static_cast<std::uint32_t>(random()), conversion));
        }
        plain = {.events = static_cast<int>(design.events.size()),
                 .passes = passes,
                 .conversions = eventConversions.data(),
                 .times = times.data(),
                 .values = values.data()};
    }

    void fill(zint::SampleStore& samples) const
    {
        samples.reset(design);
        for (std::size_t n = 0; n < values.size(); ++n)
            samples.add(n % zint::Design::maxEvents, values[n], {times[n / zint::Design::maxEvents]});
    }

    zint::Design design;
    std::vector<int> eventConversions;
    std::vector<int> times;
    std::vector<int> values;
    PlainRun plain{};
};

std::size_t residentBytes()
{
    std::ifstream file("/proc/self/statm");
    std::size_t total = 0;
    std::size_t resident = 0;
    file >> total >> resident;
    return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

double seconds(const std::function<void()>& work)
{
    const auto start = RateClock::now();
    work();
    return secondsSince(start);
}

using Ours = std::function<void(std::ostream&)>;
using Plain = std::function<int(std::FILE*)>;

void writeOurs(const std::string& path, const Ours& write)
{
    std::ofstream stream(path, std::ios::binary);
    write(stream);
    stream.close();
    if (!stream)
        fail("a file can't be written");
}

void writePlain(const std::string& path, const Plain& write)
{
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr || write(file) != 0 || std::fclose(file) != 0)
        fail("a file can't be written");
}

/// Makes sure that both write the same, but for the lines before the samples.
void compare(const Ours& ours, const Plain& plain)
{
    const zint::TemporaryFolder folder;
    const std::string path = folder.path("samples");
    writeOurs(path, ours);
    const std::string first = zint::contents(path);
    writePlain(path, plain);
    const std::string second = zint::contents(path);
    if (second.empty() || !first.ends_with(second) || first.size() - second.size() > 10000)
        fail("the program and plain C write different lines");
}

struct Medians {
    double ours;
    double plain;
};

Medians measure(const char* name, std::size_t samples, const Ours& ours, const Plain& plain)
{
    compare(ours, plain);
    std::vector<double> oursTook;
    std::vector<double> plainTook;
    for (int round = 0; round < rounds; ++round) {
        oursTook.push_back(seconds([&ours] { writeOurs(nowhere, ours); }));
        plainTook.push_back(seconds([&plain] { writePlain(nowhere, plain); }));
    }
    const Medians took{median(oursTook), median(plainTook)};
    const double ratio = took.ours / took.plain;
    std::printf("%s, %.2f million samples: %.3f s, plain C %.3f s (medians of %d): ratio %.2f (%s)\n", name,
                static_cast<double>(samples) / 1e6, took.ours, took.plain, rounds, ratio,
                atMost(1.5, ratio).c_str());
    return took;
}

/// A CSV file against the export, of the same samples, in turn.
void compareCsv(const Ours& csv, const Ours& table)
{
    std::vector<double> csvTook;
    std::vector<double> tableTook;
    for (int round = 0; round < rounds; ++round) {
        csvTook.push_back(seconds([&csv] { writeOurs(nowhere, csv); }));
        tableTook.push_back(seconds([&table] { writeOurs(nowhere, table); }));
    }
    const double ratio = median(csvTook) / median(tableTook);
    std::printf("CSV: %.3f s (median of %d), ratio to the export %.2f (%s)\n", median(csvTook), rounds, ratio,
                atMost(1.5, ratio).c_str());
}

struct Both {
    Medians log;
    Medians table;
};

Both measure(int passes)
{
    const Run run(passes);
    const std::size_t before = residentBytes();
    zint::SampleStore samples;
    run.fill(samples);
    const double each = static_cast<double>(residentBytes() - before) / static_cast<double>(samples.size());
    std::printf("memory of %zu records: %.1f bytes per record (%s)\n", samples.size(), each,
                atMost(26, each).c_str());
    const auto ignore = [](const std::string&) { fail("a sample belongs to no event"); };
    const std::size_t count = run.values.size();
    const Medians log = measure(
        "log", count, [&](std::ostream& stream) { writeLog(stream, run.design, samples, "now"); },
        [&run](std::FILE* file) { return printLog(file, &run.plain); });
    const auto writeTable = [&](std::ostream& stream) {
        writeExport(stream, run.design, samples, "now", ignore);
    };
    const Medians table = measure("export", count, writeTable,
                                  [&run](std::FILE* file) { return printTable(file, &run.plain); });
    const auto writeWithCommas = [&](std::ostream& stream) {
        writeCsv(stream, run.design, samples, zint::Decimals::comma, ignore);
    };
    compareCsv(writeWithCommas, writeTable);
    return {log, table};
}

void printGrowth(const char* name, const Medians& tenth, const Medians& whole)
{
    const double growth = whole.ours / tenth.ours;
    std::printf("%s, ten times the samples: %.1f times as long, plain C %.1f times (%s)\n", name, growth,
                whole.plain / tenth.plain, atMost(15, growth).c_str());
}

} // namespace

int main()
{
    const Both whole = measure(100000); // first, while no memory has been left over
    const Both tenth = measure(10000);
    printGrowth("log", tenth.log, whole.log);
    printGrowth("export", tenth.table, whole.table);
    return benchmarkStatus();
}
