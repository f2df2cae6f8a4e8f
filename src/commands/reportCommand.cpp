#include "commands/reportCommand.h"

#include "commands/commandSession.h"
#include "commands/options.h"
#include "dtcdb/descriptionSource.h"
#include "platform/dateText.h"
#include "process/console.h"
#include "report/reportComparison.h"
#include "report/reportHeadline.h"
#include "report/reportJson.h"
#include "report/requestOutcomes.h"
#include "report/vehicleReport.h"
#include "shared/textFile.h"
#include "vehicle/exchangeJson.h"
#include "vehicle/transcript.h"

#include <QCoreApplication>

#include <algorithm>
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

/// Whether nobody knows what `failOn` names, for a control unit owes its answer.
bool isUnknown(const VehicleFacts& facts, ReportOptions::FailOn failOn)
{
    using Kind = RequestOutcome::Kind;
    const auto isOwed = [failOn](const RequestOutcome& outcome) {
        const std::string& request = outcome.request;
        const bool isAsked = failOn == ReportOptions::FailOn::codes
                                 ? request == "03" || request == "07" || request == "0A"
                                 : request == "0101";
        return isAsked && (outcome.kind == Kind::noAnswer || outcome.kind == Kind::damaged ||
                           outcome.kind == Kind::busy);
    };
    return failOn != ReportOptions::FailOn::nothing && std::ranges::any_of(requestOutcomes(facts), isOwed);
}

/// The exit status of a report that is printed.
int statusOf(const VehicleFacts& facts, ReportOptions::FailOn failOn)
{
    if (isConcern(facts, failOn))
        return concern;
    if (!isUnknown(facts, failOn))
        return exitStatus::success;
    complain("not all control units have told what --fail-on asks for");
    return exitStatus::failure;
}

/// The earlier report to compare with; nothing without one. @throws FileError
std::optional<VehicleFacts> earlierReport(const std::string& path)
{
    return path.empty() ? std::nullopt : std::optional(factsInJson(contentOf(path), path));
}

/// A report as it is printed and written.
struct Output {
    ReportHead head;
    std::optional<ReportComparison> comparison;
    std::vector<ReportSection> sections; ///< the first is the comparison, if there is one
};

Output outputOf(const ReportHead& head, const VehicleFacts& facts, const std::optional<VehicleFacts>& earlier,
                const ReportOptions& options, const ProgramValues& values)
{
    const DtcDescriptionSource source(values.parmDTCdb, values.descriptionsFile);
    const auto descriptions = source.available() ? source.open() : nullptr;
    Output output{.head = head, .comparison = {}, .sections = sectionsOf(facts, descriptions.get())};
    if (earlier) {
        output.comparison = compare(*earlier, facts);
        output.sections.insert(output.sections.begin(),
                               comparisonSection(*output.comparison, "\"" + options.comparePath + "\""));
    }
    return output;
}

/// Writes the page, if one is wanted. @throws FileError
void writePage(const std::string& path, const Output& output)
{
    if (!path.empty())
        replaceFile(path, [&](std::ostream& stream) { stream << reportHtml(output.head, output.sections); });
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
        return printed == exitStatus::success ? statusOf(report_.facts(), options_.failOn) : printed;
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
        const Output output = outputOf(headOf(facts, longDateText, report_.failure()), facts, earlier_,
                                       options_, session_.values);
        const int printed = printOut(options_.json ? reportJson(output.head, facts, {}, output.comparison)
                                                   : reportText(output.head, output.sections));
        writePage(options_.htmlPath, output); // which may fail; all else is done
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
    const CommandSession session(options.connection);
    const Output output = outputOf(headOf(facts, [](auto) { return std::string(); }, {}), facts, earlier,
                                   options, session.values);
    const std::string compared = earlier ? "\n" + sectionText(output.sections.front()) : "";
    const int printed = printOut(options.json ? reportJson(output.head, facts, exchanges, output.comparison)
                                              : exchangesText(exchanges) + compared);
    writePage(options.htmlPath, output);
    return printed == exitStatus::success ? statusOf(facts, options.failOn) : printed;
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

void ReportOptions::check() const
{
    requireDifferentFiles({htmlPath, comparePath, replayPath, connection.transcriptPath});
}

int runReportCommand(const ReportOptions& options)
{
    return options.replayPath.empty() ? ReportRun(options).run() : replayFile(options);
}

} // namespace zint
