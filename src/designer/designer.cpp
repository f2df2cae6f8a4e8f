#include "designer/designer.h"

#include "catalogue/designFile.h"
#include "designer/initCommands.h"
#include "designer/loopOffsets.h"
#include "designer/pollCost.h"
#include "designer/sampleSpeed.h"
#include "designer/supportReply.h"
#include "shared/fileError.h"
#include "shared/module1.h"
#include "shared/runTimeError.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace zint {
namespace {

const FileKinds openKinds{.extension = "obc",
                          .filter = "OBD2 config files (*.obc)|*.obc|Zint log files (*.log)|*.log|" +
                                    textFileKinds.filter};
const FileKinds saveKinds{.extension = "obc",
                          .filter = "OBD2 config files (*.obc)|*.obc|" + textFileKinds.filter};

constexpr const char* neverPolledText =
    "This design has events that are never polled (grey). Set how often, then Goto Polling.";

bool isLog(const std::string& path) { return upperCase(path).ends_with(".LOG"); }

} // namespace

TooManyEvents::TooManyEvents(std::size_t count)
    : std::runtime_error("The design has " + std::to_string(count) + " polled events, but no more than " +
                         std::to_string(Design::maxEvents) + " fit. Disable or delete some.")
{
}

Designer::Designer(SerialPort& port, Timer& timer, Timer& silence, const ConnectionChoice& choice,
                   Design& design, Prompts& prompts, FileDialogs& dialogs, ProgramValues& values,
                   KeptDesigns& kept)
    : check_(port, timer, silence, choice, prompts), design_(design), prompts_(prompts), dialogs_(dialogs),
      values_(values), kept_(kept), bitsPerSecond_(choice.bitsPerSecond)
{
    check_.onChanged = [this] {
        panel_.statusBox = check_.status();
        changed();
    };
    check_.onAnswer = [this](const std::string& bits) { return disableUnsupported(bits); };
}

void Designer::load()
{
    const bool isPollingWanted = std::exchange(values_.isPollingWanted, false);
    const std::string ownFile = values_.mayOverwriteSave ? values_.parmSave : "";
    beginWithDesign();
    if (design_.isCommitted()) {
        nameFile(ownFile);
        if (kept_.resume(draft()))
            unsaved_.beginUnsaved();
    } else if (fileExists(values_.parmSave)) {
        loadFile(values_.parmSave);
    } else {
        nameFile(ownFile); // saving makes it anew
    }
    if (!isPollingWanted)
        panel_.statusBox = summary();
    else if (draft().isCommitted())
        panel_.statusBox = summary() + " - press Goto Polling";
    else
        panel_.statusBox = neverPolledText;
    changed();
}

void Designer::unload()
{
    check_.close();
    kept_.leave();
}

void Designer::newDesign()
{
    loadDefaultDesign(design_);
    beginWithDesign();
    values_.mayOverwriteSave = false; // the file that was open before is another design's
    nameFile({});
    changed();
}

void Designer::open()
{
    const std::string path = dialogs_.chooseToOpen(
        openKinds, values_.isFolderRemembered ? values_.parmInitDir : values_.sampleFolder);
    if (path.empty())
        return;
    if (!isSample(path))
        values_.rememberFolderOf(path); // nobody's own files belong among the samples
    loadFile(path);
    changed();
    tellLoadFailure();
}

void Designer::recover()
{
    const auto chosen = chooseToRecover(prompts_, kept_.list(draft()), "design");
    if (!chosen)
        return;
    const Design draft = kept_.bringBack(*chosen);
    design_ = draft;
    design_.events.resize(std::min(draft.events.size(), Design::maxEvents));
    showWithoutHistory();
    panel_.obdGrid = draft.events;
    unsaved_.beginUnsaved();
    values_.mayOverwriteSave = false;
    nameFile({});
    panel_.statusBox = summary() + " recovered";
    changed();
}

void Designer::save() { saveFile(values_.parmSave.empty() || !values_.mayOverwriteSave); }

void Designer::saveAs() { saveFile(true); }

void Designer::saveFile(bool asking)
{
    Design design = committed();
    const std::string path =
        asking ? dialogs_.chooseToSave(saveKinds, values_.parmInitDir, proposedName()) : values_.parmSave;
    if (path.empty())
        return;
    write(path, design);
    if (asking)
        values_.rememberFolderOf(path);
    design_ = std::move(design);
    rebuild();
    unsaved_.saved(draft());
    values_.mayOverwriteSave = true;
    nameFile(path);
    panel_.statusBox = panel_.fileLab + " saved";
    changed();
}

