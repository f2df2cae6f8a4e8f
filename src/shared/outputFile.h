#pragma once

#include "shared/fileDialogs.h"
#include "shared/programValues.h"

#include <string>

namespace zint {

/// The text file to which the terminal and the scanner save what their output boxes show. Both use the same
/// one, and it is remembered.
class OutputFile {
public:
    enum class Way { replace, append }; ///< what becomes of a file that exists
    enum class Name { usual, asked };   ///< the remembered name, if any, or a new one

    struct Target {
        std::string path; ///< empty when the user cancelled
        Way way = Way::replace;
        bool isChosen = false; ///< just now, by the user
    };

    /// Both outlive this.
    OutputFile(FileDialogs& dialogs, ProgramValues& values) : dialogs_(dialogs), values_(values) {}

    /// Finds out where to write; asks for a name if there is none. Nothing changes yet.
    Target choose(Way way, Name name) const;

    /// Writes the text and a line end, and remembers the name. @return what the status shall say
    /// @throws FileError when the file can't be written; it is then as it was, and so are its name and the
    /// dialogs' folder
    std::string write(const Target& target, const std::string& text);

private:
    FileDialogs& dialogs_;
    ProgramValues& values_;
};

} // namespace zint
