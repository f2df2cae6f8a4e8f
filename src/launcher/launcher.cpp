#include "launcher/launcher.h"

#include "dtcdb/databaseKind.h"
#include "dtcdb/dtcText.h"
#include "link/portLocation.h"
#include "shared/keptFiles.h"
#include "shared/module1.h"
#include "shared/programInfo.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace zint {
namespace {

constexpr const char* section = "Startup";

// Each exit stores the folder, so that one stands there though nobody chose it. This tells which.
constexpr const char* defaultsSection = "Defaults";
constexpr const char* defaultFolder = "folder";
constexpr const char* defaultUnits = "units";

/// A value that is saved as text, in the order of saving.
struct SavedValue {
    const char* key;
    const char* shownName; ///< in "Show Defaults"
    std::string ProgramValues::*value;
    std::string ProgramValues::*fileName; ///< the path's file name; null for a value that has none
};

constexpr std::array<SavedValue, 6> savedValues = {{
    {"InitDir", "InitDir ", &ProgramValues::parmInitDir, nullptr},
    {"DTCdb", "DTCdb ", &ProgramValues::parmDTCdb, nullptr},
    {"parmSave", "parmSaveDir ", &ProgramValues::parmSave, &ProgramValues::parmSaveFile},
    {"parmOutput", "parmOutputDir ", &ProgramValues::parmOutput, &ProgramValues::parmOutputFile},
    {"parmLog", "parmLogDir ", &ProgramValues::parmLog, &ProgramValues::parmLogFile},
    {"parmExport", "parmExportDir ", &ProgramValues::parmExport, &ProgramValues::parmExportFile},
}};

/// What a tool keeps of the user's work while it is not saved.
struct KeptWork {
    Tool tool;
    KeptKind kind;
    const char* name;
};

constexpr std::array<KeptWork, 2> keptWork = {{
    {Tool::pollDesigner, keptKinds::designs, "Polling Designer: "},
    {Tool::pollRunner, keptKinds::runs, "Poll Data: "},
}};

constexpr const char* speedHintText = "Most USB and Bluetooth adapters: 38400";

/// Why the line speed is of no use now; empty where it is. The simulated vehicle takes any.
std::string noLineSpeedText(const PortLocation& place)
{
    switch (place.kind) {
    case PortLocation::Kind::network:
        return "Line speed does not apply in a network";
    case PortLocation::Kind::recording:
        return "Line speed does not apply to a recording";
    default:
        return place.bitsPerSecond ? "Line speed does not apply: the port has its own, " +
                                         std::to_string(*place.bitsPerSecond)
                                   : "";
    }
}

} // namespace

Launcher::Launcher(SettingsStore& settings, PortDirectory& ports, Prompts& prompts, ProgramValues& values,
                   Design& design, System system)
    : settings_(settings), ports_(ports), prompts_(prompts), values_(values), design_(design),
      system_(std::move(system))
{
    loadDefaultDesign(design);
}

void Launcher::load()
{
    if (const std::string damage = settings_.damage(); !damage.empty())
        prompts_.message(damage);
    loadChoice(port_);
    loadChoice(speed_);
    if (stored(speed_.key).empty() && !speed_.isForThisRun)
        panel_.speedHint = firstHint_ = speedHintText;
    for (const SavedValue& saved : savedValues) {
        std::string& value = values_.*saved.value;
        value = stored(saved.key);
        if (saved.fileName != nullptr && !value.empty())
            values_.*saved.fileName = fileNamePart(value);
    }
    values_.sampleFolder = system_.sampleFolder;
    values_.descriptionsFile = system_.descriptionsFile;
    values_.isFolderRemembered =
        !values_.parmInitDir.empty() &&
        values_.parmInitDir != settings_.get(defaultsSection, defaultFolder, system_.workingFolder);
    values_.parmUnits = settings_.get(defaultsSection, defaultUnits);
    if (values_.parmInitDir.empty())
        values_.parmInitDir = system_.workingFolder;
    if (values_.parmDTCdb.empty())
        values_.parmDTCdb = defaultDatabase();
    panel_.caption += " v" + programInfo().version();
    values_.browserPath = system_.findBrowser();
}

std::string Launcher::defaultDatabase() const
{
    return system_.workingFolder + system_.pathSeparator + "dtc.mdb";
}

void Launcher::loadChoice(Choice& choice)
{
    const std::string text = stored(choice.key, "0");
    int position = integerIn(text).value_or(-1);
    if (!choice.has(position)) {
        prompts_.message("The saved setting \"" + std::string(choice.key) + "\" is \"" + text +
                         "\", which is no position in its list. The first entry is used instead.");
        position = 0;
    }
    choice.saved = position;
    if (!choice.isForThisRun)
        panel_.*choice.shown = position;
}

void Launcher::unload()
{
    for (const Choice& choice : {port_, speed_})
        settings_.save(section, choice.key, std::to_string(choice.saved));
    for (const SavedValue& saved : savedValues)
        settings_.save(section, saved.key, values_.*saved.value);
    settings_.save(defaultsSection, defaultFolder, values_.isFolderRemembered ? "" : values_.parmInitDir);
    settings_.save(defaultsSection, defaultUnits, values_.parmUnits);
    const std::string failure = settings_.flush();
    if (!failure.empty())
        prompts_.message("The settings could not be saved: " + failure);
}

void Launcher::choosePortForThisRun(PortNumber port) { chooseForThisRun(port_, static_cast<int>(port) - 1); }

