#pragma once

#include "link/portLocation.h"
#include "link/portNumber.h"

#include <string>

namespace zint {

/// What came in place of an answer: noise is what no adapter sends at the speed that it is read with.
enum class Heard { nothing, noise, text };

/// What the user chose in the launcher; a tool reads it when it is opened.
struct ConnectionChoice {
    PortNumber port{1};
    int bitsPerSecond = 9600; ///< the device's own speed, or the launcher's line speed
    std::string device = {};  ///< what the port stands for, as shown: "/dev/ttyUSB0"
    PortLocation::Kind kind = PortLocation::Kind::device; ///< of what it stands for

    /// Whether the speed means anything. It does where nothing is connected: something may be at any time.
    bool hasSpeed() const
    {
        return kind == PortLocation::Kind::device || kind == PortLocation::Kind::nothing;
    }

    /// " at 9600"; empty where the speed means nothing.
    std::string speedText() const { return hasSpeed() ? " at " + std::to_string(bitsPerSecond) : ""; }

    /// What to do when the adapter does not answer.
    std::string advice() const
    {
        if (kind == PortLocation::Kind::network)
            return "Check that the adapter (" + device +
                   ") has power, and that no phone and no other program uses it: it serves one at a time.";
        if (!hasSpeed())
            return "Check port (" + device + ") in the launcher.";
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
