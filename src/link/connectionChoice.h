#pragma once

#include "link/portNumber.h"

#include <string>

namespace zint {

/// What came in place of an answer: noise is what no adapter sends at the speed that it is read with.
enum class Heard { nothing, noise, text };

/// What the user chose in the launcher; a tool reads it when it is opened.
struct ConnectionChoice {
    PortNumber port{1};
    int bitsPerSecond = 9600;
    std::string device = {}; ///< what the port stands for, as shown: "/dev/ttyUSB0"

    /// What to do when the adapter does not answer.
    std::string advice() const
    {
        return "Check port (" + device + ") and speed (" + std::to_string(bitsPerSecond) +
               ") in the launcher; most adapters use 38400.";
    }

    /// The same, with what came in place of an answer.
    std::string silenceReason(Heard heard) const
    {
        return "No answer on " + portName(port) + ": " +
               (heard == Heard::nothing ? "nothing was received. "
                : heard == Heard::noise ? "what was received is not readable. "
                                        : "what was received is not complete. ") +
               advice();
    }
};

} // namespace zint
