#pragma once

#include <chrono>

namespace zint {

/// What the sensors of the simulated vehicle feel at one moment.
struct DriveState {
    double seconds;         ///< since the engine was started
    double speed;           ///< km/h
    double acceleration;    ///< m/s², negative while braking
    double engineSpeed;     ///< 1/min
    double load;            ///< percent
    double throttle;        ///< percent
    double manifold;        ///< kPa, absolute
    double airFlow;         ///< g/s
    double ignitionAdvance; ///< degrees before top dead centre
    double coolant;         ///< °C
    double intakeAir;       ///< °C
    double shortTrim;       ///< percent
    double longTrim;        ///< percent
    double sensorBefore;    ///< volts, oxygen sensor before the catalyst
    double sensorBehind;    ///< volts, oxygen sensor behind it
    double fuelLevel;       ///< percent
};

/// After this time the drive (idle, acceleration, cruise, more of both, braking) begins again; only the
/// temperatures and the fuel level remember that time has passed.
inline constexpr std::chrono::seconds driveCycleLength{110};

/// The state at a time since the engine was started (0 or more). The same time gives the same state.
DriveState driveAt(std::chrono::microseconds sinceStart);

} // namespace zint
