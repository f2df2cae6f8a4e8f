#include "connection/vehiclePorts.h"

#include "link/commError.h"
#include "platform/qtSerialPort.h"
#include "platform/qtTimer.h"
#include "platform/tcpPort.h"
#include "sim/simulatedPort.h"
#include "sim/vehicle.h"

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

/// A port that can't be opened.
std::unique_ptr<SerialPort> unusablePort(EventGate& gate, const char* why)
{
    return std::make_unique<QtSerialPort>(
        gate, [why](PortNumber) -> std::string { throw CommError(ENOTSUP, why); });
}

} // namespace

VehiclePorts::VehiclePorts(const PortDirectory& directory) : directory_(directory) {}

VehiclePorts::~VehiclePorts() = default;

std::unique_ptr<SerialPort> VehiclePorts::make(EventGate& gate, PortNumber number)
{
    switch (directory_.target(number).place.kind) {
    case PortLocation::Kind::simulated:
        if (!vehicle_)
            vehicle_ = std::make_unique<Vehicle>();
        return std::make_unique<TimedSimulatedPort>(gate, clock_, *vehicle_);
    case PortLocation::Kind::network:
        return std::make_unique<TcpPort>(gate, [this](PortNumber n) { return locate(n); });
    case PortLocation::Kind::recording:
        return unusablePort(gate, "a recording can't be used yet");
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
