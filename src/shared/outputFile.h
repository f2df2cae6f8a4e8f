#pragma once

#include "shared/fileDialogs.h"
#include "shared/programValues.h"

#include <string>

namespace zint {

/// The text file to which the terminal and the scanner save what their output boxes show. Both use the same
/// one, and it is remembered.
///
/// Each operation returns what the status shall say, or nothing when the user cancelled; then nothing has
/// changed. All throw FileError when the file can't be written; it is then as it was, and so are its name and
/// the dialogs' folder.
class OutputFile {
public:
    /// Both outlive this.
    OutputFile(FileDialogs& dialogs, ProgramValues& values) : dialogs_(dialogs), values_(values) {}

    std::string save(const std::string& text); ///< asks for a name when there is none
    std::string saveAs(const std::string& text);
    std::string append(const std::string& text); ///< asks for a name when there is none
    std::string appendAs(const std::string& text);

private:
    /// What becomes of a file that exists.
    struct Way {
        std::string (FileDialogs::*choose)(const FileKinds&, const std::string&, const std::string&);
        void (*write)(const std::string& path, const std::string& text);
    };
    static const Way replacing;
    static const Way appending;

    std::string write(const std::string& text, const Way& way, bool asking);

    FileDialogs& dialogs_;
    ProgramValues& values_;
};

} // namespace zint
