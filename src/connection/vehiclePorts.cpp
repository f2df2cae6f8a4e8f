#include "connection/vehiclePorts.h"

#include "platform/qtSerialPort.h"
#include "platform/qtTimer.h"
#include "sim/simulatedPort.h"
#include "sim/vehicle.h"

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

} // namespace

VehiclePorts::VehiclePorts(const PortDirectory& directory) : directory_(directory) {}

VehiclePorts::~VehiclePorts() = default;

std::unique_ptr<SerialPort> VehiclePorts::make(EventGate& gate, PortNumber number)
{
    if (!directory_.target(number).isSimulated())
        return std::make_unique<QtSerialPort>(gate,
                                              [this](PortNumber n) { return directory_.target(n).location; });
    if (!vehicle_)
        vehicle_ = std::make_unique<Vehicle>();
    return std::make_unique<TimedSimulatedPort>(gate, clock_, *vehicle_);
}

} // namespace zint
