#pragma once

#include "shared/prompts.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace zint {

/// A kept file that can be brought back.
struct KeptEntry {
    std::string path;
    std::string text;        ///< date, title and size, for the user
    std::uintmax_t size = 0; ///< in bytes, when it was looked at
};

/// Lets the user choose what to bring back. @param what it is, in small letters: "design"
/// @return nothing when there is nothing or the user cancels
std::optional<KeptEntry> chooseToRecover(Prompts& prompts, const std::vector<KeptEntry>& entries,
                                         const std::string& what);

/// Where a tool keeps its user's work: a folder in the user's data folder, and how many files of which
/// extension are kept there.
struct KeptKind {
    const char* folder;
    const char* extension;
    std::size_t most;
};

namespace keptKinds {
inline constexpr KeptKind designs{.folder = "/designs", .extension = ".obc", .most = 10};
inline constexpr KeptKind runs{.folder = "/runs", .extension = ".run", .most = 10};
} // namespace keptKinds

/// A folder of files that keep what the user has not saved, until there are newer ones. Paths are UTF-8.
///
/// A file that a running program goes on writing is locked by it (FileLock). It is none of those that are
/// listed, counted or removed here.
class KeptFiles {
public:
    struct File {
        std::string path;
        std::chrono::system_clock::time_point changed;
        std::uintmax_t size = 0; ///< in bytes
    };

    static constexpr std::uintmax_t anySize = std::numeric_limits<std::uintmax_t>::max();

    /// @param userDataFolder gets the folder of the kind when the first file is made
    /// @param mostBytes that the files may have together
    KeptFiles(const std::string& userDataFolder, const KeptKind& kind, std::uintmax_t mostBytes = anySize);

    /// The files, at most `most`, the newest first. A folder that can't be read has none.
    std::vector<File> newestFirst() const;

    /// The path of another file. @param name without the extension; a number is added where it is taken
    /// @throws FileError when the folder can't be made
    std::string newPath(const std::string& name) const;

    /// A name of no meaning. @throws as above
    std::string newPath() const;

    /// Removes the oldest files until no more than `most` are left and they have no more than `mostBytes`;
    /// the newest stays whatever its size. What can't be removed stays.
    /// @param lasts whether a file goes after all those that don't last; asked from the second newest on
    void prune(const std::function<bool(const File&)>& lasts = [](const File&) { return false; }) const;

private:
    std::vector<File> all() const; ///< the newest first

    std::string folder_;
    std::string extension_;
    std::size_t most_;
    std::uintmax_t mostBytes_;
};

} // namespace zint
