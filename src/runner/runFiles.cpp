#include "runner/runFiles.h"

#include "samples/dataExport.h"
#include "samples/dataLog.h"
#include "samples/debugDump.h"
#include "shared/module1.h"
#include "shared/textFile.h"

#include <new>
#include <optional>
#include <utility>
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
    std::string proposed = facts.name != nullptr ? around_.values.*facts.name : std::string();
    if (kind == Kind::log && !openedName_.empty())
        proposed = openedName_;
    return dialogs.chooseToSave(facts.files, around_.values.parmInitDir, proposed);
}

std::string RunFiles::leave(const Run& run)
{
    KeptRuns& kept = around_.kept;
    isNamed_ = {};
    openedName_.clear();
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
    if (result.isWritten && kind == Kind::log) {
        around_.kept.setSaved();
        around_.noteLog(path);
    }
    return result.failure;
}

bool RunFiles::wouldLose(const SampleStore& samples) const
{
    const KeptRuns& kept = around_.kept;
    return !samples.isEmpty() && !kept.isSaved() && !kept.failure().empty();
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

std::string RunFiles::chooseLog(FileDialogs& dialogs) const
{
    return dialogs.chooseToOpen(factsOf(Kind::log).files, around_.values.parmInitDir);
}

std::optional<OpenedRun> RunFiles::open(const std::string& path)
{
    OpenedRun run{.file = fileNamePart(path), .log = {}};
    try {
        if (!around_.prompts.runLong("Reading " + run.file,
                                     [&](Progress& progress) { run.log = loadLog(path, progress); })) {
            around_.showStatus("Reading " + run.file + " was stopped");
            return std::nullopt;
        }
        if (run.log.samples.isEmpty())
            throw FileError("\"" + path + "\" holds no samples, so there is nothing to show.");
        define(run.log.design, path);
    } catch (const FileError& error) {
        around_.prompts.message(error.what());
        return std::nullopt;
    } catch (const std::bad_alloc&) {
        around_.prompts.message("There is not enough memory for all samples of \"" + path + "\".");
        return std::nullopt;
    }
    around_.values.rememberFolderOf(path);
    around_.noteLog(path);
    return run;
}

/// A table of own parameters that can't be read is no reason to show nothing.
void RunFiles::define(Design& design, const std::string& path) const
{
    try {
        around_.define(design, path);
    } catch (const FileError& error) {
        around_.prompts.message(error.what());
    }
}

void RunFiles::enter(const std::string& file)
{
    openedName_ = file;
    around_.kept.setSaved(); // the file has it
}

std::optional<OpenedRun> RunFiles::recover(FileDialogs& dialogs)
{
    std::vector<KeptEntry> entries;
    const auto look = [&](Progress& progress) { entries = around_.kept.list(progress); };
    if (!around_.prompts.runLong("Looking for unsaved runs", look))
        return std::nullopt;
    const auto chosen = chooseToRecover(around_.prompts, entries, "run");
    if (!chosen)
        return std::nullopt;
    KeptRun run;
    const auto load = [&](Progress& progress) { run = KeptRuns::load(*chosen, progress); };
    if (!around_.prompts.runLong("Reading the unsaved run", load))
        return std::nullopt;
    const std::string path = dialogs.chooseToSave(factsOf(Kind::log).files, around_.values.parmInitDir, {});
    if (path.empty())
        return std::nullopt;
    define(run.design, path);
    OpenedRun opened{
        .file = fileNamePart(path),
        .log = {std::move(run.design), around_.dateText(run.firstStart), std::move(run.samples)}};
    const Result result =
        write({opened.log.design, opened.log.samples, opened.log.firstStart}, Kind::log, path);
    if (result.isWritten) {
        around_.values.rememberFolderOf(path);
        around_.noteLog(path);
        KeptRuns::remove(*chosen);
        return opened;
    }
    if (!result.failure.empty())
        around_.prompts.message(result.failure);
    return std::nullopt;
}

RunFiles::Result RunFiles::write(const Run& run, Kind kind, const std::string& path) const
{
    const KindFacts& facts = factsOf(kind);
    const std::string name = fileNamePart(path);
    const auto content = [&](std::ostream& stream, Progress& progress) {
        const auto tell = [this](const std::string& text) { around_.prompts.message(text); };
        if (kind == Kind::log)
            writeLog(stream, run.design, run.samples, run.firstStart, progress);
        else if (kind == Kind::dump)
            writeDebugDump(stream, run.samples, progress);
        else if (isCsvPath(path))
            writeCsv(stream, run.design, run.samples, decimals_, tell, progress);
        else
            writeExport(stream, run.design, run.samples, run.firstStart, tell, progress);
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
