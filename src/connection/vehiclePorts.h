#pragma once

#include "link/portDirectory.h"
#include "link/serialPort.h"
#include "link/wireRecord.h"
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

    /// A port that is recorded. @param gate outlives the port, as this does
    std::unique_ptr<SerialPort> make(EventGate& gate, PortNumber number);

    /// What goes over the wire of all ports.
    WireRecord& record() { return record_; }

private:
    PortLocation locate(PortNumber number) const;
    std::unique_ptr<SerialPort> makeUnrecorded(EventGate& gate, PortNumber number);

    const PortDirectory& directory_;
    SystemClock clock_;
    WireRecord record_;
    std::unique_ptr<Vehicle> vehicle_; ///< made when it is needed
};

} // namespace zint