void Launcher::chooseSpeedForThisRun(int position) { chooseForThisRun(speed_, position); }

void Launcher::choosePort(int position)
{
    choose(port_, position);
    refreshPortInfo();
}

void Launcher::chooseSpeed(int position) { choose(speed_, position); }

void Launcher::choose(Choice& choice, int position)
{
    if (!choice.has(position))
        return;
    panel_.*choice.shown = choice.saved = position;
    choice.isForThisRun = false; // it is the user's from now on
}

void Launcher::chooseForThisRun(Choice& choice, int position)
{
    if (!choice.has(position))
        return;
    panel_.*choice.shown = position;
    choice.isForThisRun = true;
}

void Launcher::useConnection(PortNumber port, std::optional<int> bitsPerSecond)
{
    choosePort(static_cast<int>(port) - 1);
    if (!bitsPerSecond)
        return;
    const auto* const speed = std::ranges::find(lineSpeeds, *bitsPerSecond);
    const PortLocation place = portLocation(ports_.target(port).location);
    if (speed != lineSpeeds.end() && !place.bitsPerSecond)
        chooseSpeed(static_cast<int>(speed - lineSpeeds.begin()));
    else
        ports_.assign(port, place.path + "@" + std::to_string(*bitsPerSecond));
    refreshPortInfo();
}

bool Launcher::refreshPortInfo()
{
    const StartPanel before = panel_;
    const std::vector<DetectedPort> ports = ports_.detected();
    std::ranges::transform(allPorts, panel_.portTips.begin(),
                           [&](PortNumber port) { return ports_.target(port, ports).text(); });
    panel_.portInfo = panel_.portTips.at(static_cast<std::size_t>(panel_.comPort));
    const PortLocation place = ports_.target(chosenPort(), ports).place;
    panel_.comSpeedEnabled = noLineSpeedText(place).empty();
    panel_.speedHint = panel_.comSpeedEnabled ? firstHint_ : noLineSpeedText(place);
    return panel_ != before;
}

ConnectionChoice Launcher::connection() const
{
    const PortLocation place = ports_.target(chosenPort()).place;
    const int lineSpeed = lineSpeeds.at(static_cast<std::size_t>(panel_.comSpeed));
    return {.port = chosenPort(),
            .bitsPerSecond = place.bitsPerSecond.value_or(lineSpeed),
            .device = place.text(),
            .kind = place.kind};
}

Tool Launcher::toolFor(Tool button) const
{
    return button == Tool::pollRunner && !design_.isCommitted() ? Tool::pollDesigner : button;
}

Tool Launcher::click(Tool button)
{
    const Tool tool = toolFor(button);
    values_.isPollingWanted = tool != button;
    return tool;
}

void Launcher::showDefaults()
{
    std::string text = "Registry:\r\n";
    text += "comPort " + stored("comPort") + "\r\n";
    text += "comSpeed " + stored("comSpeed") + "\r\n";
    for (const SavedValue& saved : savedValues)
        text += saved.shownName + stored(saved.key) + "\r\n";
    text += "Vars:\r\n";
    text += "parmInitDir " + values_.parmInitDir + "\r\n";
    text += "parmDTCdb " + values_.parmDTCdb + "\r\n";
    prompts_.message(text);
}

void Launcher::clearDefaults()
{
    for (const SavedValue& saved : savedValues) {
        (values_.*saved.value).clear();
        if (saved.fileName != nullptr)
            (values_.*saved.fileName).clear();
    }
    values_.isFolderRemembered = false;
}

void Launcher::setUpDescriptions()
{
    const std::string path =
        values_.parmDTCdb.empty() ? defaultDatabase() : values_.parmDTCdb; // see clearDefaults
    if (isSetUp(path)) {
        DtcDatabase::openForReading(path); // what can't be used is told
        prompts_.message("There is a database of code descriptions already: " + path +
                         "\r\nIt stays as it is.");
        return;
    }
    DtcImport import;
    const bool isDone = prompts_.runLong("Setting up code descriptions", [&](Progress& progress) {
        import = setUpDtcDatabase(path, values_.descriptionsFile, progress);
    });
    if (!isDone) {
        prompts_.message("The set-up was stopped. No database has been made.");
        return;
    }
    values_.parmDTCdb = path;
    prompts_.message(std::to_string(import.added) + " code descriptions are set up in " + path);
}

std::optional<Tool> Launcher::offerUnsavedWork(std::chrono::system_clock::time_point since)
{
    std::vector<std::string> lines;
    std::vector<Tool> tools;
    for (const KeptWork& work : keptWork) {
        auto files = KeptFiles(system_.userDataFolder, work.kind).newestFirst();
        std::erase_if(files, [since](const KeptFiles::File& file) { return file.changed < since; });
        if (files.empty())
            continue;
        lines.push_back(work.name + std::to_string(files.size()) + " unsaved, the last of " +
                        system_.dateText(files.front().changed));
        tools.push_back(work.tool);
    }
    if (lines.empty())
        return std::nullopt;
    const auto chosen =
        prompts_.choose("Zint was cut off the last time. This was not saved:", "Recover Unsaved Work", lines);
    return chosen ? std::optional(tools.at(*chosen)) : std::nullopt;
}

std::string Launcher::stored(const char* key, const std::string& missing) const
{
    return settings_.get(section, key, missing);
}

} // namespace zint
