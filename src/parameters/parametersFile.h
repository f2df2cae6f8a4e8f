#pragma once

#include "parameters/designParameters.h"
#include "parameters/ownParameters.h"

#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace zint {

/// The table as JSON, with two blanks for each level and a line feed at the end.
std::string parametersJson(const OwnParameters& table);

/// The table that a text holds. @throws FileError for what is no such table, with the line or the parameter
OwnParameters readParametersJson(std::string_view text);

/// The user's own parameters: one file that all windows, commands and running programs share.
class ParametersFile {
public:
    /// @param userDataFolder is made when the first parameter is saved
    explicit ParametersFile(const std::string& userDataFolder) : path_(userDataFolder + "/parameters.json") {}

    /// Another file of the same form.
    static ParametersFile at(std::string path)
    {
        ParametersFile file("");
        file.path_ = std::move(path);
        return file;
    }

    const std::string& path() const { return path_; }

    /// The parameters; none where there is no file. @throws FileError for a file that can't be read, or is
    /// none of this kind
    OwnParameters load() const;

    /// Reads the file, changes the table and writes it, while no other program does; what others have saved
    /// before stays. Nothing is written when `change` throws or leaves the table as it was.
    /// @return the table as it is now
    /// @throws FileError as load(), and when it can't be written; whatever `change` throws
    OwnParameters change(const std::function<void(OwnParameters&)>& change) const;

private:
    std::string path_;
};

/// Gives the events of a design, or of a log's, the own parameters that they mean: those of the file beside
/// it, with numbers that the table leaves free, else the table's.
/// @return what is not defined. @throws FileError
Undefined defineBeside(Design& design, const std::string& path, const ParametersFile& file);

/// Reads and writes a table as ParametersFile has it. @throws FileError
OwnParameters loadParameters(const std::string& path);
void saveParameters(const std::string& path, const OwnParameters& table);

} // namespace zint
