#pragma once

#include "sim/driveCycle.h"
#include "sim/pidData.h"
#include "sim/unitKind.h"

#include <cstdint>

namespace zint {

/// What a control unit knows at one moment.
struct EngineData {
    DriveState drive;
    std::uint32_t monitorStatus;  ///< the four bytes of PID 01, the first the most significant
    double sinceClearing = 0;     ///< seconds of driving since the codes were cleared
    std::uint16_t frozenCode = 0; ///< the code that stored the freeze frame; 0: there is none
    bool hasFourBanks = false;
};

/// One parameter of mode 01, and who has it.
struct VehiclePid {
    std::uint8_t number;
    UnitKinds units;    ///< which answer it
    bool inFreezeFrame; ///< measured, so stored with a trouble code
    PidData (*encode)(const EngineData&);
};

/// @return null when such a unit does not have it
const VehiclePid* findPid(UnitKind unit, std::uint8_t number);

/// The answer to a PID of mode 01, or of the freeze frame, that tells which others are supported: the
/// following PID is the most significant bit.
std::uint32_t supportMask(UnitKind unit, std::uint8_t number, bool freezeFrame);

} // namespace zint
