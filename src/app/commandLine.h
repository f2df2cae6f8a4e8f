#pragma once

#include <QStringList>

#include <chrono>
#include <optional>
#include <string>

namespace zint {

/// What a command line says of the connection, for one run.
struct ConnectionOptions {
    std::optional<int> portNumber;    ///< 1 to 8
    std::string portLocation;         ///< what that port stands for; empty: as always
    std::optional<int> speedPosition; ///< position in the launcher's list
};

/// A command line, understood.
struct CommandLine {
    enum class Action { showWindows, showHelp, showVersion, reportCodes, refuse };

    Action action = Action::showWindows;
    std::string complaint; ///< what is wrong, with refuse
    ConnectionOptions connection;
    bool clearCodes = false;
    std::chrono::seconds timeout{120}; ///< for the whole exchange; 0: none

    /// @param arguments with the program's name in front
    static CommandLine parse(const QStringList& arguments);

    /// What --help prints. Needs an application object.
    static std::string helpText();
};

} // namespace zint
