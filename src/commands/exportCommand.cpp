#include "commands/exportCommand.h"

#include "commands/commandSession.h"
#include "commands/options.h"
#include "commands/ownDefinitions.h"
#include "samples/dataExport.h"
#include "samples/dataLogReader.h"
#include "shared/textFile.h"

namespace zint {

void ExportOptions::describe(CLI::App& command)
{
    addWord(command, "LOG.log", logPath, "The data log.");
    addWord(command, "OUT.txt|OUT.csv", tablePath, "The table that is written; as CSV if it ends in .csv.");
    addDecimals(command, decimals);
}

void ExportOptions::check() const
{
    requireDifferentFiles({logPath, tablePath});
    requireCsv(decimals, tablePath);
}

int runExportCommand(const ExportOptions& options)
{
    DataLog log = loadLog(options.logPath);
    defineOwn(log.design, options.logPath);
    replaceFile(options.tablePath, [&](std::ostream& stream) {
        if (isCsvPath(options.tablePath))
            writeCsv(stream, log.design, log.samples, options.decimals.value_or(Decimals::point), complain);
        else
            writeExport(stream, log.design, log.samples, log.firstStart, complain);
    });
    return exitStatus::success;
}

} // namespace zint
