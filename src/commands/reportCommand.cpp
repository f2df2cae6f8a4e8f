#include "commands/reportCommand.h"

#include "commands/commandSession.h"
#include "commands/options.h"
#include "shared/textFile.h"
#include "vehicle/exchangeJson.h"
#include "vehicle/transcript.h"

#include <iterator>

namespace zint {

void ReportOptions::describe(CLI::App& command)
{
    addFile(command, "--replay", replayPath,
            "Read what an adapter has answered from a transcript: lines \"> 0902\" with the replies below "
            "them, and \"# protocol 6\".");
    command.add_flag("--json", json, "Print JSON.");
}

void ReportOptions::check() const
{
    if (replayPath.empty())
        throw UsageError("give --replay FILE");
}

int runReportCommand(const ReportOptions& options)
{
    std::string transcript;
    readFile(options.replayPath, [&transcript](std::istream& stream) {
        transcript.assign(std::istreambuf_iterator<char>(stream), {});
    });
    const std::vector<ExchangeReading> exchanges = replay(transcript);
    if (exchanges.empty())
        throw FileError("\"" + options.replayPath +
                        "\" is no transcript: it has no line such as \"> 0902\", which tells what was sent");
    return printOut(options.json ? exchangesJson(exchanges) : exchangesText(exchanges));
}

} // namespace zint
