#pragma once

#include "catalogue/ownParameter.h"
#include "catalogue/standardConversion.h"
#include "parameters/parameterCsv.h"

#include <string>
#include <vector>

namespace CLI {
class App;
} // namespace CLI

/// Own parameters without a window. Results go to standard output, what went wrong to standard error. The
/// commands need an application object, return the exit status, and throw FileError.
namespace zint {

struct ParametersListOptions {
    std::string filePath;    ///< empty: the file that the program uses
    bool isStandard = false; ///< the parameters of the standard in place of the user's own
    UnitSystem units = UnitSystem::metric;

    void describe(CLI::App& command);
};

struct ParametersSearchOptions {
    std::string filePath;           ///< as in ParametersListOptions
    std::vector<std::string> words; ///< a parameter has all of them
    UnitSystem units = UnitSystem::metric;

    void describe(CLI::App& command);
};

struct ParametersImportOptions {
    std::string filePath; ///< as in ParametersListOptions
    std::string path;
    bool replaces = false; ///< see SameName

    void describe(CLI::App& command);
};

struct ParametersExportOptions {
    std::string filePath; ///< as in ParametersListOptions
    std::string path;     ///< "-": standard output

    void describe(CLI::App& command);
};

struct ParametersTryOptions {
    std::string filePath; ///< as in ParametersListOptions
    std::string name;     ///< of the table, or its number; empty: `parameter` is tried
    std::vector<std::string> reply;
    OwnParameter parameter;

    void describe(CLI::App& command);

    /// @throws UsageError when it is not clear what is tried
    void check() const;
};

struct ParametersAddOptions {
    std::string filePath; ///< as in ParametersListOptions
    OwnParameter parameter;
    bool replaces = false; ///< the one of the same name, if there is one

    void describe(CLI::App& command);
};

struct ParametersRemoveOptions {
    std::string filePath;           ///< as in ParametersListOptions
    std::vector<std::string> names; ///< or numbers

    void describe(CLI::App& command);
};

int runParametersList(const ParametersListOptions& options);
int runParametersSearch(const ParametersSearchOptions& options);
int runParametersImport(const ParametersImportOptions& options);
int runParametersExport(const ParametersExportOptions& options);
int runParametersTry(const ParametersTryOptions& options);
int runParametersAdd(const ParametersAddOptions& options);
int runParametersRemove(const ParametersRemoveOptions& options);

} // namespace zint
