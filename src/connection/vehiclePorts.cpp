#include "connection/vehiclePorts.h"

#include "link/commError.h"
#include "link/recordingPort.h"
#include "link/replayPort.h"
#include "platform/qtSerialPort.h"
#include "platform/qtTimer.h"
#include "platform/tcpPort.h"
#include "sim/simulatedPort.h"
#include "sim/vehicle.h"
#include "vehicle/transcriptMask.h"

#include <cerrno>

namespace zint {
namespace {

struct OwnTimer {
    explicit OwnTimer(EventGate& gate) : timer(gate) {}
    QtTimer timer;
};

/// The simulated port together with the timer that it needs to itself, which is made before it.
class TimedSimulatedPort final : private OwnTimer, public SimulatedPort {
public:
    TimedSimulatedPort(EventGate& gate, const Clock& clock, Vehicle& vehicle)
        : OwnTimer(gate), SimulatedPort(timer, clock, vehicle, SimulationOptions::realistic().adapter)
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

} // namespace

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
        if (!vehicle_)
            vehicle_ = std::make_unique<Vehicle>();
        return std::make_unique<TimedSimulatedPort>(gate, clock_, *vehicle_);
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

/// What the port stands for when it is opened. @throws CommError when that can't be used
PortLocation VehiclePorts::locate(PortNumber number) const
{
    PortLocation place = directory_.target(number).place;
    if (!place.problem.empty())
        throw CommError(EINVAL, place.problem);
    return place;
}

} // namespace zint
