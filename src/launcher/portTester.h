#pragma once

#include "link/portNumber.h"

#include <functional>
#include <string>

namespace zint {

/// Tries what a port could stand for before that is assigned.
class PortTester {
public:
    virtual ~PortTester() = default;

    /// Gets one line: what is being looked at, and at last what came of it.
    using Tell = std::function<void(const std::string& line)>;

    /// Opens the location and asks the adapter there for its name. A test that runs is ended.
    virtual void begin(PortNumber port, const std::string& location, Tell tell) = 0;

    /// Ends the test; nothing is told any more.
    virtual void stop() = 0;
};

} // namespace zint
