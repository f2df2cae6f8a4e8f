#include "runner/runFiles.h"

#include "runner/dataLog.h"
#include "shared/module1.h"
#include "shared/textFile.h"

#include <vector>

namespace zint {
namespace {

const FileKinds logKinds{.extension = "log",
                         .filter = "Zint log files (*.log)|*.log|" + textFileKinds.filter};
constexpr RememberedFile logFile{&ProgramValues::parmLog, &ProgramValues::parmLogFile};
constexpr RememberedFile exportFile{&ProgramValues::parmExport, &ProgramValues::parmExportFile};

} // namespace

bool RunFiles::saveLog(const Run& run, Name name)
{
    return nameFile(logKinds, logFile, isLogNamed_, name) && write(around_.values.parmLog, "log", logOf(run));
}

void RunFiles::saveExport(const Run& run, Name name)
{
    if (!nameFile(textFileKinds, exportFile, isExportNamed_, name))
        return;
    const auto complain = [this](const std::string& text) { around_.prompts.message(text); };
    write(around_.values.parmExport, "export", [&](std::ostream& stream, Progress& progress) {
        writeExport(stream, run.design, run.samples, around_.dateText(run.firstStart), complain, progress);
    });
}

void RunFiles::saveDebugDump(const Run& run)
{
    const std::string path = askToSave(around_.dialogs, around_.values, textFileKinds);
    if (path.empty())
        return;
    write(path, "export", [&run](std::ostream& stream, Progress& progress) {
        writeDebugDump(stream, run.samples, progress);
    });
}

void RunFiles::recover(const KeptRuns& kept)
{
    std::vector<KeptEntry> entries;
    const auto look = [&](Progress& progress) { entries = kept.list(progress); };
    if (!around_.prompts.runLong("Looking for unsaved runs", look))
        return;
    const auto chosen = chooseToRecover(around_.prompts, entries, "run");
    if (!chosen)
        return;
    KeptRun run;
    const auto load = [&](Progress& progress) { run = KeptRuns::load(*chosen, progress); };
    if (!around_.prompts.runLong("Reading the unsaved run", load))
        return;
    const std::string path = askToSave(around_.dialogs, around_.values, logKinds);
    if (!path.empty() && write(path, "log", logOf({run.design, run.samples, run.firstStart})))
        KeptRuns::remove(*chosen);
}

bool RunFiles::nameFile(const FileKinds& kinds, RememberedFile file, bool& isNamed, Name name)
{
    if (isNamed && name == Name::usual)
        return true;
    if (!askToSave(around_.dialogs, around_.values, kinds, file))
        return false;
    isNamed = true;
    return true;
}

RunFiles::Write RunFiles::logOf(const Run& run) const
{
    return [this, run](std::ostream& stream, Progress& progress) {
        writeLog(stream, run.design, run.samples, around_.dateText(run.firstStart), progress);
    };
}

/// @param what "log" or "export", for the status. @return whether it was written
bool RunFiles::write(const std::string& path, const std::string& what, const Write& content)
{
    const std::string name = fileNamePart(path);
    try {
        const bool isWritten = around_.prompts.runLong("Saving " + name, [&](Progress& progress) {
            replaceFile(path, [&](std::ostream& stream) { content(stream, progress); });
        });
        around_.showStatus(isWritten ? name + " " + what + " saved"
                                     : "Saving " + what + " to " + name + " was stopped");
        return isWritten;
    } catch (const FileError& error) {
        around_.showStatus("Error Saving " + what + " to " + name);
        around_.prompts.message(error.what());
        return false;
    }
}

} // namespace zint
