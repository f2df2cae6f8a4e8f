#include "runner/runFiles.h"

#include "samples/dataExport.h"
#include "samples/dataLog.h"
#include "samples/debugDump.h"
#include "shared/module1.h"
#include "shared/textFile.h"

#include <optional>
#include <vector>

namespace zint {
namespace {

struct KindFacts {
    const char* word;   ///< for the status of one that is written
    const char* failed; ///< and of one that can't be
    FileKinds files;
    std::string ProgramValues::*path; ///< null for what has no name of its own
    std::string ProgramValues::*name;
};

const KindFacts& factsOf(RunFiles::Kind kind)
{
    static const std::array<KindFacts, 3> facts{{
        {"log",
         "log",
         {.extension = "log", .filter = "Zint log files (*.log)|*.log|" + textFileKinds.filter},
         &ProgramValues::parmLog,
         &ProgramValues::parmLogFile},
        {"export",
         "export",
         {.extension = "txt", .filter = textFileKinds.filter + "|CSV files (*.csv)|*.csv"},
         &ProgramValues::parmExport,
         &ProgramValues::parmExportFile},
        {"debug data", "export", textFileKinds, nullptr, nullptr},
    }};
    return facts.at(static_cast<std::size_t>(kind));
}

} // namespace

std::string RunFiles::choose(Kind kind, Name name, FileDialogs& dialogs) const
{
    const KindFacts& facts = factsOf(kind);
    if (name == Name::usual && isNamed_.at(static_cast<std::size_t>(kind)))
        return around_.values.*facts.path;
    const std::string proposed = facts.name != nullptr ? around_.values.*facts.name : std::string();
    return dialogs.chooseToSave(facts.files, around_.values.parmInitDir, proposed);
}

std::string RunFiles::leave(const Run& run)
{
    KeptRuns& kept = around_.kept;
    isNamed_ = {};
    kept.flush();
    const bool isUnsaved = !run.samples.isEmpty() && !kept.isSaved();
    const bool isKept = kept.failure().empty();
    kept.leave();
    if (!isUnsaved)
        return {};
    return isKept ? " The unsaved run is under Recover Unsaved Run..."
                  : " The unsaved run could not be kept.";
}

std::string RunFiles::save(const Run& run, Kind kind, const std::string& path)
{
    const Result result = write(run, kind, path);
    if (result.isWritten || kind == Kind::log)
        remember(kind, path);
    if (result.isWritten && kind == Kind::log)
        around_.kept.setSaved();
    return result.failure;
}

void RunFiles::remember(Kind kind, const std::string& path)
{
    const KindFacts& facts = factsOf(kind);
    around_.values.rememberFolderOf(path);
    if (facts.path == nullptr)
        return;
    around_.values.*facts.path = path;
    around_.values.*facts.name = fileNamePart(path);
    isNamed_.at(static_cast<std::size_t>(kind)) = true;
}

void RunFiles::recover(FileDialogs& dialogs)
{
    std::vector<KeptEntry> entries;
    const auto look = [&](Progress& progress) { entries = around_.kept.list(progress); };
    if (!around_.prompts.runLong("Looking for unsaved runs", look))
        return;
    const auto chosen = chooseToRecover(around_.prompts, entries, "run");
    if (!chosen)
        return;
    KeptRun run;
    const auto load = [&](Progress& progress) { run = KeptRuns::load(*chosen, progress); };
    if (!around_.prompts.runLong("Reading the unsaved run", load))
        return;
    const std::string path = dialogs.chooseToSave(factsOf(Kind::log).files, around_.values.parmInitDir, {});
    if (path.empty())
        return;
    const Result result = write({run.design, run.samples, run.firstStart}, Kind::log, path);
    if (result.isWritten) {
        around_.values.rememberFolderOf(path);
        KeptRuns::remove(*chosen);
    } else if (!result.failure.empty()) {
        around_.prompts.message(result.failure);
    }
}

RunFiles::Result RunFiles::write(const Run& run, Kind kind, const std::string& path) const
{
    const KindFacts& facts = factsOf(kind);
    const std::string name = fileNamePart(path);
    const auto content = [&](std::ostream& stream, Progress& progress) {
        const std::string start = around_.dateText(run.firstStart);
        const auto tell = [this](const std::string& text) { around_.prompts.message(text); };
        if (kind == Kind::log)
            writeLog(stream, run.design, run.samples, start, progress);
        else if (kind == Kind::dump)
            writeDebugDump(stream, run.samples, progress);
        else if (isCsvPath(path))
            writeCsv(stream, run.design, run.samples, decimals_, tell, progress);
        else
            writeExport(stream, run.design, run.samples, start, tell, progress);
    };
    try {
        const bool isWritten = around_.prompts.runLong("Saving " + name, [&](Progress& progress) {
            replaceFile(path, [&](std::ostream& stream) { content(stream, progress); });
        });
        around_.showStatus(isWritten ? name + " " + facts.word + " saved"
                                     : std::string("Saving ") + facts.word + " to " + name + " was stopped");
        return {.isWritten = isWritten};
    } catch (const FileError& error) {
        around_.showStatus(std::string("Error Saving ") + facts.failed + " to " + name);
        return {.failure = error.what()};
    }
}

} // namespace zint
