#pragma once

#include <string>

namespace zint {

/// What a file dialog offers.
struct FileKinds {
    std::string extension; ///< added to a name that has none: "obc"
    std::string filter;    ///< pairs of name and pattern, all separated by "|"
};

/// What any tool can write, and what a tool with files of its own offers besides.
inline const FileKinds textFileKinds{.extension = "txt",
                                     .filter = "Text files (*.txt)|*.txt|All files (*.*)|*.*"};

/// How a tool lets its user choose files. All paths are UTF-8; an empty one means that the user cancelled.
class FileDialogs {
public:
    virtual ~FileDialogs() = default;

    virtual std::string chooseToOpen(const FileKinds& kinds, const std::string& folder) = 0;

    /// A file that exists or, where the dialogs can, a new one.
    virtual std::string chooseAny(const FileKinds& kinds, const std::string& folder)
    {
        return chooseToOpen(kinds, folder);
    }

    /// Asks before an existing file is chosen. @param proposed a file name, may be empty
    virtual std::string chooseToSave(const FileKinds& kinds, const std::string& folder,
                                     const std::string& proposed) = 0;

    /// A file to whose end text is added, or a new one. Dialogs that can do so don't ask whether to replace
    /// it.
    virtual std::string chooseToAppend(const FileKinds& kinds, const std::string& folder,
                                       const std::string& proposed)
    {
        return chooseToSave(kinds, folder, proposed);
    }
};

} // namespace zint