/// @throws FileError when that fails; the status says so too, for the box about it is soon gone
void Designer::write(const std::string& path, const Design& design)
{
    try {
        saveDesign(path, design);
    } catch (const FileError&) {
        panel_.statusBox = fileNamePart(path) + " not saved";
        changed();
        throw;
    }
}

/// The name under which the design is offered to be saved. A log's is its own, but as a design.
std::string Designer::proposedName() const
{
    return isLog(panel_.fileLab) ? utf8Text(utf8Path(panel_.fileLab).replace_extension("obc"))
                                 : panel_.fileLab;
}

/// Shows which file the design is from, and saves to it from now on if it may be overwritten.
void Designer::nameFile(const std::string& path)
{
    panel_.filePath = path;
    panel_.fileLab = fileNamePart(path);
    if (path.empty() || !values_.mayOverwriteSave)
        return;
    values_.parmSave = path;
    values_.parmSaveFile = panel_.fileLab;
}

void Designer::loadFile(const std::string& path)
{
    const std::string name = fileNamePart(path);
    try {
        design_ = loadDesign(path);
    } catch (const std::exception& error) { // whatever is wrong with the file, the default takes its place
        loadFailure_ = {.file = name, .reason = error.what()};
        loadDefaultDesign(design_);
        design_.sampleSpeed = Design::defaultSpeed;
        beginWithDesign();
        values_.mayOverwriteSave = false; // the file that was open before is whole
        nameFile({});
        panel_.statusBox = "Default values loaded";
        return;
    }
    beginWithDesign();
    values_.mayOverwriteSave = !isLog(path) && !isSample(path); // these only lend their design
    nameFile(path);
    panel_.statusBox = name + " loaded";
}

void Designer::tellLoadFailure()
{
    if (const auto failure = std::exchange(loadFailure_, std::nullopt))
        prompts_.message("Error loading file" + failure->file, {}, failure->reason);
}

bool Designer::isSample(const std::string& path) const
{
    return !values_.sampleFolder.empty() && utf8Path(path).parent_path() == utf8Path(values_.sampleFolder);
}

void Designer::setTitle(const std::string& title)
{
    panel_.pollTitle = title;
    changed();
}

/// Changes the grid, which can be undone.
void Designer::changeRows(const std::function<void(GridRows&)>& change)
{
    GridRows before = panel_.obdGrid;
    GridRows edited = before;
    change(edited);
    panel_.obdGrid = std::move(edited);
    if (panel_.obdGrid.size() != before.size())
        panel_.statusBox = summary();
    if (panel_.obdGrid != before) {
        history_.remember(std::move(before));
        panel_.sorting.reset();
    }
}

void Designer::edit(const std::function<void(GridRows&)>& change)
{
    changeRows(change);
    changed();
}

void Designer::setCell(std::size_t row, GridColumn column, std::string_view text)
{
    try {
        edit([&](GridRows& rows) { enterText(rows.at(row), column, text); });
    } catch (const RunTimeError& error) {
        throw RunTimeError(error.fault(), cellAdvice(row, column, text));
    }
}

void Designer::moveRow(std::size_t from, std::size_t to)
{
    edit([&](GridRows& rows) { shiftRow(rows, from, to); });
}

void Designer::removeRow(std::size_t row)
{
    edit([&](GridRows& rows) { rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(row)); });
}

void Designer::duplicateRow(std::size_t row)
{
    edit([&](GridRows& rows) {
        const DesignEntry copy = rows.at(row);
        rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(row) + 1, copy);
    });
}

void Designer::sortBy(GridColumn column)
{
    const GridSorting ascending{.column = column};
    const GridSorting sorting{.column = column, .descending = panel_.sorting == ascending};
    changeRows([&](GridRows& rows) { sortRows(rows, sorting); });
    panel_.sorting = sorting;
    changed();
}

void Designer::undo() { step(&GridHistory::undo); }

void Designer::redo() { step(&GridHistory::redo); }

void Designer::step(void (GridHistory::*direction)(GridRows&))
{
    const std::size_t before = panel_.obdGrid.size();
    (history_.*direction)(panel_.obdGrid);
    if (panel_.obdGrid.size() != before)
        panel_.statusBox = summary();
    panel_.sorting.reset();
    changed();
}

void Designer::disableAll()
{
    edit([](GridRows& rows) { setAllFrequencies(rows, 0); });
}

void Designer::enableAll()
{
    edit([](GridRows& rows) { setAllFrequencies(rows, 1); });
}

