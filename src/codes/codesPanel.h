#pragma once

#include "codes/readiness.h"
#include "link/linkCounters.h"
#include "shared/controls.h"

#include <string>

namespace zint {

/// What the trouble-code window shows; members are named after its controls.
struct CodesPanel {
    static constexpr const char* codesFrameCaption = "Diagnostic (MIL) Codes";

    std::string statusBox; ///< port name and a word, e.g. "com1 Closed"
    std::string labelStats = LinkCounters::initialText;
    Button getCodes{.caption = "Get Engine Data"};
    Button clearCodes{.caption = "         Clear MIL          Reset data", .enabled = false};
    std::string stateMIL;                          ///< two lines; empty until a status has been read
    std::string diagCodeFrame = codesFrameCaption; ///< with the number of codes while there are any
    std::string canWarning;     ///< lines that the listing does not hold, to stand out; usually empty
    std::string codesOutput;    ///< one line per code
    std::string notes;          ///< lines on what is left out
    std::string noDescriptions; ///< how the user comes by descriptions; empty when there are some
    bool canSaveReport = false; ///< what is shown is one whole reading
    ReadinessTexts readiness = initialReadiness(); ///< in the order of the monitors
};

} // namespace zint
