#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

namespace zint {

/// A folder of files that keep what the user has not saved, until there are newer ones. Paths are UTF-8.
class KeptFiles {
public:
    struct File {
        std::string path;
        std::chrono::system_clock::time_point changed;
    };

    /// @param folder is made when the first file is. @param extension of the files, with its dot
    /// @param most how many are kept
    KeptFiles(std::string folder, std::string extension, std::size_t most);

    /// The files, at most `most`, the newest first. A folder that can't be read has none.
    std::vector<File> newestFirst() const;

    /// A name for another file. @throws FileError when the folder can't be made
    std::string newPath() const;

    /// Removes the oldest files until no more than `most` are left. What can't be removed stays.
    void prune() const;

private:
    std::vector<File> all() const;

    std::string folder_;
    std::string extension_;
    std::size_t most_;
};

} // namespace zint
