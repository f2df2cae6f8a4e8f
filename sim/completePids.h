#pragma once

#include "sim/pidTable.h"

#include <algorithm>
#include <span>

namespace zint {

// Words for a row.
inline constexpr bool measured = true;
inline constexpr bool fixed = false;

/// The code of a trouble that the check engine light shows is stored.
constexpr bool lampOn(const EngineData& e) { return e.monitorStatus >> 31 != 0; }

// What an engine tells that has every parameter of the standard, beyond what others tell. Every field is
// supported, and no two numbers of a parameter are the same, so that one in the place of another shows.
std::span<const VehiclePid> completeBasicPids();   ///< 02 to 5F
std::span<const VehiclePid> completeEnginePids();  ///< 65 to 7F
std::span<const VehiclePid> completeExhaustPids(); ///< from 81 on

/// Of the gas as it leaves the engine, °C.
inline double exhaustTemperature(const EngineData& e) { return 380 + 6 * e.drive.load; }

/// The gear that suits the speed, 1 to 6.
inline int suitableGear(const EngineData& e)
{
    constexpr int highest = 6;
    constexpr double speedPerGear = 22; // km/h
    return std::min(1 + static_cast<int>(e.drive.speed / speedPerGear), highest);
}

/// What the control aims at, as a ratio to the ideal mixture.
inline double mixtureRatio(const EngineData& e) { return 1 - e.drive.shortTrim / 400; }

} // namespace zint
