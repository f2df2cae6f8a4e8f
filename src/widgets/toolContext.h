#pragma once

#include "catalogue/design.h"
#include "shared/programValues.h"
#include "shared/settingsStore.h"
#include "widgets/shell.h"

#include <string>

namespace zint {

/// What the program gives each of its windows; it outlives them.
struct ToolContext {
    Shell& shell;
    ProgramValues& values;
    Design& design;
    SettingsStore& settings;
    std::string userDataFolder; ///< in UTF-8; what the program keeps for this user beside the settings
};

} // namespace zint
