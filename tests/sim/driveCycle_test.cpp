#include "sim/driveCycle.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <string>
#include <vector>

namespace zint {
namespace {

using namespace std::chrono_literals;

struct Sensor {
    std::string name;
    double DriveState::*value;
    double lowest;
    double highest;
    double step; // the most that it may move in 20 ms
};

const std::vector<Sensor> sensors{
    {"speed", &DriveState::speed, 0, 130, 0.3},
    {"engine speed", &DriveState::engineSpeed, 700, 6000, 60},
    {"load", &DriveState::load, 5, 100, 2},
    {"throttle", &DriveState::throttle, 5, 100, 2},
    {"manifold", &DriveState::manifold, 15, 101, 2},
    {"air flow", &DriveState::airFlow, 1, 120, 2},
    {"ignition advance", &DriveState::ignitionAdvance, 0, 45, 1},
    {"coolant", &DriveState::coolant, 15, 100, 0.1},
    {"intake air", &DriveState::intakeAir, 10, 60, 0.1},
    {"short trim", &DriveState::shortTrim, -10, 10, 0.5},
    {"sensor before", &DriveState::sensorBefore, 0, 1, 0.06},
    {"sensor behind", &DriveState::sensorBehind, 0, 1, 0.06},
    {"fuel level", &DriveState::fuelLevel, 1, 100, 0.1},
};

TEST(DriveCycleTest, SensorsStayInBoundsAndNeverJump)
{
    DriveState before = driveAt(0s);
    for (auto time = 20ms; time < 3 * driveCycleLength; time += 20ms) {
        const DriveState now = driveAt(time);
        for (const auto& [name, value, lowest, highest, step] : sensors) {
            ASSERT_GE(now.*value, lowest) << name << " at " << time.count();
            ASSERT_LE(now.*value, highest) << name << " at " << time.count();
            ASSERT_LE(std::abs(now.*value - before.*value), step) << name << " at " << time.count();
        }
        before = now;
    }
}

TEST(DriveCycleTest, AccelerationIsTheChangeOfSpeed)
{
    double travelled = driveAt(0s).speed;
    for (auto time = 5ms; time < driveCycleLength; time += 10ms) {
        travelled += driveAt(time).acceleration * 3.6 * 0.010;
        ASSERT_NEAR(travelled, driveAt(time + 5ms).speed, 0.05) << time.count();
    }
}

TEST(DriveCycleTest, BeginsAgainAndRepeatsItself)
{
    for (const auto time : {3s, 20s, 57s, 90s}) {
        EXPECT_NEAR(driveAt(time).speed, driveAt(time + 7 * driveCycleLength).speed, 1e-6);
        EXPECT_NEAR(driveAt(time).throttle, driveAt(time + 7 * driveCycleLength).throttle, 1e-6);
    }
}

TEST(DriveCycleTest, SensorsMoveTogether)
{
    const DriveState idle = driveAt(5s);
    const DriveState accelerating = driveAt(50s);
    const DriveState cruising = driveAt(75s);
    const DriveState braking = driveAt(92s);

    EXPECT_EQ(idle.speed, 0);
    EXPECT_GT(cruising.speed, 90);
    for (const auto sensor : {&DriveState::throttle, &DriveState::load, &DriveState::manifold}) {
        EXPECT_GT(accelerating.*sensor, cruising.*sensor);
        EXPECT_GT(cruising.*sensor, idle.*sensor);
        EXPECT_LE(braking.*sensor, idle.*sensor);
    }
    EXPECT_GT(accelerating.airFlow, 3 * idle.airFlow);
    EXPECT_LT(braking.sensorBefore, 0.1) << "no fuel burns while the vehicle pushes the engine";
    EXPECT_LT(driveAt(0s).coolant, 30);
    EXPECT_GT(driveAt(20min).coolant, 85);
}

} // namespace
} // namespace zint
