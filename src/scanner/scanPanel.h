#pragma once

#include "link/linkCounters.h"
#include "shared/controls.h"

#include <string>

namespace zint {

/// What the scanner's window shows beside the boxes and the output; members are named after its controls.
struct ScanPanel {
    Button comScan{.caption = "Begin Scan"};
    bool mnuOpenCom = true; ///< enabled
    bool mnuCloseCom = false;
    bool canChangeHeader = true; ///< cmdHead and calcHdr
    std::string statusBox = "Ready";
    std::string labelStats = LinkCounters::initialText;
    std::string warning;      ///< what a scan of these boxes would erase; empty when nothing
    ProgressBar ProgressBar1; ///< of the requests
};

} // namespace zint
