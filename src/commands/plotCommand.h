#pragma once

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
} // namespace CLI

namespace zint {

struct PlotOptions {
    std::string logPath;
    std::string picturePath;
    std::vector<std::size_t> events; ///< from 0, in rising order; none: the first four with numbers
    std::optional<int> from;         ///< seconds
    std::optional<int> to;

    void describe(CLI::App& command);
    void check() const; ///< @throws UsageError
};

/// `zint-obd plot`: draws a saved data log. Needs an application object for windows, though none is shown.
/// @return the exit status. @throws FileError
int runPlotCommand(const PlotOptions& options);

} // namespace zint