bool Designer::addNew()
{
    const auto request =
        prompts_.inputOrChoose("New Hexadecimal Command ", "Add New Event", requestChoices());
    if (!request || request->empty())
        return false;
    changeRows([&](GridRows& rows) { addRow(rows, *request); });
    const std::string& code = panel_.obdGrid.back().code;
    if (!isHexadecimal(code))
        panel_.statusBox = code + " is no hexadecimal number; it is sent as it is";
    changed();
    return true;
}

void Designer::commit()
{
    design_ = committed();
    rebuild();
    changed();
}

void Designer::askInitSequence()
{
    const auto answer = prompts_.input("Extra Initialization Commands ", "Init Cmds", design_.extraCommands);
    const InitCommands checked = checkInitCommands(answer.value_or(""));
    if (!checked.complaint.empty()) {
        prompts_.message(checked.complaint);
        return;
    }
    design_.extraCommands = checked.commands;
    panel_.pollPrefix = checked.commands;
    changed();
}

void Designer::clickAutoSpeed(bool checked)
{
    design_.sampleSpeed = checked ? SampleSpeed() : Design::defaultSpeed;
    showSpeed();
    changed();
}

void Designer::movePollSpeed(int position)
{
    panel_.pollSpeed.value = roundedSpeed(position);
    panel_.sampleDsp = speedText(std::chrono::milliseconds(panel_.pollSpeed.value));
    changed();
}

void Designer::calculateOffsets()
{
    design_ = committed();
    spreadOffsets(design_);
    rebuild();
    changed();
}

void Designer::showTimeline()
{
    Design design = committed();
    const std::string text = timelineText(design);
    design_ = std::move(design);
    changed();
    prompts_.message(text);
}

/// Shows the design in the grid; that can be undone.
void Designer::rebuild()
{
    changeRows([this](GridRows& rows) { rows = design_.events; });
    panel_.pollTitle = design_.title;
    ++panel_.rebuilds;
    panel_.statusBox = summary();
}

/// Shows the design with all that belongs to it; there is nothing to undo then.
void Designer::showWithoutHistory()
{
    rebuild();
    history_.forget();
    panel_.pollPrefix = design_.extraCommands;
    showSpeed();
}

void Designer::showSpeed()
{
    const SampleSpeed speed = design_.sampleSpeed;
    panel_.autoSpeed = !speed;
    panel_.pollSpeed.enabled = speed.has_value();
    panel_.pollSpeed.value = static_cast<int>(speed.value_or(Design::defaultSpeed).count());
    panel_.sampleDsp = speedText(speed);
}

/// Shows a design that has come in. What was in the grid before stays kept if it was not saved.
void Designer::beginWithDesign()
{
    showWithoutHistory();
    unsaved_.begin(draft());
}

Design Designer::draft() const
{
    Design draft = design_;
    draft.title = panel_.pollTitle;
    draft.events = panel_.obdGrid;
    return draft;
}

/// What the grid makes of the design. @throws TooManyEvents
Design Designer::committed() const
{
    Design design = draft();
    dropUnpolled(design);
    if (design.events.size() > Design::maxEvents)
        throw TooManyEvents(design.events.size());
    return design;
}

std::string Designer::summary() const { return summaryOf(draft()); }

void Designer::keepUnsaved()
{
    try {
        unsaved_.follow(draft());
    } catch (const FileError& error) {
        panel_.statusBox = std::string("Unsaved changes can't be kept: ") + error.what();
    }
}

void Designer::verifySupport() { check_.begin(); }

std::string Designer::disableUnsupported(const std::string& bits)
{
    if (closeEditor)
        closeEditor();
    const std::size_t before = draft().polledCount();
    edit([&bits](GridRows& rows) {
        for (DesignEntry& row : rows) {
            if (isUnsupported(row.code, bits))
                row.frequency = row.offset = 0;
        }
    });
    const std::size_t disabled = before - draft().polledCount();
    lastCheck_ = std::to_string(disabled) + " of " + std::to_string(before) + " events disabled";
    return " - " + lastCheck_ + ". This is a hint: see Help.";
}

void Designer::showStatistics()
{
    const std::string check = lastCheck_.empty() ? "none so far" : lastCheck_;
    prompts_.message(check_.counterLine() + "\r\n\r\nSupport check: " + check, "Piolum Stats");
}

void Designer::changed()
{
    keepUnsaved();
    panel_.isModified = unsaved_.isModified(draft());
    panel_.labelStats = check_.counterLine();
    panel_.costLab = pollCost(panel_.obdGrid, design_.sampleSpeed, bitsPerSecond_, values_.requestSeconds);
    panel_.canUndo = history_.canUndo();
    panel_.canRedo = history_.canRedo();
    if (onChanged)
        onChanged();
}

} // namespace zint
