#include "commands/pollCommand.h"

#include "catalogue/designFile.h"
#include "commands/commandSession.h"
#include "commands/options.h"
#include "commands/ownDefinitions.h"
#include "parameters/eventList.h"
#include "platform/dateText.h"
#include "platform/qtTimer.h"
#include "platform/text.h"
#include "process/console.h"
#include "process/folders.h"
#include "runner/pollLimits.h"
#include "runner/poller.h"
#include "samples/sampleLine.h"
#include "shared/module1.h"
#include "shared/textFile.h"

#include <QCoreApplication>

#include <CLI/App.hpp>
#include <algorithm>
#include <array>
#include <exception>
#include <fstream>
#include <iostream>
#include <utility>

namespace zint {
namespace {

/// A design as the designer would hand it over to the runner.
/// @throws FileError
Design loadDesignToPoll(const std::string& path)
{
    Design design;
    readFile(path, [&](std::istream& stream) {
        try {
            design = readDesign(stream);
        } catch (const std::exception& error) {
            throw FileError("\"" + path + "\" is no polling design: " + error.what());
        }
    });
    dropUnpolled(design);
    defineOwn(design, path);
    return design;
}

Design designToPoll(const PollOptions& options)
{
    if (!options.hasEvents())
        return loadDesignToPoll(options.words.front());
    std::vector<std::string> names = options.events;
    names.insert(names.end(), options.words.begin(), options.words.end());
    const UnitSystem units = options.imperial ? UnitSystem::imperial : UnitSystem::metric;
    return {.title = "Events of the command line",
            .events = eventsNamed(names, userParametersFile().load(), units)};
}

/// Writes each sample as a line, as it comes.
class SampleStream {
public:
    SampleStream(const PollOptions& options, const Design& design)
        : options_(options), design_(design), decimals_(options.decimals.value_or(Decimals::point))
    {
        if (!options.csvPath.empty() && options.csvPath != "-")
            file_.open(utf8Path(options.csvPath), std::ios::binary | std::ios::trunc);
        if (!options.csvPath.empty())
            writeCsvLine(csvSampleHead(decimals_));
    }

    void write(std::size_t event, double value, SampleTime time)
    {
        const DesignEntry& entry = design_.events[event];
        if (!options_.csvPath.empty())
            writeCsvLine(csvSampleLine(entry, value, time, decimals_));
        if (options_.jsonLines)
            print(jsonSampleLine(entry, value, time));
    }

    /// Why not all could be written; empty as long as all could.
    const std::string& failure() const { return failure_; }

private:
    void writeCsvLine(const std::string& line)
    {
        if (options_.csvPath == "-")
            print(line);
        else if (!(file_ << line << std::flush))
            failure_ = "\"" + options_.csvPath + "\" can't be written";
    }

    void print(const std::string& line)
    {
        if (failure_.empty() && !(std::cout << line << std::flush))
            failure_ = "the samples could not be written to standard output";
    }

    const PollOptions& options_;
    const Design& design_;
    Decimals decimals_;
    std::ofstream file_;
    std::string failure_;
};

/// A line of the summary's table.
using Cells = std::array<QString, 5>;

/// Words that would make the table wider than a terminal are cut.
QString shortened(const std::string& text)
{
    constexpr qsizetype longest = 30;
    const QString whole = toQt(text).trimmed();
    return whole.size() > longest ? whole.first(longest - 3) + QStringLiteral("...") : whole;
}

Cells cellsOf(const PollPanel::Row& row, const EventTotals& event)
{
    const auto figure = [&event](const std::string& text) { // without samples they are not measured ones
        return shortened(event.sampleCount > 0 ? text : "-");
    };
    return {toQt(row.description), row.isWords ? shortened(row.value) : figure(row.value), toQt(row.samples),
            figure(row.minimum), figure(row.maximum)};
}

/// The table as plain text: the events to the left, the figures to the right.
QString tableText(const Poller& poller)
{
    std::vector<Cells> table{{QStringLiteral("Event"), QStringLiteral("Value"), QStringLiteral("Samples"),
                              QStringLiteral("Min"), QStringLiteral("Max")}};
    std::ranges::transform(poller.panel().obdGrid, poller.samples().events(), std::back_inserter(table),
                           cellsOf);
    std::array<qsizetype, 5> widths{};
    for (const Cells& cells : table) {
        for (std::size_t i = 0; i < cells.size(); ++i)
            widths[i] = std::max(widths[i], cells[i].size());
    }
    QString text;
    for (const Cells& cells : table) {
        text += cells[0].leftJustified(widths[0]);
        for (std::size_t i = 1; i < cells.size(); ++i)
            text += QStringLiteral("  ") + cells[i].rightJustified(widths[i]);
        text += u'\n';
    }
    return text;
}

std::string summaryText(const Poller& poller)
{
    const PollPanel& panel = poller.panel();
    return panel.titleLab + "\n" + panel.statLab1 + "\n" + panel.labelStats + "\n\n" +
           fromQt(tableText(poller));
}

/// The poller and all that it needs.
class PollRun {
public:
    PollRun(const PollOptions& options, const Design& design)
        : options_(options), design_(design), session_(options.connection, options.timeout),
          stream_(options, design)
    {
        poller_.onSample = [this](std::size_t event, double value, SampleTime time) {
            stream_.write(event, value, time);
        };
        poller_.onChanged = [this] { watch(); };
        poller_.onReply = [this] { session_.patience.begin(); };
    }

