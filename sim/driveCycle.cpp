#include "sim/driveCycle.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace zint {
namespace {

struct KeyFrame {
    double seconds;
    double speed; // km/h
};

constexpr std::array<KeyFrame, 8> drive{{
    {0, 0},    // idle
    {12, 0},   // pull away
    {24, 50},  // through the town
    {44, 52},  // onto the road
    {58, 97},  // cruise
    {84, 100}, // brake to a stop
    {100, 0},  // idle
    {110, 0},
}};
static_assert(drive.back().seconds == driveCycleLength.count());
static_assert(drive.front().speed == drive.back().speed, "the cycle must close");

struct Motion {
    double speed;        // km/h
    double acceleration; // m/s²
};

/// Moves smoothly from key frame to key frame, without a jump in speed or acceleration.
Motion motionAt(double seconds)
{
    constexpr double kmhPerMetre = 3.6;
    const double phase = std::fmod(seconds, static_cast<double>(driveCycleLength.count()));
    const auto* const to = std::ranges::find_if(
        drive.begin() + 1, drive.end() - 1, [phase](const KeyFrame& frame) { return phase < frame.seconds; });
    const auto* const from = to - 1;
    const double length = to->seconds - from->seconds;
    const double part = (phase - from->seconds) / length;
    const double change = to->speed - from->speed;
    return {.speed = from->speed + change * part * part * (3 - 2 * part),
            .acceleration = 6 * change * part * (1 - part) / length / kmhPerMetre};
}

double wave(double seconds, double period) { return std::sin(2 * std::numbers::pi * seconds / period); }

} // namespace

DriveState driveAt(std::chrono::microseconds sinceStart)
{
    const double t = std::chrono::duration<double>(sinceStart).count();
    const auto [speed, acceleration] = motionAt(t);
    const double pedal = std::clamp(0.0022 * speed + 0.3 * acceleration, 0.0, 1.0);
    const double overrun =
        std::clamp(-acceleration, 0.0, 1.0); // the fuel is cut while the vehicle pushes the engine
    const double engineSpeed = 780 + 17 * speed + 1500 * pedal + 8 * wave(t, 2.5);
    const double manifold = 33 + 64 * pedal - 10 * overrun;
    const double mixture = wave(t, 2); // the control swings around the ideal mixture
    return {
        .seconds = t,
        .speed = speed,
        .acceleration = acceleration,
        .engineSpeed = engineSpeed,
        .load = 20 + 68 * pedal - 9 * overrun,
        .throttle = 13 + 70 * pedal,
        .manifold = manifold,
        .airFlow = engineSpeed * manifold * 0.00013,
        .ignitionAdvance = std::clamp(12 + (engineSpeed - 780) * 0.007 - 10 * pedal, 5.0, 40.0),
        .coolant = 90 - 68 * std::exp(-t / 200),
        .intakeAir = 28 + 3 * (1 - std::exp(-t / 600)) - 0.06 * speed,
        .shortTrim = -4 * mixture * (1 - overrun),
        .longTrim = 3.1,
        .sensorBefore = std::lerp(0.45 + 0.35 * mixture, 0.04, overrun),
        .sensorBehind = std::lerp(0.66 + 0.02 * wave(t, 11), 0.08, overrun),
        .fuelLevel = std::max(62 - t / 600, 5.0),
    };
}

} // namespace zint
