#include "designer/designer.h"

#include "catalogue/designFile.h"
#include "designer/loopOffsets.h"
#include "designer/pollCost.h"
#include "designer/pollPreparation.h"
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

std::ptrdiff_t enabledCount(const DesignGrid& grid)
{
    return std::ranges::count_if(grid.rows, &GridRow::isEnabled);
}

bool isPolledWhole(const DesignGrid& grid) { return std::ranges::all_of(grid.rows, &GridRow::isEnabled); }

} // namespace

Designer::Designer(SerialPort& port, Timer& timer, Timer& silence, const ConnectionChoice& choice,
                   Design& design, Prompts& prompts, FileDialogs& dialogs, ProgramValues& values,
                   KeptDesigns& kept)
    : check_(port, timer, silence, choice, prompts), design_(design), prompts_(prompts), dialogs_(dialogs),
      values_(values), kept_(kept), bitsPerSecond_(toInteger(choice.speed))
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
        if (kept_.resume(panel_.obdGrid, design_))
            unsaved_.beginUnsaved();
    } else if (fileExists(values_.parmSave)) {
        loadFile(values_.parmSave);
    } else {
        nameFile(ownFile); // saving makes it anew
    }
    if (!isPollingWanted)
        panel_.statusBox = summaryOf(panel_.obdGrid);
    else if (isPolledWhole(panel_.obdGrid))
        panel_.statusBox = summaryOf(panel_.obdGrid) + " - press Goto Polling";
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
    const auto chosen = chooseToRecover(prompts_, kept_.list(content()), "design");
    if (!chosen)
        return;
    DesignDraft draft = kept_.bringBack(*chosen);
    design_ = std::move(draft.design);
    showWithoutHistory();
    panel_.obdGrid = std::move(draft.grid); // may be longer than the design
    unsaved_.beginUnsaved();
    values_.mayOverwriteSave = false;
    nameFile({});
    panel_.statusBox = summaryOf(panel_.obdGrid) + " recovered";
    changed();
}

void Designer::save() { saveFile(values_.parmSave.empty() || !values_.mayOverwriteSave); }

void Designer::saveAs() { saveFile(true); }

void Designer::saveFile(bool asking)
{
    Design committed = design_;
    zint::commit(panel_.obdGrid, committed);
    const std::string path =
        asking ? dialogs_.chooseToSave(saveKinds, values_.parmInitDir, proposedName()) : values_.parmSave;
    if (path.empty())
        return;
    write(path, committed);
    if (asking)
        values_.rememberFolderOf(path);
    design_ = std::move(committed);
    rebuild();
    unsaved_.saved(content());
    values_.mayOverwriteSave = true;
    nameFile(path);
    panel_.statusBox = panel_.fileLab + " saved";
    changed();
}

