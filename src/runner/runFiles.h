#pragma once

#include "catalogue/design.h"
#include "runner/keptRuns.h"
#include "samples/csvExport.h"
#include "samples/dataLogReader.h"
#include "samples/sampleStore.h"
#include "shared/clock.h"
#include "shared/fileDialogs.h"
#include "shared/programValues.h"
#include "shared/prompts.h"

#include <array>
#include <functional>
#include <optional>
#include <ostream>
#include <string>

namespace zint {

/// A run out of a file.
struct OpenedRun {
    std::string file; ///< its name
    DataLog log;
};

/// The files that a run is written to when the user asks for it: data log, export and debug dump; and the
/// way back from a log, and for a run that was not saved.
///
/// Asking and writing are two steps: a run that is on brings samples while a dialog is open, and none while
/// it is written. Nothing here throws for a file that can't be written.
class RunFiles {
public:
    /// What it asks of its surroundings; all of it outlives this.
    struct Surroundings {
        Prompts& prompts;
        ProgramValues& values;
        KeptRuns& kept;
        DateText dateText;
        std::function<void(const std::string&)> showStatus;
        /// Gives the events of a log their own parameters.
        std::function<void(Design& design, const std::string& path)> define = [](Design&,
                                                                                 const std::string&) {};
        /// Gets the path of each log that was written or read.
        std::function<void(const std::string&)> noteLog = [](const std::string& /*path*/) {};
    };

    /// What is written.
    struct Run {
        const Design& design;
        const SampleStore& samples;
        std::string firstStart; ///< date and time text
    };

    enum class Kind { log, table, dump };

    enum class Name {
        usual, ///< the one that the user chose for this run; asks the first time, and always for a dump
        asked,
    };

    explicit RunFiles(Surroundings surroundings) : around_(std::move(surroundings)) {}

    /// How exports are written that are CSV files.
    void useDecimals(Decimals decimals) { decimals_ = decimals; }

    /// Another run takes the place of this one: its first log and its first export ask for their names.
    /// @return what to say of one that was not saved
    std::string leave(const Run& run);

    /// Whether a run would be lost by leave(): it is neither saved nor kept.
    bool wouldLose(const SampleStore& samples) const;

    /// The path of the file to write; empty when the user cancels. Changes nothing.
    std::string choose(Kind kind, Name name, FileDialogs& dialogs) const;

    /// Writes a run, shows the outcome as status and remembers the name. A log's name is remembered even when
    /// it could not be written, so that the next save tries it again.
    /// @return why it could not be written, for the user; else empty
    std::string save(const Run& run, Kind kind, const std::string& path);

    /// The path of a log to open; empty when the user cancels.
    std::string chooseLog(FileDialogs& dialogs) const;

    /// Reads a log; tells the user when that can't be done. Changes nothing of the present run.
    /// @return nothing for what is no log, can't be read, holds no samples or was stopped
    std::optional<OpenedRun> open(const std::string& path);

    /// The present run is one out of a file, and another one than before: its first log asks for a name, and
    /// that of this file is proposed.
    void enter(const std::string& file);

    /// Saves one of the kept runs, which the user chooses, as a log. @return the run, once it is saved
    std::optional<OpenedRun> recover(FileDialogs& dialogs);

private:
    static constexpr std::size_t kinds = 3;

    struct Result {
        bool isWritten = false;
        std::string failure; ///< why not; also empty when the user stopped it
    };

    void remember(Kind kind, const std::string& path);
    void define(Design& design, const std::string& path) const;
    Result write(const Run& run, Kind kind, const std::string& path) const;

    Surroundings around_;
    Decimals decimals_ = Decimals::point;
    std::array<bool, kinds> isNamed_{}; ///< by the user, for the present run
    std::string openedName_;            ///< of the present run's file; empty unless it was opened
};

} // namespace zint
