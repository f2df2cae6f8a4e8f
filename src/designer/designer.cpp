#include "designer/designer.h"

#include "designer/designFile.h"
#include "designer/loopOffsets.h"
#include "designer/pollCost.h"
#include "designer/pollPreparation.h"
#include "designer/supportReply.h"
#include "shared/askToSave.h"
#include "shared/fileError.h"
#include "shared/module1.h"

#include <exception>
#include <utility>
#include <vector>

namespace zint {
namespace {

const FileKinds openKinds{.extension = "obc",
                          .filter = "OBD2 config files (*.obc)|*.obc|Zint log files (*.log)|*.log|" +
                                    textFileKinds.filter};
const FileKinds saveKinds{.extension = "obc",
                          .filter = "OBD2 config files (*.obc)|*.obc|" + textFileKinds.filter};

std::string folderOf(const std::string& path) { return utf8Text(utf8Path(path).parent_path()); }

} // namespace

Designer::Designer(SerialPort& port, Timer& timer, const ConnectionChoice& choice, Design& design,
                   Prompts& prompts, FileDialogs& dialogs, ProgramValues& values, KeptDesigns& kept)
    : link_(port, timer, choice, *this), design_(design), prompts_(prompts), dialogs_(dialogs),
      values_(values), kept_(kept), bitsPerSecond_(toInteger(choice.speed))
{
}

void Designer::load()
{
    beginWithDesign();
    if (design_.isCommitted()) {
        panel_.fileLab = values_.mayOverwriteSave ? values_.parmSaveFile : "";
        if (kept_.resume(panel_.obdGrid, design_))
            safe_.reset();
    } else if (fileExists(values_.parmSave)) {
        loadFile(values_.parmSave);
    }
    panel_.statusBox = summaryOf(panel_.obdGrid);
    changed();
}

void Designer::unload()
{
    link_.close();
    kept_.leave();
}

void Designer::newDesign()
{
    loadDefaultDesign(design_);
    beginWithDesign();
    changed();
}

void Designer::open()
{
    const std::string path = dialogs_.chooseToOpen(
        openKinds, values_.isFolderRemembered ? values_.parmInitDir : values_.sampleFolder);
    if (path.empty())
        return;
    values_.rememberFolderOf(path);
    loadFile(path);
    changed();
}

void Designer::recover()
{
    const auto chosen = chooseToRecover(prompts_, kept_.list(), "design");
    if (!chosen)
        return;
    DesignDraft draft = kept_.bringBack(*chosen);
    design_ = std::move(draft.design);
    show();
    panel_.obdGrid = std::move(draft.grid); // may be longer than the design
    safe_.reset();
    values_.mayOverwriteSave = false;
    panel_.fileLab.clear();
    panel_.statusBox = summaryOf(panel_.obdGrid) + " recovered";
    changed();
}

void Designer::save() { saveFile(values_.parmSave.empty() || !values_.mayOverwriteSave); }

void Designer::saveAs() { saveFile(true); }

void Designer::saveFile(bool asking)
{
    Design committed = design_;
    zint::commit(panel_.obdGrid, committed);
    if (asking && !askName())
        return;
    saveDesign(values_.parmSave, committed);
    design_ = std::move(committed);
    rebuild();
    safe_ = content();
    panel_.statusBox = values_.parmSaveFile + " saved";
    changed();
}

bool Designer::askName()
{
    constexpr RememberedFile designFile{&ProgramValues::parmSave, &ProgramValues::parmSaveFile};
    if (!askToSave(dialogs_, values_, saveKinds, designFile))
        return false;
    values_.mayOverwriteSave = true;
    panel_.fileLab = values_.parmSaveFile;
    return true;
}

void Designer::loadFile(const std::string& path)
{
    const std::string name = fileNamePart(path);
    try {
        design_ = loadDesign(path);
    } catch (const std::exception& error) { // whatever is wrong with the file, the default takes its place
        prompts_.message("Error loading file" + name, {}, error.what());
        loadDefaultDesign(design_);
        design_.sampleSpeed = Design::defaultSpeed;
        beginWithDesign();
        values_.mayOverwriteSave = false; // the file that was open before is whole
        panel_.fileLab.clear();
        panel_.statusBox = "Default values loaded";
        return;
    }
    values_.mayOverwriteSave = !isTemplate(path);
    if (values_.mayOverwriteSave) {
        values_.parmSave = path;
        values_.parmSaveFile = name;
    }
    beginWithDesign();
    panel_.fileLab = name;
    panel_.statusBox = name + " loaded";
}

/// Whether a file only lends its design, so that saving does not overwrite it: a data log, a sample.
bool Designer::isTemplate(const std::string& path) const
{
    return upperCase(path).ends_with(".LOG") || folderOf(path) == values_.sampleFolder;
}

void Designer::setTitle(const std::string& title)
{
    panel_.obdGrid.title = title;
    changed();
}

/// Changes the grid, which can be undone.
void Designer::apply(const std::function<void(DesignGrid&)>& change)
{
    DesignGrid edited = panel_.obdGrid;
    change(edited);
    if (edited.rows != panel_.obdGrid.rows) {
        history_.remember(panel_.obdGrid.rows);
        sortedBy_.reset();
    }
    panel_.obdGrid = std::move(edited);
}

void Designer::edit(const std::function<void(DesignGrid&)>& change)
{
    apply(change);
    changed();
}

void Designer::setCell(std::size_t row, GridColumn column, std::string_view text)
{
    edit([&](DesignGrid& grid) { zint::setCell(grid.rows.at(row), column, text); });
}

void Designer::moveRow(std::size_t from, std::size_t to)
{
    edit([&](DesignGrid& grid) { zint::moveRow(grid, from, to); });
}

void Designer::sortBy(GridColumn column)
{
    const bool descending = sortedBy_ == column;
    edit([&](DesignGrid& grid) { sortRows(grid, column, descending); });
    sortedBy_ = descending ? std::nullopt : std::optional(column);
}

void Designer::undo()
{
    history_.undo(panel_.obdGrid.rows);
    sortedBy_.reset();
    changed();
}

void Designer::redo()
{
    history_.redo(panel_.obdGrid.rows);
    sortedBy_.reset();
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
    const auto code = prompts_.input("New Hexadecimal Command ", "Add New Event");
    if (!code || code->empty())
        return false;
    edit([&](DesignGrid& grid) { addRow(grid, *code); });
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
    panel_.sampleDsp = std::to_string(panel_.pollSpeed.value) + "ms";
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

void Designer::rebuild()
{
    apply([this](DesignGrid& grid) { grid = gridOf(design_); });
    ++panel_.rebuilds;
    panel_.statusBox = summaryOf(panel_.obdGrid);
}

/// Shows the design with all that belongs to it; there is nothing to undo then.
void Designer::show()
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
    panel_.sampleDsp = panel_.autoSpeed ? "Auto" : std::to_string(speed) + "ms";
}

/// Shows a design that has come in. What was in the grid before stays kept if it was not saved.
void Designer::beginWithDesign()
{
    kept_.leave();
    show();
    safe_ = content();
}

Designer::Content Designer::content() const
{
    return {panel_.obdGrid, design_.extraCommands, design_.sampleSpeed};
}

/// Whether nothing is lost with the content: disabled rows that a commit dropped are no loss.
bool Designer::isSafe(const Content& content) const
{
    if (!safe_ || content == safe_)
        return safe_.has_value();
    Content committed = *safe_;
    std::erase_if(committed.grid.rows, [](const GridRow& row) { return !row.isEnabled(); });
    return content == committed;
}

void Designer::keepUnsaved()
{
    Content now = content();
    if (now == seen_)
        return;
    seen_ = std::move(now);
    try {
        if (isSafe(seen_))
            kept_.forget();
        else
            kept_.keep(panel_.obdGrid, design_);
    } catch (const FileError& error) {
        panel_.statusBox = std::string("Unsaved changes can't be kept: ") + error.what();
    }
}

void Designer::verifySupport()
{
    if (link_.isOpen())
        return;
    if (link_.open(AdapterLink::Guard::exchange))
        link_.setStatus(" Verify events with OBD2");
    showLink();
}

void Designer::linkReady()
{
    link_.setStatus(" Reading Data");
    link_.send("0100");
}

void Designer::linkReply(std::string_view reply)
{
    const std::string answer(reply);
    const bool understood = isSupportReply(answer) && !hexToBits(supportData(answer)).empty();
    if (!understood)
        link_.countError();
    link_.close();
    showLink();
    if (understood)
        disableUnsupported(hexToBits(supportData(answer)));
    else if (isSupportReply(answer))
        prompts_.message("Garbled OBD2 0100 response (" + std::string(supportData(answer)) + "), try again");
    else
        prompts_.message("Please try again, is possible ignition not ON");
}

void Designer::disableUnsupported(const std::string& bits)
{
    if (closeEditor)
        closeEditor();
    edit([&bits](DesignGrid& grid) {
        for (GridRow& row : grid.rows) {
            if (!isUnsupported(row.code, bits))
                continue;
            row.frequency = 0;
            row.offset = 0;
        }
    });
}

void Designer::linkReceived() { showLink(); }

void Designer::linkEvent(int event)
{
    link_.setStatus({});
    link_.reportEvent(event);
    showLink();
}

void Designer::linkTimedOut()
{
    prompts_.message(std::string(AdapterLink::notRespondingText));
    values_.lastFailureText = AdapterLink::timeoutText;
    link_.close();
    showLink();
}

void Designer::linkLost() { showLink(); }

void Designer::showLink()
{
    panel_.statusBox = link_.status();
    changed();
}

void Designer::changed()
{
    keepUnsaved();
    panel_.labelStats = link_.counterLine();
    panel_.costLab = pollCost(panel_.obdGrid, design_.sampleSpeed, bitsPerSecond_);
    panel_.canUndo = history_.canUndo();
    panel_.canRedo = history_.canRedo();
    if (onChanged)
        onChanged();
}

} // namespace zint
