#pragma once

#include "connection/vehiclePorts.h"
#include "doctor/connectionDoctor.h"
#include "launcher/portTester.h"
#include "link/portDirectory.h"
#include "platform/qtTimer.h"
#include "platform/systemClock.h"
#include "platform/systemInspector.h"
#include "shared/eventGate.h"

#include <memory>
#include <optional>
#include <string>

namespace zint {

/// Tests a location by the first steps of the connection doctor.
class PortTest final : public PortTester {
public:
    /// @param bitsPerSecond for a location without a speed of its own
    PortTest(SettingsStore& settings, const PortList& system, int bitsPerSecond);
    ~PortTest() override { stop(); }

    void begin(PortNumber port, const std::string& location, Tell tell) override;
    void stop() override;

private:
    /// A test and all that it needs.
    struct Run {
        Run(VehiclePorts& ports, PortNumber number) : port(ports.make(gate, number)) {}

        EventGate gate;
        QtTimer timer{gate};
        SystemClock clock;
        SystemInspector inspector;
        std::unique_ptr<SerialPort> port;
        ConnectionDoctor doctor{{.port = *port, .timer = timer, .clock = clock, .inspector = inspector}};
    };

    PortDirectory directory_; ///< of its own: what is tested is not assigned yet
    VehiclePorts ports_{directory_};
    int bitsPerSecond_;
    Tell tell_;
    std::optional<Run> run_;
};

} // namespace zint
