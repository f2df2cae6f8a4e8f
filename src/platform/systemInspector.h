#pragma once

#include "link/portInspector.h"

#include <string>
#include <utility>

namespace zint {

/// What this system tells of its ports. On Linux it reads /sys, /proc, the lock folders and the device's
/// rights.
class SystemInspector final : public PortInspector {
public:
    /// @param root in front of each path that is read; empty but for tests
    explicit SystemInspector(std::string root = {}) : root_(std::move(root)) {}

    PortFacts facts(const std::string& location) const override;
    std::vector<std::string> holders(const std::string& location) const override;
    OpenTrouble troubleOf(int number) const override;

private:
    std::string root_;
};

} // namespace zint
