#pragma once

#include "doctor/connectionDoctor.h"
#include "shared/controls.h"

#include <string>

namespace zint {

/// What the doctor's window shows beside the steps; members are named after its controls.
struct DoctorPanel {
    Button check;
    Button takeOver;
    std::string headline; ///< what has come of it, or what to do first
    std::string statusBox;
    ProgressBar ProgressBar1;
};

/// @param isOtherPort whether another port is looked at than the tools use
DoctorPanel panelOf(const ConnectionDoctor& doctor, bool isOtherPort);

/// A step in a list: its title and mark, what was seen, and below that what is wrong with its mend.
std::string textOf(const DiagnosisStep& step);

} // namespace zint
