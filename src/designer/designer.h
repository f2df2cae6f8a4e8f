#pragma once

#include "designer/designDefinitions.h"
#include "designer/designFileKeeper.h"
#include "designer/designerPanel.h"
#include "designer/gridEditing.h"
#include "designer/supportCheck.h"

#include <cstddef>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace zint {

/// A design holds no more events than Design::maxEvents.
class TooManyEvents : public std::runtime_error {
public:
    /// @param has how the count is meant: "has", or "would have"
    explicit TooManyEvents(std::size_t count, const std::string& has = "has");
};

/// In which units events are added, as the user chose last.
UnitSystem chosenUnits(const ProgramValues& values);
void keepUnits(ProgramValues& values, UnitSystem units);

/// The polling designer's work: a grid that is edited freely, and the design that it becomes when it is
/// committed.
///
/// Every operation closes with the panel as the window shall show it. One that fails throws or tells the
/// user, and leaves grid and design as they were.
class Designer {
public:
    /// All references outlive the designer.
    Designer(const AdapterLine& line, Design& design, Prompts& prompts, FileDialogs& dialogs,
             ProgramValues& values, KeptDesigns& kept, ParametersFile parameters);

    /// Shows the design file that the program was started with; else the design that the program holds, or
    /// the last design file when it holds none that was committed.
    void load();

    /// The window stands: tells what was wrong with the files that load() read, and settles with the user
    /// what defines the design's own parameters.
    void tellLoadFailure();

    /// Closes the port if it is open; the window goes away. Nothing is committed.
    void unload();

    void newDesign(); ///< the built-in default
    void open();      ///< asks for a file
    void recover();   ///< asks which of the unsaved designs
    void save();      ///< asks for a name when there is none
    void saveAs();

    void setTitle(const std::string& title);

    /// The entries of the unit chooser of a row, see conversionChoices().
    std::vector<std::string> conversionChoices(std::size_t row) const;
    void setCell(std::size_t row, GridColumn column, std::string_view text);
    void moveRow(std::size_t from, std::size_t to);
    void removeRow(std::size_t row);
    void duplicateRow(std::size_t row);
    void sortBy(GridColumn column); ///< ascending; the same column once more: the other way round
    void undo();
    void redo();

    void disableAll();
    void enableAll();
    void useUnits(UnitSystem units); ///< turns all rows into them, and keeps the choice

    /// Adds rows at the end. @throws TooManyEvents when not all of them fit; none is added then
    void addEvents(const std::vector<DesignEntry>& events);

    bool addNew(); ///< asks for a request. @return whether a row was added, at the end
    void commit(); ///< makes the grid the design; disabled rows leave the grid

    /// The table of own parameters has changed; rows follow their parameters' requests. @throws FileError
    void takeParameters();
    void saveWithDefinitions(bool with);

    void askInitSequence();
    void clickAutoSpeed(bool checked);
    void movePollSpeed(int position); ///< changes what is shown, not the design's speed

    void showStatistics(); ///< the counters, and what the last check has disabled

    void verifySupport(); ///< asks the vehicle and disables the rows that it does not support
    void calculateOffsets();
    void showTimeline();

    const DesignerPanel& panel() const { return panel_; }
    const OwnParameters& ownParameters() const { return definitions_.table(); }
    std::size_t usesOf(std::int32_t number) const; ///< rows with a conversion
    Design draft() const; ///< the design with all rows of the grid, more than it may have perhaps

    /// Ends an edit of a cell, for an answer of the vehicle. What was typed counts; what can't be read is
    /// told of once the answer is dealt with.
    std::function<void()> closeEditor;

    std::function<void()> onChanged; ///< called after each event that may have changed the panel

private:
    void openChosen(const std::string& path);
    void openFile(const std::string& path);
    void saveFile(bool asking);
    Design committed() const;
    std::string summary() const;
    GridRows replaceRows(GridRows rows);
    void changeRows(const std::function<void(GridRows&)>& change);
    void edit(const std::function<void(GridRows&)>& change);
    void step(void (GridHistory::*direction)(GridRows&));
    void showCommitted(const Design& design);
    void showWithoutHistory(const Design& design);
    void showRows(const Design& design);
    void showSpeed();
    std::string disableUnsupported(const std::string& bits);
    void learnSupport(std::string_view reply);
    void settleDefinitions();
    void edited();
    void changed();

    SupportCheck check_;
    DesignFileKeeper files_;
    DesignDefinitions definitions_;
    Design& design_;
    Prompts& prompts_;
    ProgramValues& values_;
    DesignerPanel panel_;
    GridHistory history_;
    std::string lastCheck_; ///< how many events it has disabled; empty before there was one
    int bitsPerSecond_;
    bool isNew_ = false; ///< the design has come from a file, and its definitions are not settled
};

} // namespace zint
