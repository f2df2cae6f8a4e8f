#pragma once

#include "link/linkCounters.h"
#include "shared/controls.h"

#include <string>

namespace zint {

/// What the report's window shows beside the report itself; members are named after its controls.
struct ReportPanel {
    Button readReport{.caption = "Read Report"};
    Button clearCodes{.caption = "Clear Codes...", .enabled = false};
    std::string headline; ///< what has been read, in plain words
    std::string statusBox = "Ready";
    std::string labelStats = LinkCounters::initialText;
    ProgressBar ProgressBar1;
};

} // namespace zint
