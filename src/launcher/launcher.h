#pragma once

#include "catalogue/design.h"
#include "launcher/startPanel.h"
#include "link/connectionChoice.h"
#include "link/portDirectory.h"
#include "shared/clock.h"
#include "shared/programValues.h"
#include "shared/prompts.h"
#include "shared/settingsStore.h"
#include "shared/tool.h"

#include <array>
#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace zint {

inline constexpr std::array lineSpeeds{9600, 38400}; ///< entries of comSpeed, bits per second

/// The launcher's work: the choice of port and speed, and the values that are kept between runs.
class Launcher {
public:
    /// What the launcher asks of the system.
    struct System {
        std::string workingFolder;
        char pathSeparator = '/';
        std::string sampleFolder;     ///< see ProgramValues
        std::string descriptionsFile; ///< likewise
        std::function<std::string()>
            findBrowser;            ///< the program that opens web pages; empty when there is none
        std::string userDataFolder; ///< see ToolContext
        DateText dateText;
    };

    /// All references outlive the launcher. The design is set to the default design.
    Launcher(SettingsStore& settings, PortDirectory& ports, Prompts& prompts, ProgramValues& values,
             Design& design, System system);

    /// Reads the saved settings. One that can't be used is reported and replaced by its default. What the
    /// port stands for is left open: looking at the machine's ports takes longer than all the rest.
    void load();

    /// Writes the settings back; says so when that fails.
    void unload();

    /// Chooses port or speed for this run only: unless the user chooses one, the saved choice stays. A
    /// position out of range chooses nothing.
    void choosePortForThisRun(PortNumber port);
    void chooseSpeedForThisRun(int position);

    void choosePort(int position);  ///< list position; out of range: nothing happens
    void chooseSpeed(int position); ///< as choosePort

    /// Chooses a port and the speed at which its adapter answers: as the line speed where the list has it,
    /// else as the port's own. @param bitsPerSecond nothing: the speed stays
    void useConnection(PortNumber port, std::optional<int> bitsPerSecond);

    /// Looks again what the ports stand for. @return whether that changed
    bool refreshPortInfo();

    /// What a tool reads when it is opened. The shared values then tell what to do if nothing answers there.
    ConnectionChoice connection() const;

    /// The tool that a button opens: polling needs a design without unpolled events, so that with any other
    /// the designer comes first.
    Tool toolFor(Tool button) const;

    /// A button was clicked; the designer is told when it comes in the runner's place.
    /// @return the tool to open
    Tool click(Tool button);

    void showDefaults();  ///< shows the stored and the present values
    void clearDefaults(); ///< empties folders and files; the store follows at the exit

    /// Makes the database of code descriptions from those that come with the program, unless there is one,
    /// and tells what came of it. @throws DatabaseError, FileError when it can't be made; nothing is left
    /// then
    void setUpDescriptions();

    /// Offers what was kept, and not saved, since a session began that was cut off.
    /// @return the tool in which the user wants to recover it
    std::optional<Tool> offerUnsavedWork(std::chrono::system_clock::time_point since);

    const StartPanel& panel() const { return panel_; }

private:
    /// A position in a list. The panel shows it, or the one that holds for this run.
    struct Choice {
        const char* key;
        int StartPanel::*shown;
        int count;
        int saved = 0; ///< at the exit
        bool isForThisRun = false;

        bool has(int position) const { return position >= 0 && position < count; }
    };

    void loadChoice(Choice& choice);
    void choose(Choice& choice, int position);
    void chooseForThisRun(Choice& choice, int position);
    PortNumber chosenPort() const { return allPorts.at(static_cast<std::size_t>(panel_.comPort)); }
    std::string defaultDatabase() const;
    std::string stored(const char* key, const std::string& missing = {}) const;

    SettingsStore& settings_;
    PortDirectory& ports_;
    Prompts& prompts_;
    ProgramValues& values_;
    const Design& design_;
    System system_;
    StartPanel panel_;
    std::string firstHint_; ///< which speed to try first; empty for whom the program has served before
    Choice port_{"comPort", &StartPanel::comPort, static_cast<int>(allPorts.size())};
    Choice speed_{"comSpeed", &StartPanel::comSpeed, static_cast<int>(lineSpeeds.size())};
};

} // namespace zint
