#include "commands/plotCommand.h"

#include "catalogue/eventValue.h"
#include "chart/chartRange.h"
#include "chart/window/chartPicture.h"
#include "chart/window/eventChoice.h"
#include "commands/commandSession.h"
#include "commands/options.h"
#include "commands/ownDefinitions.h"
#include "samples/dataLogReader.h"
#include "shared/fileError.h"

#include <QString>

#include <algorithm>
#include <limits>
#include <utility>

namespace zint {
namespace {

/// "1,3". @throws UsageError
std::vector<std::size_t> readEvents(const std::string& text)
{
    std::vector<std::size_t> events;
    for (const QString& word : QString::fromStdString(text).split(u',')) {
        const unsigned number = word.trimmed().toUInt();
        if (number == 0)
            throw UsageError("give the numbers of events, from 1 on, with commas between them");
        events.push_back(number - 1);
    }
    std::ranges::sort(events);
    events.erase(std::ranges::unique(events).begin(), events.end());
    return events;
}

/// @throws FileError for those that can't be drawn
std::vector<std::size_t> drawnEvents(const PlotOptions& options, const Design& design)
{
    for (const std::size_t event : options.events) {
        const std::string number = std::to_string(event + 1);
        if (event >= design.events.size())
            throw FileError("The log has no event " + number + "; it has " +
                            std::to_string(design.events.size()) + ".");
        if (!isDrawn(design.events[event]))
            throw FileError("Event " + number + ", " + design.events[event].name() +
                            ", has no numbers to draw.");
    }
    if (!options.events.empty())
        return options.events;
    EventChoice choice(nullptr);
    choice.list(design);
    if (choice.rowCount() == 0)
        throw FileError("The log has no event with numbers to draw.");
    return choice.chosen();
}

} // namespace

void PlotOptions::describe(CLI::App& command)
{
    constexpr std::pair anyTime{0, std::numeric_limits<int>::max()};
    addWord(command, "LOG.log", logPath, "The data log.");
    addWord(command, "OUT.png|OUT.pdf", picturePath, "The picture or PDF document that is written.");
    addValue(command, "--events", "N,N", "What to draw: numbers of events (the first four).",
             [this](const std::string& text) { events = readEvents(text); });
    addNumber(command, "--from", "SECONDS", "The time at which the picture begins (0).", "seconds", anyTime,
              [this](int seconds) { from = seconds; });
    addNumber(command, "--to", "SECONDS", "The time at which it ends (the end of the run).", "seconds",
              anyTime, [this](int seconds) { to = seconds; });
}

void PlotOptions::check() const
{
    requireDifferentFiles({logPath, picturePath});
    if (!isPictureName(picturePath))
        throw UsageError("\"" + picturePath + "\": a picture's name ends in .png or .pdf");
    if (to && from.value_or(0) >= *to)
        throw UsageError("--from: give a time before that of --to");
}

int runPlotCommand(const PlotOptions& options)
{
    constexpr QRect place(0, 0, 1400, 700);
    DataLog log = loadLog(options.logPath);
    defineOwn(log.design, options.logPath);
    ChartPlot plot(log.samples);
    plot.draw(log.design, drawnEvents(options, log.design));
    const int from = options.from.value_or(0);
    const double end = std::max(plot.read(), ChartRange::shortest);
    const double to = options.to ? *options.to : end;
    if (log.samples.isEmpty() || from >= end)
        throw FileError("The log has no samples" +
                        (options.from ? " after " + std::to_string(from) + " seconds." : "."));
    plot.setViewport(place);
    plot.xAxis->setRange(from, to);
    plot.replot();
    writeChart(plot, options.picturePath);
    return exitStatus::success;
}

} // namespace zint
