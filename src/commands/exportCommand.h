#pragma once

#include <string>

namespace CLI {
class App;
} // namespace CLI

namespace zint {

struct ExportOptions {
    std::string logPath;
    std::string tablePath;

    void describe(CLI::App& command);
    void check() const; ///< @throws UsageError
};

/// `zint-obd export`: turns a saved data log into a table. @return the exit status. @throws FileError
int runExportCommand(const ExportOptions& options);

} // namespace zint
