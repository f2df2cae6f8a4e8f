#pragma once

#include "dtcdb/dtcText.h"

#include <string>
#include <vector>

namespace CLI {
class App;
} // namespace CLI

/// The database of code descriptions without a window. Results go to standard output, what went wrong to
/// standard error. The commands need an application object, return the exit status, and throw DatabaseError
/// or FileError.
namespace zint {

struct DtcSetupOptions {
    std::string databasePath;   ///< empty: the one that the program uses
    bool onlyIfMissing = false; ///< an existing database is no failure
    bool quiet = false;         ///< without a progress line

    void describe(CLI::App& command);
};

struct DtcLookupOptions {
    std::string databasePath; ///< as in DtcSetupOptions
    std::vector<std::string> codes;

    void describe(CLI::App& command);
};

struct DtcImportOptions {
    std::string databasePath; ///< as in DtcSetupOptions
    std::string textPath;
    DtcTextOptions text; ///< how its lines are
    bool quiet = false;  ///< without a progress line

    void describe(CLI::App& command);
};

struct DtcExportOptions {
    std::string databasePath; ///< as in DtcSetupOptions
    std::string textPath;     ///< "-": standard output
    DtcTextOptions text;      ///< how its lines are

    void describe(CLI::App& command);
};

int runDtcSetup(const DtcSetupOptions& options);
int runDtcLookup(const DtcLookupOptions& options);
int runDtcImport(const DtcImportOptions& options);
int runDtcExport(const DtcExportOptions& options);

} // namespace zint
