#pragma once

#include "link/portDirectory.h"

#include <QString>

#include <chrono>

namespace zint {

/// The machine's serial ports: adapters on USB and Bluetooth first, since that is where a diagnostic adapter
/// is, then the built-in ports.
class SystemPorts final : public PortList {
public:
    bool exists(const std::string& location) const override;
    std::vector<DetectedPort> detected() const override;
    std::string devicePath(const std::string& location) const override;
    std::optional<std::string> fixedLocation(PortNumber port) const override;

private:
    mutable std::vector<DetectedPort> seen_;
    mutable QString lastState_;
    mutable std::chrono::steady_clock::time_point changeSeenAt_;
};

} // namespace zint
