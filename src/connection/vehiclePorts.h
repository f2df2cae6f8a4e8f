#pragma once

#include "link/portDirectory.h"
#include "link/portLocation.h"
#include "link/serialPort.h"
#include "link/wireRecord.h"
#include "platform/systemClock.h"
#include "shared/eventGate.h"

#include <map>
#include <memory>
#include <string>

namespace zint {

class Vehicle;

/// Why a location can't be used, with the options of a simulation; empty where it can.
std::string problemOf(const PortLocation& place);

/// Makes what a port number stands for: a serial port of the machine, or what is used like one. Simulated
/// vehicles live as long as the program runs.
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
    std::unique_ptr<SerialPort> makeSimulated(EventGate& gate, const std::string& words);
    std::unique_ptr<SerialPort> makeUnrecorded(EventGate& gate, PortNumber number);

    const PortDirectory& directory_;
    SystemClock clock_;
    WireRecord record_;
    std::map<std::string, std::unique_ptr<Vehicle>> vehicles_; ///< by their options; made when needed
};

} // namespace zint