    int run()
    {
        const Interruption interruption([this] { session_.gate.run([this] { stop(); }); });
        session_.gate.run([this] { begin(); });
        if (!hasBegun_) {
            tell(poller_.lastFailure());
            return exitStatus::failure;
        }
        if (poller_.isPolling())
            QCoreApplication::exec();
        session_.gate.run([this] { finish(); });
        const int printed = summarize();
        return session_.prompts.hasComplained || isMismatchTold_ ? exitStatus::failure : printed;
    }

private:
    int summarize() const
    {
        if (!options_.printsSamples())
            return printOut(summaryText(poller_));
        if (!options_.quiet)
            std::cerr << summaryText(poller_);
        return exitStatus::success;
    }

    void begin()
    {
        poller_.setMaxLoops(std::to_string(options_.loops.value_or(pollLimits::usualLoops)));
        poller_.setRefresh("1");
        poller_.resetValues();
        if (options_.seconds)
            poller_.limitByTime(*options_.seconds);
        poller_.letReconnect(options_.reconnect);
        poller_.letCombine(options_.combine);
        poller_.useDecimals(options_.decimals.value_or(Decimals::point));
        poller_.pressStart();
        hasBegun_ = poller_.isPolling();
        if (hasBegun_)
            session_.patience.begin();
    }

    /// Ends the run before its time, as the user wants it.
    void stop()
    {
        if (!poller_.isPolling())
            return;
        isStopped_ = true;
        poller_.pressStart();
    }

    void watch()
    {
        if (!poller_.isPolling()) {
            QCoreApplication::quit();
            return;
        }
        warn();
        tellOfLoss();
        tellOfRenewal();
        if (!stream_.failure().empty()) {
            tell(stream_.failure());
            stop();
        }
        if (!options_.quiet)
            showProgress(progress());
    }

    /// No reply is late while there is no adapter.
    void tellOfLoss()
    {
        if (isWaitTold_ == poller_.isWaiting())
            return;
        isWaitTold_ = poller_.isWaiting();
        if (isWaitTold_) {
            session_.patience.end();
            complain(poller_.lastFailure() + ", waiting for it for " + secondsText(*options_.reconnect));
        } else {
            session_.patience.begin();
            complain("the adapter is there again");
        }
    }

    /// The adapter is there, and yet polling stands still.
    void tellOfRenewal()
    {
        const bool wasInterrupted = std::exchange(wasInterrupted_, poller_.isInterrupted());
        if (wasInterrupted_ && !wasInterrupted && !poller_.isWaiting())
            complain("the adapter has lost its settings, which are sent anew");
    }

    /// Tells once what the run goes on in spite of.
    void warn()
    {
        const std::string& failure = poller_.panel().keepFailure;
        if (!failure.empty() && !std::exchange(isKeepFailureTold_, true))
            complain(failure);
        if (poller_.sawMismatch() && !std::exchange(isMismatchTold_, true))
            complain(std::string(ReplyWatch::mismatchText));
    }

    std::string progress() const
    {
        const ProgressBar& bar = poller_.panel().ProgressBar1;
        return std::to_string(static_cast<int>(bar.value)) + "%, " + std::to_string(poller_.loopCount()) +
               " Loops" + (bar.text.empty() ? "" : ", ") + bar.text;
    }

    /// Tells what went wrong, unless something was told that led to it.
    void tell(const std::string& text)
    {
        if (!session_.prompts.hasComplained)
            session_.prompts.message(text);
    }

