#pragma once

#include "link/linkCounters.h"
#include "shared/controls.h"

#include <string>

namespace zint {

/// What the terminal's window shows beside the output, by the names of its controls.
struct TerminalPanel {
    Button openCom{"Open Com"};
    Button sendCom{"Send Command"};
    Button repeatCom{"Send Repeatedly"};
    bool sendIsDefault = false; ///< the Return key sends; else it opens
    bool mnuOpenCom = true;     ///< enabled
    bool mnuCloseCom = false;
    std::string statusBox;
    std::string labelStats = LinkCounters::initialText;
};

} // namespace zint
