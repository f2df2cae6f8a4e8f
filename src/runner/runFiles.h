#pragma once

#include "catalogue/design.h"
#include "runner/keptRuns.h"
#include "runner/sampleStore.h"
#include "shared/askToSave.h"
#include "shared/prompts.h"

#include <chrono>
#include <functional>
#include <ostream>
#include <string>

namespace zint {

/// The files that a run is written to when the user asks for it: data log, export and debug dump; and the
/// way back for a run that was not saved.
///
/// Nothing here throws for a file that can't be written: the status line and a message tell it.
class RunFiles {
public:
    /// What it asks of its surroundings; all of it outlives this.
    struct Surroundings {
        Prompts& prompts;
        FileDialogs& dialogs;
        ProgramValues& values;
        std::function<std::string(std::chrono::system_clock::time_point)> dateText;
        std::function<void(const std::string&)> showStatus;
    };

    /// What is written.
    struct Run {
        const Design& design;
        const SampleStore& samples;
        std::chrono::system_clock::time_point firstStart;
    };

    enum class Name {
        usual, ///< the one that the user chose for this run; asks the first time
        asked,
    };

    explicit RunFiles(Surroundings surroundings) : around_(std::move(surroundings)) {}

    /// Another run begins: the first log and the first export of it ask for their names.
    void forgetNames() { isLogNamed_ = isExportNamed_ = false; }

    /// @return whether the log was written
    bool saveLog(const Run& run, Name name);
    void saveExport(const Run& run, Name name);
    void saveDebugDump(const Run& run); ///< always asks for a name

    /// Saves one of the kept runs, which the user chooses, as a log.
    void recover(const KeptRuns& kept);

private:
    using Write = std::function<void(std::ostream&, Progress&)>;

    /// Makes sure that a file has a name. @return whether it has
    bool nameFile(const FileKinds& kinds, RememberedFile file, bool& isNamed, Name name);
    Write logOf(const Run& run) const;
    bool write(const std::string& path, const std::string& what, const Write& content);

    Surroundings around_;
    bool isLogNamed_ = false; ///< by the user, for the present run
    bool isExportNamed_ = false;
};

} // namespace zint
