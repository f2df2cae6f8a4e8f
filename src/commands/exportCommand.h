#pragma once

#include "samples/csvExport.h"

#include <optional>
#include <string>

namespace CLI {
class App;
} // namespace CLI

namespace zint {

struct ExportOptions {
    std::string logPath;
    std::string tablePath;
    std::optional<Decimals> decimals;

    void describe(CLI::App& command);
    void check() const; ///< @throws UsageError
};

/// `zint-obd export`: turns a saved data log into a table, in the form that its file's ending says. @return
/// the exit status. @throws FileError
int runExportCommand(const ExportOptions& options);

} // namespace zint
