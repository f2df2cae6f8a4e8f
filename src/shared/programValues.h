#pragma once

#include "shared/module1.h"

#include <bitset>
#include <string>

namespace zint {

/// What a car has told of the parameters of mode 01, by their numbers.
struct CarSupport {
    std::bitset<256> told{};      ///< whether it has told of a parameter
    std::bitset<256> supported{}; ///< which of those it supports
    std::string source{};         ///< "support check"; empty: nothing is known
};

/// What the tools share during a run, beside the polling design. The launcher reads it from the saved
/// settings at the start and writes it back at the exit. All paths are UTF-8.
struct ProgramValues {
    std::string parmInitDir; ///< the folder in which file dialogs start
    std::string parmDTCdb;   ///< the database of code descriptions

    std::string parmSave;   ///< the last design file
    std::string parmOutput; ///< the last output file of the terminal and the scanner
    std::string parmLog;    ///< the last data log
    std::string parmExport; ///< the last export

    std::string parmUnits; ///< "imperial" for what is added to designs; else metric

    // The file names in the four paths; whoever changes a path sets its name too.
    std::string parmSaveFile;
    std::string parmOutputFile;
    std::string parmLogFile;
    std::string parmExportFile;

    // What is not saved.
    bool isFolderRemembered = true; ///< whether the user chose parmInitDir, as opposed to a default
    bool mayOverwriteSave = true;   ///< whether parmSave is the present design's own file
    bool isPollingWanted = false;   ///< whether the designer opens in place of the runner
    std::string designToOpen;       ///< in the designer when that comes next; empty: as always
    CarSupport carSupport;          ///< of the car that was asked last
    double requestSeconds = 0;      ///< that a request took in the last run; 0 before there was one
    std::string sampleFolder;       ///< the designs that come with the program
    std::string descriptionsFile;   ///< the code descriptions that come with the program
    std::string browserPath;        ///< the program that opens web pages; empty when none was found
    std::string lastFailureText;    ///< the last reply that was no monitor status, or the time-out's text

    /// The present design's own file. Empty: saving asks for a name.
    std::string designPath() const { return mayOverwriteSave ? parmSave : std::string(); }

    /// Lets the file dialogs start where a file was chosen.
    void rememberFolderOf(const std::string& path)
    {
        parmInitDir = utf8Text(utf8Path(path).parent_path());
        isFolderRemembered = true;
    }
};

} // namespace zint
