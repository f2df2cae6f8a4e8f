#pragma once

#include "shared/askToSave.h"

#include <string>

namespace zint {

/// The text file to which the terminal and the scanner save what their output boxes show. Both use the same
/// one, and it is remembered.
///
/// Each operation returns what the status shall say, or nothing when the user cancelled; then nothing has
/// changed. All throw FileError when the file can't be written; it is then as it was.
class OutputFile {
public:
    /// Both outlive this.
    OutputFile(FileDialogs& dialogs, ProgramValues& values) : dialogs_(dialogs), values_(values) {}

    std::string save(const std::string& text); ///< asks for a name when there is none
    std::string saveAs(const std::string& text);
    std::string append(const std::string& text); ///< asks for a name when there is none
    std::string appendAs(const std::string& text);

private:
    bool ask();
    std::string write(const std::string& text);
    std::string add(const std::string& text);
    std::string savedText() const;

    FileDialogs& dialogs_;
    ProgramValues& values_;
};

} // namespace zint
