#include "connection/vehiclePorts.h"

#include "link/commError.h"
#include "link/recordingPort.h"
#include "link/replayPort.h"
#include "platform/qtSerialPort.h"
#include "platform/qtTimer.h"
#include "platform/tcpPort.h"
#include "sim/simulatedPort.h"
#include "sim/simulationArguments.h"
#include "sim/vehicle.h"
#include "vehicle/transcriptMask.h"

#include <cerrno>
#include <stdexcept>
#include <utility>

namespace zint {
namespace {

struct OwnTimer {
    explicit OwnTimer(EventGate& gate) : timer(gate) {}
    QtTimer timer;
};

/// The simulated port together with the timer that it needs to itself, which is made before it.
class TimedSimulatedPort final : private OwnTimer, public SimulatedPort {
public:
    TimedSimulatedPort(EventGate& gate, const Clock& clock, Vehicle& vehicle, AdapterOptions options)
        : OwnTimer(gate), SimulatedPort(timer, clock, vehicle, std::move(options))
    {
    }
};

/// A recording's port, likewise.
class TimedReplayPort final : private OwnTimer, public ReplayPort {
public:
    TimedReplayPort(EventGate& gate, const PortLocation& location)
        : OwnTimer(gate), ReplayPort(timer, location.path, location.isTimed ? Pace::asRecorded : Pace::atOnce)
    {
    }
};

SimulationOptions simulationAt(const std::string& words)
{
    return simulationOf(words, SimulationOptions::realistic());
}

} // namespace

std::string problemOf(const PortLocation& place)
{
    try {
        if (place.kind == PortLocation::Kind::simulated)
            const Vehicle possible(simulationAt(place.path).vehicle);
    } catch (const std::invalid_argument& error) { // of an option, or of several that don't go together
        return error.what();
    }
    return place.problem;
}

VehiclePorts::VehiclePorts(const PortDirectory& directory)
    : directory_(directory), record_(clock_, identityMask)
{
}

VehiclePorts::~VehiclePorts() = default;

std::unique_ptr<SerialPort> VehiclePorts::make(EventGate& gate, PortNumber number)
{
    const auto describe = [this](PortNumber opened, int bitsPerSecond) {
        const PortDirectory::Target target = directory_.target(opened);
        const std::string speed =
            target.place.hasSpeed() ? ", " + std::to_string(bitsPerSecond) + " bits per second" : "";
        return portName(opened) + " (" + target.location + ")" + speed;
    };
    return std::make_unique<RecordingPort>(makeUnrecorded(gate, number), record_, describe);
}

std::unique_ptr<SerialPort> VehiclePorts::makeUnrecorded(EventGate& gate, PortNumber number)
{
    const PortLocation place = directory_.target(number).place;
    switch (place.kind) {
    case PortLocation::Kind::simulated:
        if (problemOf(place).empty())
            return makeSimulated(gate, place.path);
        break;
    case PortLocation::Kind::network:
        return std::make_unique<TcpPort>(gate, [this](PortNumber n) { return locate(n); });
    case PortLocation::Kind::recording:
        return std::make_unique<TimedReplayPort>(gate, place);
    case PortLocation::Kind::nothing:
    case PortLocation::Kind::device:
        break; // an automatic port may find its device before it is opened
    }
    return std::make_unique<QtSerialPort>(gate, [this](PortNumber n) { return locate(n).path; });
}

std::unique_ptr<SerialPort> VehiclePorts::makeSimulated(EventGate& gate, const std::string& words)
{
    SimulationOptions options = simulationAt(words);
    std::unique_ptr<Vehicle>& vehicle = vehicles_[words];
    if (!vehicle)
        vehicle = std::make_unique<Vehicle>(options.vehicle);
    return std::make_unique<TimedSimulatedPort>(gate, clock_, *vehicle, std::move(options.adapter));
}

/// What the port stands for when it is opened. @throws CommError when that can't be used
PortLocation VehiclePorts::locate(PortNumber number) const
{
    PortLocation place = directory_.target(number).place;
    if (const std::string problem = problemOf(place); !problem.empty())
        throw CommError(EINVAL, problem);
    return place;
}

} // namespace zint
