#pragma once

#include "designer/designGrid.h"
#include "link/linkCounters.h"

#include <string>

namespace zint {

/// What the polling designer shows; members are named after its controls.
struct DesignerPanel {
    struct Slider {
        int value = Design::defaultSpeed; ///< ms
        bool enabled = true;
    };

    std::string statusBox = "Status description";
    std::string labelStats = LinkCounters::initialText;
    std::string fileLab;    ///< the design file's name
    std::string pollPrefix; ///< the extra initialisation commands
    DesignGrid obdGrid;     ///< with the title, which pollTitle shows
    unsigned rebuilds = 0;  ///< of the grid from a design; no cell is current after one
    Slider pollSpeed;
    bool autoSpeed = false;
    std::string sampleDsp = "200ms";
    std::string costLab; ///< what a pass of the design will cost
    bool canUndo = false;
    bool canRedo = false;
};

} // namespace zint
