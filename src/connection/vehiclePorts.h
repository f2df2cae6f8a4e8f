#pragma once

#include "link/portDirectory.h"
#include "link/serialPort.h"
#include "platform/systemClock.h"
#include "shared/eventGate.h"

#include <memory>

namespace zint {

class Vehicle;

/// Makes what a port number stands for: a serial port of the machine, or what is used like one. The simulated
/// vehicle lives as long as the program runs.
class VehiclePorts {
public:
    explicit VehiclePorts(const PortDirectory& directory);
    ~VehiclePorts();

    /// @param gate outlives the port
    std::unique_ptr<SerialPort> make(EventGate& gate, PortNumber number);

private:
    PortLocation locate(PortNumber number) const;

    const PortDirectory& directory_;
    SystemClock clock_;
    std::unique_ptr<Vehicle> vehicle_; ///< made when it is needed
};

} // namespace zint
