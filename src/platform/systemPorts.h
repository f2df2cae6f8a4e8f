#pragma once

#include "link/portDirectory.h"

#include <QDateTime>

namespace zint {

/// The machine's serial ports: adapters on USB and Bluetooth first, since that is where a diagnostic adapter
/// is, then the built-in ports.
class SystemPorts final : public PortList {
public:
    std::vector<DetectedPort> detected() const override;
    std::optional<std::string> fixedLocation(int number) const override;

private:
    mutable std::vector<DetectedPort> seen_;
    mutable QDateTime seenAt_;
};

} // namespace zint
