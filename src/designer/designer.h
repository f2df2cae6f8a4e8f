#pragma once

#include "designer/designerPanel.h"
#include "designer/gridEditing.h"
#include "designer/keptDesigns.h"
#include "link/adapterLink.h"
#include "shared/fileDialogs.h"
#include "shared/programValues.h"
#include "shared/prompts.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace zint {

/// The polling designer's work: a grid that is edited freely, and the design that it becomes when it is
/// committed.
///
/// Every operation closes with the panel as the window shall show it. One that fails throws or tells the
/// user, and leaves grid and design as they were.
class Designer final : private AdapterLink::Listener {
public:
    /// All references outlive the designer.
    Designer(SerialPort& port, Timer& timer, const ConnectionChoice& choice, Design& design, Prompts& prompts,
             FileDialogs& dialogs, ProgramValues& values, KeptDesigns& kept);

    /// Shows the design that the program holds, or the last design file when it holds none that was
    /// committed.
    void load();

    /// Closes the port if it is open; the window goes away. Nothing is committed.
    void unload();

    void newDesign(); ///< the built-in default
    void open();      ///< asks for a file
    void recover();   ///< asks which of the unsaved designs
    void save();      ///< asks for a name when there is none
    void saveAs();

    void setTitle(const std::string& title);
    void setCell(std::size_t row, GridColumn column, std::string_view text);
    void moveRow(std::size_t from, std::size_t to);
    void sortBy(GridColumn column); ///< ascending; the same column once more: descending
    void undo();
    void redo();

    void disableAll();
    void enableAll();
    bool addNew(); ///< asks for a request. @return whether a row was added, at the end
    void commit(); ///< makes the grid the design; disabled rows leave the grid

    void askInitSequence();
    void clickAutoSpeed(bool checked);
    void movePollSpeed(int position); ///< changes what is shown, not the design's speed

    void verifySupport(); ///< asks the vehicle and disables the rows that it does not support
    void calculateOffsets();
    void showTimeline();

    const DesignerPanel& panel() const { return panel_; }
    std::function<void()> closeEditor; ///< ends an edit of a cell; what was typed counts
    std::function<void()> onChanged;   ///< called after each event that may have changed the panel

private:
    void linkReady() override;
    void linkReply(std::string_view reply) override;
    void linkReceived() override;
    void linkEvent(int event) override;
    void linkTimedOut() override;
    void linkLost() override;

    /// What a file of the design would hold.
    struct Content {
        DesignGrid grid;
        std::string extraCommands;
        int sampleSpeed = 0;

        bool operator==(const Content&) const = default;
    };

    Content content() const;
    bool isTemplate(const std::string& path) const;
    bool isSafe(const Content& content) const;
    void keepUnsaved();
    void beginWithDesign();
    void apply(const std::function<void(DesignGrid&)>& change);
    void edit(const std::function<void(DesignGrid&)>& change);
    void rebuild();
    void show();
    void showSpeed(int speed);
    void loadFile(const std::string& path);
    void saveFile(bool asking);
    bool askName();
    void disableUnsupported(const std::string& bits);
    void showLink();
    void changed();

    AdapterLink link_;
    Design& design_;
    Prompts& prompts_;
    FileDialogs& dialogs_;
    ProgramValues& values_;
    KeptDesigns& kept_;
    DesignerPanel panel_;
    Content seen_; ///< what was last looked at, whether it must be kept
    std::optional<Content>
        safe_; ///< as a file has it, or the default; nothing for a design that was brought back
    GridHistory history_;
    std::optional<GridColumn> sortedBy_; ///< ascending; a second click reverses
    int bitsPerSecond_;
};

} // namespace zint
