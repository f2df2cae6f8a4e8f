#pragma once

#include "designer/gridEditing.h"
#include "link/linkCounters.h"

#include <optional>
#include <string>

namespace zint {

/// What the polling designer shows; members are named after its controls.
struct DesignerPanel {
    struct Slider {
        int value = int{Design::defaultSpeed.count()}; ///< ms
        bool enabled = true;
    };

    std::string statusBox = "Status description";
    std::string labelStats = LinkCounters::initialText;
    std::string fileLab;    ///< the design file's name
    std::string filePath;   ///< the same with its folder
    std::string pollPrefix; ///< the extra initialisation commands
    std::string pollTitle;
    GridRows obdGrid;
    unsigned rebuilds = 0;              ///< of the grid from a design; its first cell is the current one then
    std::optional<GridSorting> sorting; ///< how the grid is sorted, as long as nothing was edited since
    UnitSystem units = UnitSystem::metric; ///< of what is added
    bool savesDefinitions = false;         ///< whether saving writes a file with own parameters beside it
    bool isModified = false;               ///< whether something would be lost with the design
    Slider pollSpeed;
    bool autoSpeed = false;
    std::string sampleDsp = "200ms";
    std::string costLab; ///< what a loop of the design will cost
    bool canUndo = false;
    bool canRedo = false;
};

} // namespace zint
