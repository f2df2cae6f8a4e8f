#pragma once

#include "link/linkCounters.h"
#include "shared/controls.h"

#include <string>

namespace zint {

/// What the terminal's window shows beside the output, by the names of its controls. Menus and the default
/// button depend on isOpen() alone.
struct TerminalPanel {
    Button openCom{"Open Com"};
    Button sendCom{"Send Command"};
    Button repeatCom{"Send Repeatedly"};
    std::string statusBox;
    std::string labelStats = LinkCounters::initialText;
};

} // namespace zint
