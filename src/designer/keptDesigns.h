#pragma once

#include "catalogue/design.h"
#include "shared/clock.h"
#include "shared/fileLock.h"
#include "shared/keptFiles.h"

#include <chrono>
#include <string>
#include <vector>

namespace zint {

/// The user's unsaved designs, so that none is lost: the one that is being edited, which is locked against
/// other running programs, and those that were left. A draft is a design with all rows of the grid as its
/// events: polled or not, and of any number.
class KeptDesigns {
public:
    /// @param userDataFolder gets a folder for them when it is needed. @param dateText writes a time as the
    /// user reads it
    KeptDesigns(const std::string& userDataFolder, DateText dateText);

    /// Keeps the design that is being edited, in place of what was kept of it before.
    /// @throws FileError when that can't be written
    void keep(const Design& draft);

    /// Forgets the design that is being edited: it was saved, or there is nothing to lose.
    void forget();

    /// What is kept of the design that was being edited stays; the next keep() is about another one.
    void leave();

    /// What can be brought back, the newest first, with what tells it from the design that is shown; none
    /// that is being edited, here or by another program, and nothing that can't be read.
    std::vector<KeptEntry> list(const Design& shown) const;

    /// Brings one back: from now on it is the one that is being edited.
    /// @throws FileError when the file can't be opened or another program is editing it; what readDesign()
    /// throws
    Design bringBack(const KeptEntry& entry);

    /// Goes on with the newest one if it is this very design. @return whether it is
    bool resume(const Design& draft);

private:
    KeptFiles files_;
    DateText dateText_;
    FileLock lock_;      ///< of `edited_`
    std::string edited_; ///< the file of the design that is being edited; empty when nothing is kept of it
};

} // namespace zint