/// @throws FileError when that fails; the status says so too, for the box about it is soon gone
void Designer::write(const std::string& path, const Design& committed)
{
    try {
        saveDesign(path, committed);
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
    panel_.obdGrid.title = title;
    changed();
}

/// Changes the grid, which can be undone.
void Designer::change(const std::function<void(DesignGrid&)>& change)
{
    DesignGrid edited = panel_.obdGrid;
    change(edited);
    if (edited.rows != panel_.obdGrid.rows) {
        history_.remember(panel_.obdGrid.rows);
        panel_.sorting.reset();
    }
    if (edited.rows.size() != panel_.obdGrid.rows.size())
        panel_.statusBox = summaryOf(edited);
    panel_.obdGrid = std::move(edited);
}

void Designer::edit(const std::function<void(DesignGrid&)>& change)
{
    this->change(change);
    changed();
}

void Designer::setCell(std::size_t row, GridColumn column, std::string_view text)
{
    try {
        edit([&](DesignGrid& grid) { zint::setCell(grid.rows.at(row), column, text); });
    } catch (const RunTimeError& error) {
        throw RunTimeError(error.number(), error.what(), cellAdvice(row, column, text));
    }
}

void Designer::moveRow(std::size_t from, std::size_t to)
{
    edit([&](DesignGrid& grid) { zint::moveRow(grid, from, to); });
}

void Designer::removeRow(std::size_t row)
{
    edit([&](DesignGrid& grid) { zint::removeRow(grid, row); });
}

void Designer::duplicateRow(std::size_t row)
{
    edit([&](DesignGrid& grid) { zint::duplicateRow(grid, row); });
}

void Designer::sortBy(GridColumn column)
{
    const GridSorting ascending{.column = column};
    const GridSorting sorting{.column = column, .descending = panel_.sorting == ascending};
    change([&](DesignGrid& grid) { sortRows(grid, sorting); });
    panel_.sorting = sorting;
    changed();
}

void Designer::undo() { step(&GridHistory::undo); }

void Designer::redo() { step(&GridHistory::redo); }

void Designer::step(void (GridHistory::*direction)(GridHistory::Rows&))
{
    const std::size_t before = panel_.obdGrid.rows.size();
    (history_.*direction)(panel_.obdGrid.rows);
    if (panel_.obdGrid.rows.size() != before)
        panel_.statusBox = summaryOf(panel_.obdGrid);
    panel_.sorting.reset();
    changed();
}

void Designer::disableAll()
{
    edit([](DesignGrid& grid) { setAllFrequencies(grid, 0); });
}

void Designer::enableAll()
{
    edit([](DesignGrid& grid) { setAllFrequencies(grid, 1); });
}

bool Designer::addNew()
{
    const auto request =
        prompts_.inputOrChoose("New Hexadecimal Command ", "Add New Event", requestChoices());
    if (!request || request->empty())
        return false;
    change([&](DesignGrid& grid) { addRow(grid, *request); });
    const std::string& code = panel_.obdGrid.rows.back().code;
    if (!isHexadecimal(code))
        panel_.statusBox = code + " is no hexadecimal number; it is sent as it is";
    changed();
    return true;
}

void Designer::commit()
{
    zint::commit(panel_.obdGrid, design_);
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
    design_.sampleSpeed = checked ? Design::automaticSpeed : Design::defaultSpeed;
    showSpeed(design_.sampleSpeed);
    changed();
}

void Designer::movePollSpeed(int position)
{
    panel_.pollSpeed.value = roundedSpeed(position);
    panel_.sampleDsp = speedText(panel_.pollSpeed.value);
    changed();
}

void Designer::calculateOffsets()
{
    zint::commit(panel_.obdGrid, design_);
    spreadOffsets(design_);
    rebuild();
    changed();
}

void Designer::showTimeline()
{
    Design committed = design_;
    zint::commit(panel_.obdGrid, committed);
    const std::string text = timelineText(committed);
    design_ = std::move(committed);
    changed();
    prompts_.message(text);
}

/// Shows the design in the grid; that can be undone.
void Designer::rebuild()
{
    change([this](DesignGrid& grid) { grid = gridOf(design_); });
    ++panel_.rebuilds;
    panel_.statusBox = summaryOf(panel_.obdGrid);
}

/// Shows the design with all that belongs to it; there is nothing to undo then.
void Designer::showWithoutHistory()
{
    rebuild();
    history_.forget();
    panel_.pollPrefix = design_.extraCommands;
    showSpeed(design_.sampleSpeed);
}

void Designer::showSpeed(int speed)
{
    panel_.autoSpeed = speed == Design::automaticSpeed;
    panel_.pollSpeed.enabled = !panel_.autoSpeed;
    panel_.pollSpeed.value = panel_.autoSpeed ? Design::defaultSpeed : speed;
    panel_.sampleDsp = speedText(speed);
}

/// Shows a design that has come in. What was in the grid before stays kept if it was not saved.
void Designer::beginWithDesign()
{
    showWithoutHistory();
    unsaved_.begin(content());
}

DesignContent Designer::content() const
{
    return {panel_.obdGrid, design_.extraCommands, design_.sampleSpeed};
}

void Designer::keepUnsaved()
{
    try {
        unsaved_.follow(content(), design_);
    } catch (const FileError& error) {
        panel_.statusBox = std::string("Unsaved changes can't be kept: ") + error.what();
    }
}

void Designer::verifySupport() { check_.begin(); }

std::string Designer::disableUnsupported(const std::string& bits)
{
    if (closeEditor)
        closeEditor();
    const auto before = enabledCount(panel_.obdGrid);
    edit([&bits](DesignGrid& grid) {
        for (GridRow& row : grid.rows) {
            if (isUnsupported(row.code, bits))
                row.frequency = row.offset = 0;
        }
    });
    const auto disabled = before - enabledCount(panel_.obdGrid);
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
    panel_.isModified = unsaved_.isModified(content());
    panel_.labelStats = check_.counterLine();
    panel_.costLab = pollCost(panel_.obdGrid, design_.sampleSpeed, bitsPerSecond_, values_.requestSeconds);
    panel_.canUndo = history_.canUndo();
    panel_.canRedo = history_.canRedo();
    if (onChanged)
        onChanged();
}

} // namespace zint
