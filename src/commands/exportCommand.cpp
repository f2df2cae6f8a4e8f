#include "commands/exportCommand.h"

#include "commands/commandSession.h"
#include "commands/options.h"
#include "runner/dataExport.h"
#include "runner/dataLogReader.h"
#include "shared/fileError.h"
#include "shared/textFile.h"

namespace zint {
namespace {

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

void ExportOptions::describe(CLI::App& command)
{
    addWord(command, "LOG.log", logPath, "The data log.");
    addWord(command, "OUT.txt", tablePath, "The table that is written.");
}

void ExportOptions::check() const { requireDifferentFiles({logPath, tablePath}); }

int runExportCommand(const ExportOptions& options)
{
    return telling([&options] {
        turnIntoTable(options.logPath, options.tablePath);
        return exitStatus::success;
    });
}

} // namespace zint
