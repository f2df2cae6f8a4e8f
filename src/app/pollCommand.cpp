#include "app/pollCommand.h"

#include "app/commandSession.h"
#include "designer/designFile.h"
#include "designer/designGrid.h"
#include "platform/console.h"
#include "platform/dateText.h"
#include "platform/folders.h"
#include "platform/qtTimer.h"
#include "platform/systemClock.h"
#include "platform/text.h"
#include "runner/dataLog.h"
#include "runner/poller.h"
#include "shared/textFile.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cmath>
#include <exception>

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
    commit(gridOf(design), design);
    return design;
}

/// Answers with the file that the command line names.
struct NamedFile final : FileDialogs {
    std::string path;

    std::string chooseToOpen(const FileKinds& /*kinds*/, const std::string& /*folder*/) override
    {
        return path;
    }
    std::string chooseAny(const FileKinds& /*kinds*/, const std::string& /*folder*/) override { return path; }
    std::string chooseToSave(const FileKinds& /*kinds*/, const std::string& /*folder*/,
                             const std::string& /*proposed*/) override
    {
        return path;
    }
};

/// A line of the summary's table.
using Cells = std::array<QString, 5>;

Cells cellsOf(const PollPanel::Row& row)
{
    const bool isSampled = row.samples != "0"; // else the figures are not measured ones
    const auto figure = [isSampled](const std::string& text) {
        return toQt(isSampled ? text : "-").trimmed();
    };
    return {toQt(row.description), figure(row.value), toQt(row.samples), figure(row.minimum),
            figure(row.maximum)};
}

/// The table as plain text: the events to the left, the figures to the right.
QString tableText(const std::vector<PollPanel::Row>& rows)
{
    std::vector<Cells> table{{QStringLiteral("Event"), QStringLiteral("Value"), QStringLiteral("Samples"),
                              QStringLiteral("Min"), QStringLiteral("Max")}};
    std::ranges::transform(rows, std::back_inserter(table), cellsOf);
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

std::string summaryText(const PollPanel& panel)
{
    return panel.titleLab + "\n" + panel.statLab1 + "\n" + panel.labelStats + "\n\n" +
           fromQt(tableText(panel.obdGrid));
}

/// The poller and all that it needs.
class PollRun {
public:
    PollRun(const CommandLine& line, const Design& design)
        : line_(line), design_(design), session_(line.connection)
    {
        poller_.onChanged = [this] { watch(); };
        end_.onTick = [this] { stop(); };
    }

    int run()
    {
        const Interruption interruption([this] { session_.gate.run([this] { stop(); }); });
        session_.gate.run([this] { begin(); });
        if (!hasBegun_) {
            tell(poller_.panel().statusBox); // that is where a port tells its failures
            return exitStatus::failure;
        }
        if (poller_.isPolling())
            QCoreApplication::exec();
        session_.gate.run([this] { finish(); });
        const int printed = printOut(summaryText(poller_.panel()));
        return session_.prompts.hasComplained ? exitStatus::failure : printed;
    }

private:
    void begin()
    {
        poller_.setMaxLoops(std::to_string(line_.loops));
        poller_.setRefresh("1");
        poller_.resetValues();
        poller_.pressStart();
        hasBegun_ = poller_.isPolling();
        if (hasBegun_ && line_.seconds) {
            end_.setInterval(*line_.seconds);
            end_.setEnabled(true);
        }
    }

    /// Ends the run before its last loop, as the user wants it.
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
        if (!hasWarned_ && !poller_.samples().isEmpty() && !kept_.isKeeping()) {
            hasWarned_ = true;
            complain(poller_.panel().statusBox); // which tells why nothing is kept; the run goes on
        }
        if (!line_.quiet)
            showProgress(progress());
    }

    std::string progress() const
    {
        const PollPanel& panel = poller_.panel();
        double percent = panel.ProgressBar1.value;
        std::string left = panel.ProgressBar1.text;
        if (line_.seconds) {
            const auto all = static_cast<double>(line_.seconds->count());
            percent = std::min(poller_.now() / all, 1.0) * 100;
            left = std::to_string(std::lround(std::max(all - poller_.now(), 0.0))) + " s left";
        }
        const std::string loops = panel.statLab1.substr(0, panel.statLab1.find(','));
        return std::to_string(static_cast<int>(percent)) + "%, " + loops + (left.empty() ? "" : ", ") + left;
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
        constexpr double whole = 100;
        if (!isStopped_ && poller_.panel().ProgressBar1.value < whole)
            tell(poller_.panel().statusBox);
        if (poller_.samples().isEmpty()) {
            tell("nothing was sampled");
        } else {
            write(line_.logPath, &Poller::saveLog);
            write(line_.exportPath, &Poller::exportLog);
        }
        poller_.unload();
    }

    void write(const std::string& path, void (Poller::*save)())
    {
        if (path.empty())
            return;
        file_.path = path;
        (poller_.*save)();
    }

    const CommandLine& line_;
    const Design& design_;
    CommandSession session_;
    SystemClock clock_;
    NamedFile file_;
    KeptRuns kept_{fromQt(userDataFolder()) + "/runs", dateText};
    QtTimer resetTimer_{session_.gate};
    QtTimer ticker_{session_.gate};
    QtTimer end_{session_.gate};
    std::unique_ptr<SerialPort> port_ = session_.makePort();
    Poller poller_{{.port = *port_,
                    .timer = resetTimer_,
                    .ticker = ticker_,
                    .clock = clock_,
                    .prompts = session_.prompts,
                    .dialogs = file_,
                    .values = session_.values,
                    .kept = kept_,
                    .dateText = dateText},
                   session_.connection(),
                   design_};
    bool hasBegun_ = false;
    bool isStopped_ = false; ///< by the user or the time that was set
    bool hasWarned_ = false;
};

void turnIntoTable(const std::string& logPath, const std::string& tablePath)
{
    DataLog log;
    readFile(logPath, [&](std::istream& stream) {
        try {
            log = readLog(stream);
        } catch (const FileError& error) {
            throw FileError("\"" + logPath + "\": " + error.what());
        }
    });
    replaceFile(tablePath, [&log](std::ostream& stream) {
        writeExport(stream, log.design, log.samples, log.firstStart, complain);
    });
}

} // namespace

int runPollCommand(const CommandLine& line)
{
    return telling([&line] {
        const Design design = loadDesignToPoll(line.designPath);
        for (const std::string& path : {line.logPath, line.exportPath}) {
            if (!path.empty()) // a long run is not to end in a file that can't be written
                requireWritable(path);
        }
        return PollRun(line, design).run();
    });
}

int runExportCommand(const CommandLine& line)
{
    return telling([&line] {
        turnIntoTable(line.logPath, line.exportPath);
        return exitStatus::success;
    });
}

} // namespace zint
