#pragma once

#include "dtcdb/dtcText.h"
#include "link/portNumber.h"
#include "scanner/scanParameters.h"
#include "scanner/scanReply.h"
#include "terminal/terminalOptions.h"

#include <QStringList>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace zint {

/// What a command line says of the connection, for one run.
struct ConnectionOptions {
    std::optional<PortNumber> portNumber;
    std::string portLocation;         ///< what that port stands for; empty: as always
    std::optional<int> speedPosition; ///< position in the launcher's list
};

/// A command line, understood. Paths are UTF-8; an empty one was not given.
struct CommandLine {
    enum class Action {
        showWindows,
        showHelp,
        showVersion,
        reportCodes,
        poll,
        exportLog,
        terminal,
        scan,
        setUpDescriptions,
        lookUpCodes,
        importDescriptions,
        exportDescriptions,
        refuse
    };

    Action action = Action::showWindows;
    std::string complaint; ///< what is wrong, with refuse
    ConnectionOptions connection;

    bool clearCodes = false;
    bool isConfirmed = false;          ///< that data in the vehicle be erased
    std::chrono::seconds timeout{120}; ///< for the whole exchange, or for a reply; 0: none

    std::string designPath;
    std::string logPath;
    std::string exportPath;
    int loops = 1000;
    std::optional<std::chrono::seconds> seconds; ///< after which a run ends
    bool quiet = false;                          ///< without a progress line

    NumberBase base = NumberBase::hexadecimal; ///< of the numbers in replies

    ScanParameters scan;
    ScanFilter filter = ScanFilter::all; ///< of the replies to a scan
    bool decimal = false;                ///< valid ones as a number as well
    bool ascii = false;                  ///< as characters as well
    bool names = false;                  ///< with the parameter's name as well
    bool allowsErasing = false;          ///< a scan may erase data in the vehicle

    std::string databasePath;       ///< of code descriptions; empty: the one that the program uses
    bool onlyIfMissing = false;     ///< an existing database is no failure of a set-up
    std::vector<std::string> codes; ///< to look up
    std::string textPath;           ///< to import or export
    DtcTextOptions textOptions;     ///< how its lines are

    /// @param arguments with the program's name in front
    static CommandLine parse(const QStringList& arguments);

    /// What --help prints. Needs an application object.
    static std::string helpText();
};

} // namespace zint
