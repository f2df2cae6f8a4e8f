#include "commands/reportCommand.h"

#include "commands/commandSession.h"
#include "commands/options.h"
#include "dtcdb/descriptionSource.h"
#include "platform/dateText.h"
#include "process/console.h"
#include "report/reportComparison.h"
#include "report/reportHeadline.h"
#include "report/reportJson.h"
#include "report/vehicleReport.h"
#include "shared/textFile.h"
#include "vehicle/exchangeJson.h"
#include "vehicle/transcript.h"

#include <QCoreApplication>

#include <optional>

namespace zint {
namespace {

constexpr int concern = 3; // the exit status for what --fail-on names

bool isConcern(const VehicleFacts& facts, ReportOptions::FailOn failOn)
{
    switch (failOn) {
    case ReportOptions::FailOn::codes:
        return codeCount(facts, CodeKind::stored) + codeCount(facts, CodeKind::pending) +
                   codeCount(facts, CodeKind::permanent) >
               0;
    case ReportOptions::FailOn::readiness:
        return monitorCounts(facts).incomplete > 0;
    case ReportOptions::FailOn::nothing:
        break;
    }
    return false;
}

/// The earlier report to compare with; nothing without one. @throws FileError
std::optional<VehicleFacts> earlierReport(const std::string& path)
{
    return path.empty() ? std::nullopt : std::optional(factsInJson(contentOf(path)));
}

std::optional<ReportComparison> comparisonWith(const std::optional<VehicleFacts>& earlier,
                                               const VehicleFacts& facts)
{
    return earlier ? std::optional(compare(*earlier, facts)) : std::nullopt;
}

/// The report and all that it needs.
class ReportRun {
public:
    explicit ReportRun(const ReportOptions& options)
        : options_(options), earlier_(earlierReport(options.comparePath)),
          session_(options.connection, options.timeout)
    {
        report_.onReply = [this] { session_.patience.begin(); };
        report_.onChanged = [this] { watch(); };
    }

    int run()
    {
        const Interruption interruption([this] { session_.gate.run([] { QCoreApplication::quit(); }); });
        session_.tellConnection();
        session_.gate.run([this] { begin(); });
        if (report_.isRunning())
            QCoreApplication::exec();
        showProgress({});
        session_.gate.run([this] { report_.unload(); });
        const int printed = report_.facts().units.empty() ? exitStatus::failure : print();
        if (!report_.failure().empty() && !session_.prompts.hasComplained)
            complain(report_.failure());
        if (!report_.failure().empty() || session_.prompts.hasComplained)
            return exitStatus::failure;
        return printed == exitStatus::success && isConcern(report_.facts(), options_.failOn) ? concern
                                                                                             : printed;
    }

private:
    void begin()
    {
        session_.patience.begin();
        report_.pressReadReport(options_.quick);
    }

    void watch()
    {
        if (!report_.isRunning())
            QCoreApplication::quit();
        else if (!options_.quiet)
            showProgress(std::to_string(static_cast<int>(report_.panel().ProgressBar1.value)) + "%, " +
                         report_.panel().statusBox);
    }

    int print()
    {
        const VehicleFacts& facts = report_.facts();
        const ReportHead head = headOf(facts, longDateText, report_.failure());
        const DtcDescriptionSource source(session_.values.parmDTCdb, session_.values.descriptionsFile);
        const auto descriptions = source.available() ? source.open() : nullptr;
        std::vector<ReportSection> sections = sectionsOf(facts, descriptions.get());
        const auto comparison = comparisonWith(earlier_, facts);
        if (comparison)
            sections.push_back(comparisonSection(*comparison, options_.comparePath));
        const int printed =
            printOut(options_.json ? reportJson(head, facts, {}, comparison) : reportText(head, sections));
        if (!options_.htmlPath.empty()) // which may fail; all else is done
            replaceFile(options_.htmlPath,
                        [&](std::ostream& stream) { stream << reportHtml(head, sections); });
        return printed;
    }

    const ReportOptions& options_;
    std::optional<VehicleFacts> earlier_;
    VehicleSession session_;
    VehicleReport report_{{.line = session_.line(), .clock = session_.clock, .prompts = session_.prompts}};
};

int replayFile(const ReportOptions& options)
{
    const std::string transcript = contentOf(options.replayPath);
    const std::vector<ExchangeReading> exchanges = replay(transcript);
    if (exchanges.empty())
        throw FileError("\"" + options.replayPath +
                        "\" is no transcript: it has no line such as \"> 0902\", which tells what was sent");
    const auto earlier = earlierReport(options.comparePath);
    VehicleFacts facts = factsOf(exchanges);
    facts.protocol = readTranscript(transcript).back().protocol;
    const auto comparison = comparisonWith(earlier, facts);
    if (!options.json)
        return printOut(
            exchangesText(exchanges) +
            (comparison ? "\n" + sectionText(comparisonSection(*comparison, options.comparePath)) : ""));
    const ReportHead head = headOf(facts, [](auto) { return std::string(); }, {});
    return printOut(reportJson(head, facts, exchanges, comparison));
}

ReportOptions::FailOn failOnIn(const std::string& name)
{
    if (name == "codes")
        return ReportOptions::FailOn::codes;
    if (name == "readiness")
        return ReportOptions::FailOn::readiness;
    throw UsageError("give codes or readiness");
}

} // namespace

void ReportOptions::describe(CLI::App& command)
{
    const char* const output = "Output";
    addConnection(command, connection);
    addTimeout(command, timeout,
               "Give up when a reply takes so many seconds (default 120; 0 waits for ever).");
    command.add_flag("--quick", quick, "Leave out live values, test results and vehicle information.");
    addFile(command, "--replay", replayPath,
            "Read what an adapter has answered from a transcript: lines \"> 0902\" with the replies below "
            "them, and \"# protocol 6\".");
    addChoices(command, output, json,
               {{"--text", false, "Print text (the default)."}, {"--json", true, "Print JSON."}});
    addFile(command, "--html", htmlPath, "Write a page for browsers and printers, too.")->group(output);
    addFile(command, "--compare", comparePath, "Tell what has changed since an earlier report in JSON.")
        ->group(output);
    addValue(command, "--fail-on", "codes|readiness",
             "End with status 3 when there are codes, or when monitors are not ready.",
             [this](const std::string& text) { failOn = failOnIn(text); })
        ->group(output);
    addQuiet(command, quiet);
}

int runReportCommand(const ReportOptions& options)
{
    return options.replayPath.empty() ? ReportRun(options).run() : replayFile(options);
}

} // namespace zint
