#include "designer/designer.h"

#include "designer/initCommands.h"
#include "designer/loopOffsets.h"
#include "designer/pollCost.h"
#include "designer/sampleSpeed.h"
#include "designer/supportReply.h"
#include "shared/fileError.h"
#include "shared/module1.h"
#include "shared/runTimeError.h"

#include <algorithm>
#include <utility>

namespace zint {
namespace {

constexpr const char* neverPolledText =
    "This design has events that are never polled (grey). Set how often, then Goto Polling.";

} // namespace

TooManyEvents::TooManyEvents(std::size_t count, const std::string& has)
    : std::runtime_error("The design " + has + " " + std::to_string(count) +
                         " polled events, but no more than " + std::to_string(Design::maxEvents) +
                         " fit. Disable or delete some.")
{
}

Designer::Designer(const AdapterLine& line, Design& design, Prompts& prompts, FileDialogs& dialogs,
                   ProgramValues& values, KeptDesigns& kept, ParametersFile parameters)
    : check_(line, prompts), files_(prompts, dialogs, values, kept),
      definitions_(std::move(parameters), prompts), design_(design), prompts_(prompts), values_(values),
      bitsPerSecond_(line.choice.bitsPerSecond)
{
    check_.onChanged = [this] {
        panel_.statusBox = check_.status();
        changed();
    };
    check_.onAnswer = [this](std::string_view reply, const std::string& bits) {
        learnSupport(reply);
        return disableUnsupported(bits);
    };
}

void Designer::load()
{
    if (const std::string path = std::exchange(values_.designToOpen, {}); !path.empty()) {
        openChosen(path);
        return;
    }
    const bool isPollingWanted = std::exchange(values_.isPollingWanted, false);
    if (!design_.isCommitted() && fileExists(values_.parmSave)) {
        openFile(values_.parmSave);
    } else {
        showWithoutHistory(design_);
        files_.resume(design_);
    }
    if (!isPollingWanted)
        panel_.statusBox = summary();
    else if (draft().isCommitted())
        panel_.statusBox = summary() + " - press Goto Polling";
    else
        panel_.statusBox = neverPolledText;
    edited();
}

void Designer::tellLoadFailure()
{
    files_.tellLoadFailure();
    definitions_.tellLoadFailure();
    settleDefinitions();
}

void Designer::unload()
{
    check_.close();
    files_.leave();
}

void Designer::newDesign()
{
    loadDefaultDesign(design_);
    showWithoutHistory(design_);
    files_.begin(design_);
    panel_.savesDefinitions = false;
    edited();
}

void Designer::open()
{
    const std::string path = files_.chooseToOpen();
    if (path.empty())
        return;
    openChosen(path);
    tellLoadFailure();
}

/// Opens the file that the user has chosen, in the dialog or by starting the program with it.
void Designer::openChosen(const std::string& path)
{
    files_.rememberFolderOf(path);
    openFile(path);
    edited();
}

/// Shows a file's design, or the built-in one in place of a file that can't be read.
void Designer::openFile(const std::string& path)
{
    const std::optional<Design> loaded = files_.load(path);
    design_ = loaded.value_or(Design());
    if (!loaded)
        loadDefaultDesign(design_);
    showWithoutHistory(design_);
    files_.begin(design_, loaded ? path : "");
    panel_.savesDefinitions = loaded && DesignDefinitions::lieBeside(path);
    panel_.statusBox = loaded ? fileNamePart(path) + " loaded" : "Default values loaded";
    isNew_ = loaded.has_value();
}

void Designer::recover()
{
    const std::optional<Design> recovered = files_.recover(draft());
    if (!recovered)
        return;
    design_ = *recovered;
    design_.events.resize(std::min(design_.events.size(), Design::maxEvents)); // the grid has them all
    showWithoutHistory(*recovered);
    panel_.statusBox = summary() + " recovered";
    edited();
    definitions_.tellUndefined(draft());
}

void Designer::save() { saveFile(values_.designPath().empty()); }

void Designer::saveAs() { saveFile(true); }

void Designer::saveFile(bool asking)
{
    const Design design = committed();
    const std::string path = asking ? files_.chooseToSave() : values_.designPath();
    if (path.empty())
        return;
    try {
        files_.save(design, path);
    } catch (const FileError&) { // the status says so too, for the box about it is soon gone
        panel_.statusBox = fileNamePart(path) + " not saved";
        changed();
        throw;
    }
    if (asking)
        values_.rememberFolderOf(path);
    showCommitted(design);
    panel_.statusBox = fileNamePart(path) + " saved";
    edited();
    if (panel_.savesDefinitions || DesignDefinitions::contradict(design, path))
        DesignDefinitions::saveBeside(design, path);
}

void Designer::setTitle(const std::string& title)
{
    panel_.pollTitle = title;
    edited();
}

/// @return the rows of before
GridRows Designer::replaceRows(GridRows rows)
{
    std::swap(rows, panel_.obdGrid);
    panel_.sorting.reset();
    if (rows.size() != panel_.obdGrid.size())
        panel_.statusBox = summary();
    return rows;
}

/// Changes the grid, which can be undone.
void Designer::changeRows(const std::function<void(GridRows&)>& change)
{
    GridRows rows = panel_.obdGrid;
    change(rows);
    if (rows != panel_.obdGrid)
        history_.remember(replaceRows(std::move(rows)));
}

void Designer::edit(const std::function<void(GridRows&)>& change)
{
    changeRows(change);
    edited();
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
    edited();
}

void Designer::undo() { step(&GridHistory::undo); }

void Designer::redo() { step(&GridHistory::redo); }

void Designer::step(void (GridHistory::*direction)(GridRows&))
{
    GridRows rows = panel_.obdGrid;
    (history_.*direction)(rows);
    definitions_.define(rows); // the table knows no steps
    replaceRows(std::move(rows));
    edited();
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
    edited();
    return true;
}

void Designer::commit()
{
    showCommitted(committed());
    edited();
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
    edited();
}

void Designer::clickAutoSpeed(bool checked)
{
    design_.sampleSpeed = checked ? SampleSpeed() : Design::defaultSpeed;
    showSpeed();
    edited();
}

void Designer::movePollSpeed(int position)
{
    panel_.pollSpeed.value = roundedSpeed(position);
    panel_.sampleDsp = speedText(std::chrono::milliseconds(panel_.pollSpeed.value));
    changed();
}

void Designer::calculateOffsets()
{
    Design design = committed();
    spreadOffsets(design);
    showCommitted(design);
    edited();
}

void Designer::showTimeline()
{
    Design design = committed();
    const std::string text = timelineText(design);
    design_ = std::move(design);
    changed();
    prompts_.message(text);
}

/// Takes a committed design over and shows it; the grid's rows of before can be brought back by undoing.
void Designer::showCommitted(const Design& design)
{
    design_ = design;
    showRows(design);
}

/// Shows a design that has come in, with all that belongs to it; there is nothing to undo then.
void Designer::showWithoutHistory(const Design& design)
{
    showRows(design);
    history_.forget();
    panel_.pollPrefix = design.extraCommands;
    showSpeed();
}

void Designer::showRows(const Design& design)
{
    changeRows([&design](GridRows& rows) { rows = design.events; });
    panel_.pollTitle = design.title;
    ++panel_.rebuilds;
    panel_.statusBox = summary();
}

void Designer::showSpeed()
{
    const SampleSpeed speed = design_.sampleSpeed;
    panel_.autoSpeed = !speed;
    panel_.pollSpeed.enabled = speed.has_value();
    panel_.pollSpeed.value = static_cast<int>(speed.value_or(Design::defaultSpeed).count());
    panel_.sampleDsp = speedText(speed);
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

/// Keeps what was edited for the case of a crash, and shows it.
void Designer::edited()
{
    try {
        files_.keep(draft());
    } catch (const FileError& error) {
        panel_.statusBox = std::string("Unsaved changes can't be kept: ") + error.what();
    }
    changed();
}

void Designer::changed()
{
    definitions_.define(panel_.obdGrid);
    definitions_.define(design_.events);
    panel_.filePath = files_.path();
    panel_.fileLab = fileNamePart(panel_.filePath);
    panel_.isModified = files_.isModified(draft());
    panel_.labelStats = check_.counterLine();
    panel_.costLab = pollCost(panel_.obdGrid, design_.sampleSpeed, bitsPerSecond_, values_.requestSeconds);
    panel_.units = chosenUnits(values_);
    panel_.canUndo = history_.canUndo();
    panel_.canRedo = history_.canRedo();
    if (onChanged)
        onChanged();
}

} // namespace zint
