#pragma once

#include "sim/driveCycle.h"

#include <cstdint>
#include <span>

namespace zint {

/// What the engine computer knows at one moment.
struct EngineData {
    DriveState drive;
    std::uint32_t monitorStatus; ///< the four bytes of PID 01, the first the most significant
};

/// One parameter that the engine computer answers.
struct VehiclePid {
    std::uint8_t number;
    int byteCount;                              ///< 1 to 4
    bool inFreezeFrame;                         ///< measured, so stored with a trouble code
    std::uint32_t (*encode)(const EngineData&); ///< the bytes as one number, the first the most significant
};

/// The parameters of mode 01 in ascending order, without those that tell what is supported.
std::span<const VehiclePid> pidTable();

/// @return null when the vehicle does not have it
const VehiclePid* findPid(std::uint8_t number);

/// Whether a PID tells which of the 32 that follow it are supported (00, 20, 40 ...).
constexpr bool isSupportPid(std::uint8_t number) { return number % 32 == 0; }

/// The answer to such a PID of mode 01, or of the freeze frame: the following PID is the most significant
/// bit; the least significant one promises an answer to the next such PID.
std::uint32_t supportMask(std::uint8_t number, bool freezeFrame);

} // namespace zint