    void finish()
    {
        showProgress({});
        if (poller_.isPolling()) // an action has failed
            poller_.pressStart();
        warn();
        for (const std::string& failure : {poller_.lastFailure(), stream_.failure()}) {
            if (!failure.empty())
                tell(failure);
        }
        if (poller_.samples().isEmpty()) {
            tell("nothing was sampled");
        } else {
            write(RunFiles::Kind::log, options_.logPath);
            write(RunFiles::Kind::table, options_.exportPath);
        }
        poller_.unload();
    }

    void write(RunFiles::Kind kind, const std::string& path)
    {
        if (const std::string failure = poller_.save(kind, path); !failure.empty())
            session_.prompts.message(failure);
    }

    const PollOptions& options_;
    const Design& design_;
    VehicleSession session_;
    SampleStream stream_;
    KeptRuns kept_{fromQt(userDataFolder()), dateText};
    QtTimer ticker_{session_.gate};
    Poller poller_{
        {.line = session_.line(),
         .ticker = ticker_,
         .clock = session_.clock,
         .prompts = session_.prompts,
         .values = session_.values,
         .kept = kept_,
         .dateText = dateText,
         .device = [this] { return session_.ports().target(session_.connection().port).location; }},
        design_};
    bool hasBegun_ = false;
    bool isStopped_ = false; ///< by the user
    bool isKeepFailureTold_ = false;
    bool isMismatchTold_ = false;
    bool isWaitTold_ = false;
    bool wasInterrupted_ = false; ///< when it was looked at last
};

} // namespace

void PollOptions::describe(CLI::App& command)
{
    command.add_option("DESIGN.obc", words, "The polling design.");
    addValue(command, "--events", "LIST",
             "Poll these events in place of a design: requests, parameters and names, with commas or as "
             "several words, such as 010C,0105,2F \"Fuel level\".",
             [this](const std::string& list) { events.push_back(list); });
    command.add_flag("--imperial", imperial, "Show those parameters of the standard in imperial units.");
    command.add_flag("--combine", combine,
                     "Ask up to six parameters in one request, where vehicle and adapter take that.");
    addConnection(command, connection);
    addTimeout(command, timeout,
               "Give up when a reply takes so many seconds (default 120; 0 waits for ever).");
    const char* const length = "Length of the run";
    addNumber(command, "--loops", "NUMBER", "End after so many loops (default 1000).", "a number of loops",
              {1, static_cast<int>(pollLimits::mostLoops)}, [this](int number) { loops = number; })
        ->group(length);
    addNumber(command, "--seconds", "SECONDS", "End after so many seconds instead.", "seconds",
              {1, static_cast<int>(pollLimits::longestRun.count())},
              [this](int number) { seconds = std::chrono::seconds(number); })
        ->group(length);
    addNumber(command, "--reconnect", "SECONDS",
              "Wait so long for an adapter that has vanished, and go on; send the settings anew to one that "
              "has lost them.",
              "seconds", {1, mostSeconds}, [this](int number) { reconnect = std::chrono::seconds(number); });
    const char* const output = "Output";
    addFile(command, "--log", logPath, "Save a data log, the design and every sample.")->group(output);
    addFile(command, "--export", exportPath,
            "Write a table for spreadsheets; as CSV if the name ends in .csv.")
        ->group(output);
    addFile(command, "--csv", csvPath,
            "Write each sample as a line of CSV as it comes; - is standard output.")
        ->group(output);
    command
        .add_flag("--jsonl", jsonLines,
                  "Print each sample as a JSON object on a line of its own as it comes.")
        ->group(output);
    addDecimals(command, decimals)->group(output);
    addQuiet(command, quiet);
}

void PollOptions::check() const
{
    if (loops && seconds)
        throw UsageError("--loops and --seconds both say when the run ends; give one of them");
    if (!hasEvents() && words.size() != 1)
        throw UsageError("poll takes one design, DESIGN.obc, or --events and what they are");
    if (imperial && !hasEvents())
        throw UsageError("--imperial goes with --events; a design tells its own units");
    if (jsonLines && csvPath == "-")
        throw UsageError("--jsonl and --csv - both take standard output; give one of them");
    if (csvPath.empty())
        requireCsv(decimals, exportPath);
    requireDifferentFiles({hasEvents() ? "" : words.front(), logPath, exportPath,
                           csvPath == "-" ? "" : csvPath, connection.transcriptPath});
}

int runPollCommand(const PollOptions& options)
{
    const Design design = designToPoll(options);
    for (const std::string& path : {options.logPath, options.exportPath, options.csvPath}) {
        if (!path.empty() && path != "-") // a long run is not to end in a file that can't be written
            requireWritable(path);
    }
    return PollRun(options, design).run();
}

} // namespace zint
