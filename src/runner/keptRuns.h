#pragma once

#include "catalogue/design.h"
#include "samples/sampleStore.h"
#include "shared/clock.h"
#include "shared/fileLock.h"
#include "shared/keptFiles.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

namespace zint {

/// A run that can be recovered.
struct KeptRun {
    Design design;
    std::chrono::system_clock::time_point firstStart;
    SampleStore samples;
};

/// The user's unsaved runs, so that no sample is lost: the present one and the last ten others, of at most
/// 1 GB together. Each sample of the present run is appended to its file as it comes. The others were reset,
/// left, or cut off by a crash.
///
/// The last line of a file is "left" when its run was properly left. It is "told" when the run was cut off
/// and the user was told of it. A program holds the lock of the file that it writes, so that no other program
/// takes the run for one of a crash. The present run never throws for what can't be written: failure() tells
/// of it.
class KeptRuns {
public:
    /// @param userDataFolder gets a folder for them when it is needed. @param dateText writes a time as the
    /// user reads it
    /// @param mostBytes that are kept together; the newest run stays whatever its size
    KeptRuns(const std::string& userDataFolder, DateText dateText, std::uintmax_t mostBytes = 1'000'000'000);

    /// Makes sure that the present run is kept from here on: goes on with its file, or begins one with what
    /// the store holds already. A file comes into being with its first sample. After a failure it begins
    /// anew, in place of what the failed file holds.
    void begin(const Design& design, const SampleStore& samples,
               std::chrono::system_clock::time_point firstStart);

    /// Why the present run is no longer kept, such as for a full disk; its file stays as it is. Empty until
    /// something fails, and again from the next begin() or leave() on.
    const std::string& failure() const { return failure_; }

    /// Appends a sample; does nothing unless a run is being kept. @param event from 0
    void add(std::size_t event, double value, SampleTime time);

    /// Hands what was added to the system; call it about once a second.
    void flush();

    /// The user has saved a log of all samples that the run has by now.
    void setSaved() { isSaved_ = true; }
    bool isSaved() const { return isSaved_; } ///< nothing was added since setSaved()

    /// No samples come for a while: hands over what was added, or removes the file when all of it is saved.
    void pause();

    /// Ends the present run. Its file stays unless all of it is saved; then what is too old or too much is
    /// removed, runs that were cut off later than others. Call it before the store is emptied, even after a
    /// failure.
    void leave();

    /// Whether a run was cut off by a crash since this was last asked. Never throws.
    bool takeCutOff();

    /// What can be recovered, the newest first; no run that is on, and nothing that can't be read or has no
    /// sample.
    /// Counting the samples of a GB takes seconds. @throws WorkStopped
    std::vector<KeptEntry> list(Progress& progress = unwatched) const;

    /// Reads a run, up to the first damage if there is one. @throws FileError when the file can't be opened
    /// or its design or start can't be read; WorkStopped
    static KeptRun load(const KeptEntry& entry, Progress& progress = unwatched);

    /// Removes one that has been saved as a log.
    static void remove(const KeptEntry& entry);

private:
    void prune() const;
    void close();
    void forget();

    KeptFiles files_;
    DateText dateText_;
    bool keeping_ = false; ///< begin() was called, and nothing has failed or ended since
    bool isSaved_ = false;
    std::string path_;     ///< of the present run's file, also after a failure; empty when there is none
    std::string head_;     ///< what it begins with
    FileLock lock_;        ///< of that file, from the first flush() with samples on
    std::ofstream stream_; ///< open from then on
    std::string waiting_;  ///< lines of samples that are to be written
    std::string failure_;
};

} // namespace zint
