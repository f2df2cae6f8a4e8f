// What a look at the chart takes: reading what is new in the store, fitting the axes, drawing and painting.
// And whether that, and the memory, stay as they are in a run of eight hours.

#include "chart/window/chartPlot.h"
#include "measure.h"

#include <QApplication>

#include <cmath>
#include <cstdio>
#include <malloc.h>
#include <numeric>

namespace {

constexpr int rounds = 9;

zint::Design events(std::size_t count)
{
    const std::array<std::int32_t, 4> conversions = {5, 7, 3, 1};
    zint::Design design;
    for (std::size_t i = 0; i < count; ++i)
        design.events.push_back({.code = "010C", .conversion = conversions.at(i % conversions.size())});
    return design;
}

/// A chart on the screen, of a run whose events are sampled in turn.
class Chart {
public:
    Chart(std::size_t eventCount, double samplesPerSecond)
        : design_(events(eventCount)), plot_(store_), samplesPerSecond_(samplesPerSecond)
    {
        store_.reset(design_);
        std::vector<std::size_t> all(eventCount);
        std::iota(all.begin(), all.end(), std::size_t{0});
        plot_.resize(1400, 700);
        plot_.show();
        plot_.draw(design_, all);
    }

    void sample(std::size_t count)
    {
        constexpr double amplitude = 100;
        for (std::size_t i = 0; i < count; ++i, ++sampled_) {
            const double time = end();
            const double value = amplitude * (1.2 + std::sin(time / 30) + 0.03 * std::sin(time * 7));
            store_.add(sampled_ % design_.events.size(), static_cast<std::int32_t>(value),
                       {.seconds = static_cast<std::int32_t>(time),
                        .milliseconds = static_cast<std::uint16_t>(std::fmod(time, 1) * 1000)});
        }
    }

    double end() const { return static_cast<double>(sampled_) / samplesPerSecond_; }

    /// @return the milliseconds of a look, a median. @param span seconds that are shown
    double look(double span)
    {
        std::vector<double> times;
        for (int round = 0; round < rounds; ++round) {
            sample(design_.events.size());
            const auto start = RateClock::now();
            plot_.read();
            plot_.xAxis->setRange(std::max(0.0, end() - span), end());
            plot_.replot(QCustomPlot::rpImmediateRefresh);
            times.push_back(secondsSince(start) * 1000);
        }
        return median(times);
    }

private:
    zint::SampleStore store_;
    zint::Design design_;
    zint::ChartPlot plot_;
    double samplesPerSecond_;
    std::size_t sampled_ = 0;
};

void measureLook(std::size_t lines, std::size_t samplesEach, double goal)
{
    constexpr double perSecond = 50; // of each line
    Chart chart(lines, perSecond * static_cast<double>(lines));
    chart.sample(lines * samplesEach);
    chart.look(chart.end()); // which reads it all
    const double time = chart.look(chart.end());
    std::printf("chart, %zu lines of %zu samples: %.1f ms a look (%s)\n", lines, samplesEach, time,
                atMost(goal, time).c_str());
}

void measureLongRun()
{
    constexpr double perSecond = 20;
    constexpr std::size_t anHour = 3600 * 20;
    constexpr double window = 300;
    Chart chart(4, perSecond);
    chart.sample(anHour / 10);
    chart.look(window);
    const double first = chart.look(window);
    chart.sample(8 * anHour);
    const std::size_t before = mallinfo2().uordblks + mallinfo2().hblkhd;
    chart.look(window);
    const std::size_t after = mallinfo2().uordblks + mallinfo2().hblkhd;
    const double last = chart.look(window);
    const double bytes = static_cast<double>(after - before) / (8.0 * anHour);
    std::printf(
        "chart, the last 5 minutes of a run of 8 hours: %.1f ms a look, %.1f at its beginning: ratio %.2f "
        "(%s); %.1f bytes a sample beside the store (%s)\n",
        last, first, last / first, atMost(1.3, last / first).c_str(), bytes, atMost(40, bytes).c_str());
}

} // namespace

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    measureLook(1, 100000, 5);
    measureLook(4, 25000, 10);
    measureLook(64, 100000, 100);
    measureLongRun();
    return benchmarkStatus();
}
